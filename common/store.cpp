#include "common/store.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>
#include <QUrl>
#include <QVariant>

#include "common/problem.h"
#include "common/text.h"

namespace {

// A plain open would create a missing store, and would make "-wal" and "-shm" files beside one in WAL mode.
constexpr char kConnectOptions[] = "QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY";

QString StoreUri(const QString& qstrPath) {
  const QString qstrAbsolute = QDir::isAbsolutePath(qstrPath) ? qstrPath : QDir::current().filePath(qstrPath);
  return "file://" + QString::fromLatin1(QUrl::toPercentEncoding(qstrAbsolute, "/")) + "?immutable=1";
}

std::string ErrorText(const QSqlError& error) {
  const QString qstrText = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
  return ToNarrow(qstrText);
}

}  // namespace

StoreQuery::StoreQuery(const QString& qstrConnection, const QString& qstrDriver, const std::string& strPath,
                       const char* pszStatement, Failure failure)
    : m_qstrConnection(qstrConnection), m_strPath(strPath), m_failure(failure) {
  const QString qstrPath = FromNarrow(strPath);
  QSqlDatabase database;
  if (QSqlDatabase::contains(qstrConnection)) {
    database = QSqlDatabase::database(qstrConnection, true);
  } else {
    database = QSqlDatabase::addDatabase(qstrDriver, qstrConnection);
    database.setConnectOptions(kConnectOptions);
    database.setDatabaseName(StoreUri(qstrPath));
  }
  // A folder or a pipe is never opened: the latter would be waited for without end.
  const QFileInfo file(qstrPath);
  const bool bNoFile = file.exists() && !file.isFile();
  const bool bOpen = !bNoFile && database.open();
  m_pQuery = std::make_unique<QSqlQuery>(database);
  m_pQuery->setForwardOnly(true);
  const bool bRuns = bOpen && m_pQuery->prepare(pszStatement) && m_pQuery->exec();
  // A store that isn't there is no problem: devices differ in what they hold.
  if (bRuns || failure == Failure::Expected || !QFile::exists(qstrPath)) return;
  ReportProblem(strPath, bNoFile ? "is no file" : ErrorText(bOpen ? m_pQuery->lastError() : database.lastError()));
}

StoreQuery::~StoreQuery() {
  m_pQuery->clear();
  m_pQuery->finish();
  m_pQuery.reset();
  QSqlDatabase::database(m_qstrConnection, false).close();
  QSqlDatabase::removeDatabase(m_qstrConnection);
}

bool StoreQuery::Next() {
  if (!m_pQuery->isActive()) return false;
  if (m_pQuery->next()) return true;
  if (m_failure == Failure::Reported && m_pQuery->lastError().isValid())
    ReportProblem(m_strPath, ErrorText(m_pQuery->lastError()) + " (the rows before it were read)");
  return false;
}

QString StoreQuery::Text(int nColumn) const {
  return m_pQuery->value(nColumn).toString();
}

std::string StoreQuery::Narrow(int nColumn) const {
  return ToNarrow(Text(nColumn));
}

int StoreQuery::Integer(int nColumn) const {
  return m_pQuery->value(nColumn).toInt();
}

int StoreQuery::ColumnCount() const {
  return m_pQuery->record().count();
}
