#include "benchmarks/data.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <cstdio>
#include <functional>
#include <stdexcept>

#include "sample/backup_builder.h"
#include "sample/pictures.h"
#include "sample/stores.h"
#include "tests/extract/attributed_bytes.h"
#include "tests/extract/whatsapp_store.h"

namespace orvandel {

namespace {

QString g_folder;

/// Creates a folder of data once, under a temporary name first, so that an aborted run leaves no incomplete
/// one.
QString Prepared(const QString& name, const std::function<void(const QString& folder)>& make) {
  const QString folder = g_folder + "/" + name;
  if (QDir(folder).exists()) return folder;
  fprintf(stderr, "orvandel: making %s\n", qPrintable(folder));
  const QString unfinished = folder + ".part";
  QDir(unfinished).removeRecursively();
  QDir().mkpath(unfinished);
  make(unfinished);
  if (!QDir().rename(unfinished, folder))
    throw std::runtime_error("can't rename " + unfinished.toStdString());
  return folder;
}

void MakeManifest(const QString& folder, BackupBuilder::Layout layout) {
  BackupBuilder builder(folder, layout);
  for (int i = 0; i < kManifestEntries; ++i)
    builder.addEntry("AppDomain-com.example.App" + QString::number(i % 97),
                     QString("Library/Caches/Snapshots/%1/item-%2.plist").arg(i / 1000).arg(i));
  builder.finish();
}

}  // namespace

void SetDataFolder(const QString& folder) {
  g_folder = folder;
}

std::string BinaryManifest() {
  const QString folder =
      Prepared("mbdb", [](const QString& f) { MakeManifest(f, BackupBuilder::Layout::Mbdb); });
  return (folder + "/Manifest.mbdb").toStdString();
}

std::string DatabaseManifest() {
  const QString folder = Prepared("db", [](const QString& f) { MakeManifest(f, BackupBuilder::Layout::Db); });
  return (folder + "/Manifest.db").toStdString();
}

std::string MediaBackup() {
  return Prepared(
             "media",
             [](const QString& folder) {
               const QByteArray picture = sample_media::jpeg(1, 96, 64);
               BackupBuilder builder(folder, BackupBuilder::Layout::Db);
               builder.writeInfo({});
               for (int i = 0; i < kMediaFiles; ++i) {
                 const QString name =
                     QString("Media/DCIM/%1APPLE/IMG_%2.JPG").arg(100 + i / 1000).arg(i, 6, 10, QChar('0'));
                 builder.addFile("CameraRollDomain", name, picture);
               }
               builder.finish();
             })
      .toStdString();
}

std::string MessageStorePath() {
  const QString folder = Prepared("messages", [](const QString& f) {
    MessageStore store(f + "/sms.db");
    std::vector<qint64> handles, chats;
    for (int i = 0; i < kSenders; ++i) {
      handles.push_back(store.addHandle(QString("+4930%1").arg(1000000 + i * 37)));
      chats.push_back(store.addChat(QString("chat%1").arg(i)));
    }
    for (int i = 0; i < kMessageCount; ++i) {
      const auto sender = static_cast<size_t>((i * 7919LL) % kSenders);
      const qint64 date = (430000000LL + i * 61LL) * 1000000000LL;
      store.addMessage(handles[sender],
                       QString("Message %1: see you at the usual place, half past six?").arg(i), date,
                       i % 3 == 0, {chats[sender]});
    }
  });
  return (folder + "/sms.db").toStdString();
}

std::string BodyStorePath() {
  const QString folder = Prepared("bodies", [](const QString& f) {
    QFile::copy(QString::fromStdString(MessageStorePath()), f + "/original.db");
    MessageStore store(f + "/sms.db");
    store.run("COMMIT");  // no database can be attached within a transaction
    store.run("ATTACH ? AS original", {f + "/original.db"});
    store.run("BEGIN");
    for (const char* table : {"handle", "chat", "chat_message_join", "message"})
      store.run(QString("INSERT INTO main.%1 SELECT * FROM original.%1").arg(table));
    store.run("UPDATE message SET text = NULL");
    for (int i = 0; i < kMessageCount; ++i) {
      // An archive is some 220 bytes longer than its text.
      const std::string text =
          std::to_string(i) + std::string(static_cast<size_t>(80 + i * 7919LL % 700), 'x');
      const std::string body = attributed_bytes::Immutable(text);
      store.run("UPDATE message SET attributedBody = ? WHERE ROWID = ?",
                {QByteArray(body.data(), static_cast<int>(body.size())), i + 1});
    }
    store.close();
    QFile::remove(f + "/original.db");
  });
  return (folder + "/sms.db").toStdString();
}

std::string WhatsAppStorePath() {
  static constexpr int kGroups = 500, kMembers = 20;
  const QString folder = Prepared("whatsapp", [](const QString& f) {
    WhatsAppTestStore store(f + "/ChatStorage.sqlite");
    const auto address = [](int i) { return QString("49301%1@s.whatsapp.net").arg(100000 + i); };
    for (int i = 0; i < kSenders; ++i) {
      if (i >= kGroups) {
        store.AddPerson(address(i), QString("Partner %1").arg(i));
        continue;
      }
      const qint64 group = store.AddGroup(QString("%1-1400000000@g.us").arg(i), QString("Group %1").arg(i));
      for (int k = 0; k < kMembers; ++k) store.AddMember(group, address(i * kMembers + k), {}, "Member");
    }
    for (int i = 0; i < kMessageCount; ++i) {
      const int session = static_cast<int>(i * 7919LL % kSenders) + 1;
      const bool photo = i % 10 == 0, fromMe = i % 3 == 0;
      const QString text =
          photo ? QString() : QString("Message %1: see you at the usual place, half past six?").arg(i);
      const QVariant member =
          session <= kGroups && !fromMe ? QVariant((session - 1) * kMembers + i % kMembers + 1) : QVariant();
      const qint64 row = store.insert(
          "INSERT INTO ZWAMESSAGE (ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZTEXT, ZMESSAGETYPE, ZGROUPMEMBER, "
          "ZFROMJID) VALUES (?, ?, ?, ?, ?, ?, ?)",
          {session, fromMe ? 1 : 0, 430000000.25 + i * 61.0, text, photo ? 1 : 0, member, address(session)});
      if (photo) store.AddMedia(row, QString("Media/%1/a/b/%2.jpg").arg(address(session)).arg(i));
    }
    store.close();
  });
  return (folder + "/ChatStorage.sqlite").toStdString();
}

std::string ContactsStorePath() {
  const QString folder = Prepared("contacts", [](const QString& f) {
    ContactsStore store(f + "/AddressBook.sqlitedb", true);
    for (int i = 0; i < kPeople; ++i) {
      ContactsStore::Person person;
      person.first = QString("First%1").arg(i);
      person.last = QString("Last%1").arg(i);
      // Every second person has the number of a sender.
      person.phone =
          i % 2 == 0 ? QString("+4930%1").arg(1000000 + i * 37) : QString("+4989%1").arg(2000000 + i);
      store.add(person);
    }
  });
  return (folder + "/AddressBook.sqlitedb").toStdString();
}

std::string ExportFolder() {
  QDir().mkpath(g_folder + "/export");
  return (g_folder + "/export").toStdString();
}

std::string LargeBackup() {
  return Prepared("large",
                  [](const QString& folder) {
                    QDir(folder).removeRecursively();
                    const QString program = QCoreApplication::applicationDirPath() + "/orvandel-sample";
                    if (QProcess::execute(program, {folder, "--entries", "1000000", "--photos", "100000",
                                                    "--messages", "500000", "--contacts", "5000"}) != 0)
                      throw std::runtime_error("orvandel-sample failed");
                  })
      .toStdString();
}

}  // namespace orvandel
