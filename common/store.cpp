#include "common/store.h"

#include <unistd.h>

#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>
#include <QUrl>
#include <QVariant>
#include <cerrno>

#include "common/file.h"
#include "common/problem.h"
#include "common/text.h"

namespace {

// A plain open would create a missing store, and would make "-wal" and "-shm" files beside one in WAL mode.
constexpr char kConnectOptions[] = "QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY";

QString StoreUri(const QString& qstrPath) {
  const QString qstrAbsolute = QDir::isAbsolutePath(qstrPath) ? qstrPath : QDir::current().filePath(qstrPath);
  return "file://" + QString::fromLatin1(QUrl::toPercentEncoding(qstrAbsolute, "/")) + "?immutable=1";
}

/// Why SQLite must not or can't open a file; 0 for one that it may open.
int RefusalOf(const std::string& strPath) {
  const int nDescriptor = OpenBackupFile(strPath.c_str());
  if (nDescriptor == -1) return errno;
  close(nDescriptor);
  return 0;
}

/// A sound store without the tables or columns that a statement names: stores differ by their age.
bool IsStatementError(const QSqlError& error) {
  static const QString qstrGenericError = QString::number(1);  // SQLITE_ERROR
  return error.nativeErrorCode() == qstrGenericError;
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
  const int nRefusal = RefusalOf(strPath);
  const bool bOpen = nRefusal == 0 && database.open();
  m_pQuery = std::make_unique<QSqlQuery>(database);
  m_pQuery->setForwardOnly(true);
  const bool bRuns = bOpen && m_pQuery->prepare(pszStatement) && m_pQuery->exec();
  // A store that isn't there is no problem: devices differ in what they hold.
  if (bRuns || failure == Failure::Expected || nRefusal == ENOENT) return;
  const QSqlError error = bOpen ? m_pQuery->lastError() : database.lastError();
  if (nRefusal == 0 && IsStatementError(error))
    ReportProblem(strPath, ErrorText(error));
  else
    ReportLoss(strPath, nRefusal != 0 ? OpenFailure(nRefusal) : ErrorText(error));
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
    ReportLoss(m_strPath, ErrorText(m_pQuery->lastError()) + " (the rows before it were read)");
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
