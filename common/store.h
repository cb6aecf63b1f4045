#pragma once
#include <QSqlQuery>
#include <QString>
#include <memory>
#include <string>

/// One query over one SQLite store of a backup, read from its first row to its last.
///
/// It is the only way in which the system opens a store. The file is opened read-only and as immutable: a
/// missing store stays missing, and a store in WAL mode gets no files beside it. It lives on the stack of a
/// reader, on one thread; the named connection exists as long as the object. A store or statement that fails
/// gives no rows.
class StoreQuery {
 public:
  /// What to do about a store or statement that fails: tell the problem handler, or keep quiet because the
  /// caller tries it knowing that it may not fit.
  enum class Failure { Reported, Expected };

  /// @param qstrConnection name for QSqlDatabase; at most one object with a name may live at a time.
  /// @param qstrDriver     "QSQLITE".
  /// @param strPath        narrow path of the store.
  /// @param pszStatement   the SQL text, run at once.
  StoreQuery(const QString& qstrConnection, const QString& qstrDriver, const std::string& strPath,
             const char* pszStatement, Failure failure = Failure::Reported);
  ~StoreQuery();
  StoreQuery(const StoreQuery&) = delete;
  StoreQuery& operator=(const StoreQuery&) = delete;

  /// Goes to the next row. False when there is none.
  bool Next();

  /// Column of the current row as text; a number in decimal, NULL as an empty text.
  QString Text(int nColumn) const;
  /// The same as narrow text.
  std::string Narrow(int nColumn) const;
  /// Column of the current row as a whole number; 0 for what is none.
  int Integer(int nColumn) const;
  /// Number of columns of the result; 0 when the statement failed.
  int ColumnCount() const;

 private:
  QString m_qstrConnection;
  std::string m_strPath;
  Failure m_failure;
  std::unique_ptr<QSqlQuery> m_pQuery;
};
