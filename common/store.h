#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <string>

#include "common/problem.h"

struct sqlite3;
struct sqlite3_stmt;

/// One query over one SQLite store of a backup, read from its first row to its last.
///
/// It is the only way in which the system opens a store. The file is opened read-only and as immutable: a
/// missing store stays missing, and a store in WAL mode gets no files beside it. A store is a stranger's: its
/// views and triggers are off, its schema isn't trusted, values have a limit, and it can't deliver more than
/// a file of its size can hold. A stop (common/stop.h) ends it between two steps. It lives on the stack of a
/// reader, on one thread. A store or statement that fails gives no rows.
class StoreQuery {
 public:
  /// What to do about a store or statement that fails: report it to the problem handler, or not, because the
  /// caller tries it knowing that it may not fit.
  enum class Failure { Reported, Expected };

  /// @param strPath      narrow path of the store.
  /// @param pszStatement the SQL text, run at once.
  StoreQuery(const std::string& strPath, const char* pszStatement, Failure failure = Failure::Reported);
  ~StoreQuery();
  StoreQuery(const StoreQuery&) = delete;
  StoreQuery& operator=(const StoreQuery&) = delete;

  /// Moves to the next row. False when there is none.
  bool Next();

  /// Column of the current row as text. Numbers come in decimal, the shortest that reads back the same; NULL
  /// as an empty text; a blob as UTF-8 up to its first zero byte.
  QString Text(int nColumn) const;
  /// The same as narrow text.
  std::string Narrow(int nColumn) const;
  /// Length of that text in UTF-16 units.
  int TextSize(int nColumn) const;
  /// Column of the current row as a whole number: a text as far as all of it is one, a real number rounded,
  /// the low 32 bits of a larger one; 0 for anything else.
  int Integer(int nColumn) const;
  /// The bytes of a column of the current row, valid until the next call. A text comes as UTF-8.
  struct Bytes {
    const void* pData = nullptr;
    size_t nSize = 0;
  };
  Bytes Blob(int nColumn) const;
  /// Number of columns of the result; 0 when the statement failed.
  int ColumnCount() const;

  /// Why the store could not be opened, or read to its end; no problem when it could, or was stopped.
  const Problem& Error() const { return m_problem; }

 private:
  struct Budget;

  /// Opens the store and prepares the statement. @return false with the error set.
  bool Open(const std::string& strPath, const char* pszStatement);
  bool IsUtf8Store() const;
  void KeepError(int nStatus);
  void CloseAll();

  std::string m_strPath;
  Failure m_failure;
  sqlite3* m_pDatabase = nullptr;
  sqlite3_stmt* m_pStatement = nullptr;
  std::unique_ptr<Budget> m_pBudget;
  bool m_bPlainUtf8 = false;  // text of the store is narrow text as it stands, when it is valid
  bool m_bEnded = false;
  Problem m_problem;
};
