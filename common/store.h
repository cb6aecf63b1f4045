#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/problem.h"

struct sqlite3;
struct sqlite3_stmt;

namespace orvandel {

/// A forward-only query over one SQLite store of a backup.
///
/// All stores are opened through this class. The file is opened read-only and immutable: a missing store
/// isn't created, and a store in WAL mode gets no "-wal" and "-shm" files. Stores are untrusted input: views
/// and triggers are disabled, the schema isn't trusted, the size of values is limited, and so is the work of
/// a query, in proportion to the file's size. A stop request (common/stop.h) ends the query. Lives on the
/// stack of a reader; not thread-safe. A store or statement that fails gives no rows.
class StoreQuery {
 public:
  /// Whether a store or statement that fails is reported to the problem handler, or is expected because the
  /// caller is only trying whether it fits.
  enum class Failure { Reported, Expected };

  /// @param strPath      narrow path of the store.
  /// @param pszStatement the SQL text, prepared immediately.
  StoreQuery(const std::string& strPath, const char* pszStatement, Failure failure = Failure::Reported);
  ~StoreQuery();
  StoreQuery(const StoreQuery&) = delete;
  StoreQuery& operator=(const StoreQuery&) = delete;

  /// Moves to the next row. @return false when there is none.
  bool Next();

  /// Column of the current row as text. Numbers are in decimal, in the shortest form that converts back to
  /// the same value; NULL is an empty string; a blob is read as UTF-8 up to its first zero byte.
  QString Text(int nColumn) const;
  /// Same as Text, narrow.
  std::string Narrow(int nColumn) const;
  /// Length of Text in UTF-16 code units.
  int TextSize(int nColumn) const;
  /// Column of the current row as an integer. Text is converted when all of it is an integer, a real is
  /// rounded, and of a larger number the low 32 bits are returned; 0 for anything else.
  int Integer(int nColumn) const;
  /// Same as Integer with all 64 bits.
  int64_t Integer64(int nColumn) const;
  /// Column of the current row as a real number, converted by SQLite; 0 for NULL.
  double Real(int nColumn) const;
  bool IsNull(int nColumn) const;
  /// The bytes of a column of the current row, valid until the next call. Text is in UTF-8.
  struct Bytes {
    const void* pData = nullptr;
    size_t nSize = 0;
  };
  Bytes Blob(int nColumn) const;
  /// Number of columns of the result; 0 when the statement failed.
  int ColumnCount() const;

  /// True when the file ends within a page, so that rows may be missing or empty.
  bool IsCutShort() const { return m_bCutShort; }
  /// Why the store could not be opened or read completely; no problem on success or after a stop request.
  const Problem& Error() const { return m_problem; }

 private:
  struct Budget;

  /// Opens the store and prepares the statement. @return false with m_problem set.
  bool Open(const std::string& strPath, const char* pszStatement);
  bool IsUtf8Store() const;
  void KeepError(int nStatus);
  void CloseAll();

  std::string m_strPath;
  Failure m_failure;
  sqlite3* m_pDatabase = nullptr;
  sqlite3_stmt* m_pStatement = nullptr;
  std::unique_ptr<Budget> m_pBudget;
  bool m_bPlainUtf8 = false;  // valid text of the store is narrow text without conversion
  bool m_bEnded = false;
  bool m_bCutShort = false;
  Problem m_problem;
};

/// The columns of one table of a store, for tables that differ by version.
class StoreTable {
 public:
  /// @param strPath narrow path of the store. @param pszTable a name without quotes.
  StoreTable(const std::string& strPath, const char* pszTable);

  /// False also for a store that can't be read.
  bool Exists() const { return !m_columns.empty(); }
  /// @param pszColumn its name; case doesn't matter, as in SQL.
  bool Has(const char* pszColumn) const;
  /// The column for a statement: its name, or "NULL" if the table doesn't have it.
  std::string Column(const char* pszColumn) const { return Has(pszColumn) ? pszColumn : "NULL"; }

 private:
  std::vector<std::string> m_columns;
};

}  // namespace orvandel
