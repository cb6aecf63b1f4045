#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtDebug>
#include <atomic>
#include <exception>
#include <map>

#include "sample/stores.h"
#include "sample/written_file.h"

namespace orvandel {

namespace {

QString nextConnectionName() {
  static std::atomic<int> counter{0};
  return QString("orvandel_sample_%1").arg(++counter);
}

struct Prepared {
  QSqlQuery query;
  size_t valueCount;
};

}  // namespace

struct SampleStore::Private {
  QString path;
  bool wal;
  QString connection = nextConnectionName();
  bool open = false;
  std::map<QString, Prepared> prepared;

  QSqlDatabase database() const { return QSqlDatabase::database(connection, false); }

  [[noreturn]] void fail(const QSqlError& error) const { written_file::fail(path, error.text()); }

  /// Runs a statement without values. @return the first column of its first row, if any.
  QVariant plain(const QString& sql) {
    QSqlQuery query(database());
    query.setForwardOnly(true);
    if (!query.exec(sql)) fail(query.lastError());
    return query.next() ? query.value(0) : QVariant();
  }

  qint64 bound(const QString& sql, const std::vector<QVariant>& values) {
    auto found = prepared.find(sql);
    if (found == prepared.end()) {
      QSqlQuery query(database());
      query.setForwardOnly(true);
      if (!query.prepare(sql)) fail(query.lastError());
      found = prepared.emplace(sql, Prepared{std::move(query), values.size()}).first;
    }
    if (found->second.valueCount != values.size())
      written_file::fail(path, "wrong number of values for " + sql);
    QSqlQuery& query = found->second.query;
    for (size_t i = 0; i < values.size(); ++i) query.bindValue(static_cast<int>(i), values[i]);
    if (!query.exec()) fail(query.lastError());
    const qint64 row = query.lastInsertId().toLongLong();
    query.finish();
    return row;
  }

  void release() {
    prepared.clear();
    database().close();
    QSqlDatabase::removeDatabase(connection);
    open = false;
  }
};

SampleStore::SampleStore(const QString& path, bool wal) : d(std::make_unique<Private>()) {
  d->path = path;
  d->wal = wal;
  QFile old(path);
  if (old.exists() && !old.remove()) written_file::fail(path, old.errorString());

  QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", d->connection);
  database.setDatabaseName(path);
  d->open = true;
  try {
    if (!database.open()) d->fail(database.lastError());
    // All settings whose defaults differ between builds of SQLite, to get the same bytes.
    for (const char* setting : {"page_size = 4096", "encoding = 'UTF-8'", "auto_vacuum = 0",
                                "synchronous = OFF", "journal_mode = MEMORY", "cache_size = -65536"}) {
      d->plain(QString("PRAGMA ") + setting);
    }
    d->plain("BEGIN");
  } catch (...) {
    database = QSqlDatabase();
    d->release();
    throw;
  }
}

SampleStore::~SampleStore() {
  if (!d->open) return;
  try {
    close();
  } catch (const std::exception& error) {
    qWarning("%s", error.what());
  }
}

void SampleStore::close() {
  if (!d->open) return;
  try {
    d->prepared.clear();
    d->plain("COMMIT");
    if (d->wal) {
      // Set last: rows written in WAL mode would be written twice.
      const QString mode = d->plain("PRAGMA journal_mode = WAL").toString();
      if (mode != "wal") written_file::fail(d->path, "WAL mode was refused (still " + mode + ")");
      d->plain("PRAGMA wal_checkpoint(TRUNCATE)");
    }
  } catch (...) {
    d->release();
    throw;
  }
  d->release();
}

void SampleStore::run(const QString& sql, const std::vector<QVariant>& values) {
  if (values.empty()) {
    d->plain(sql);
  } else {
    d->bound(sql, values);
  }
}

qint64 SampleStore::insert(const QString& sql, const std::vector<QVariant>& values) {
  return d->bound(sql, values);
}

void SampleStore::create(std::initializer_list<const char*> statements) {
  for (const char* statement : statements) d->plain(statement);
}

namespace store_places {

StorePlace contacts() {
  return {"HomeDomain", "Library/AddressBook/AddressBook.sqlitedb"};
}
StorePlace messages() {
  return {"HomeDomain", "Library/SMS/sms.db"};
}
StorePlace notes() {
  return {"HomeDomain", "Library/Notes/notes.sqlite"};
}
StorePlace notesCloud() {
  return {"AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite"};
}
StorePlace calls() {
  return {"HomeDomain", "Library/CallHistoryDB/CallHistory.storedata"};
}
StorePlace callsFallback() {
  return {"WirelessDomain", "Library/CallHistory/call_history.db"};
}

}  // namespace store_places

}  // namespace orvandel
