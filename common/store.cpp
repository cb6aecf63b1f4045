#include "common/store.h"

#include <sqlite3.h>
#include <strings.h>

#include <QLocale>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <iterator>

#include "common/file.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/stop.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr int kLongestValue = 128 << 20;  // bytes of a text or blob
constexpr int kStepsBetweenLooks = 1000;  // SQLite VM instructions: some ten microseconds
// The work of a sound query is proportional to the file's size: a row takes some ten bytes and some fifty
// steps, and a text is read a few times at most. A damaged or hostile store can repeat its pages endlessly.
constexpr int64_t kStepsPerByte = 64;
constexpr int64_t kBytesPerByte = 16;
constexpr int kNameColumn = 1;                // of PRAGMA table_info
constexpr int64_t kLargestStore = 1LL << 48;  // bytes, above SQLite's maximum
constexpr int64_t kFreeSteps = 10000000;
constexpr int64_t kFreeBytes = 16 << 20;

constexpr char kEndless[] = "it delivers more than a store of its size can hold";

/// The store's URI for SQLite. A plain open would create a missing store, and "-wal" and "-shm" files for one
/// in WAL mode. @param strPath absolute.
std::string StoreUri(const std::string& strPath) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string strUri = "file://";
  for (const char nByte : strPath) {
    const auto n = static_cast<unsigned char>(nByte);
    const bool bPlain = (n >= '0' && n <= '9') || (n >= 'A' && n <= 'Z') || (n >= 'a' && n <= 'z') ||
                        n == '/' || n == '-' || n == '.' || n == '_' || n == '~';
    if (bPlain)
      strUri += nByte;
    else
      strUri.append(1, '%').append(1, kDigits[n >> 4]).append(1, kDigits[n & 0xF]);
  }
  return strUri + "?immutable=1";
}

/// The result of the checks before SQLite opens a file.
struct Examined {
  int64_t nSize = 0;
  bool bCutShort = false;
};

/// True when the last page is incomplete, which SQLite would pad with zeros. The page size is in bytes 16 and
/// 17 of the file; 1 means 65536.
bool EndsWithinAPage(const unsigned char* pHead, int64_t nSize) {
  if (memcmp(pHead, "SQLite format 3", 16) != 0) return false;
  const int nPage = pHead[16] << 8 | pHead[17];
  return nPage != 0 && nSize % (nPage == 1 ? 65536 : nPage) != 0;
}

Result<Examined> ExamineStore(const std::string& strPath) {
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) return file.Error();
  unsigned char head[18];
  uint32_t nRead = 0;
  const bool bHasHead = ReadData(file->descriptor.Get(), head, sizeof head, nRead) == kStatusOk;
  return Examined{file->nSize, bHasHead && EndsWithinAPage(head, file->nSize)};
}

/// Rounds a real to an integer, halves up; 0 when it is out of range.
int64_t Rounded(double dValue) {
  static constexpr double kLimit = 9223372036854775807.0;  // 2^63, as a double
  if (!(dValue > -kLimit && dValue < kLimit)) return 0;
  if (dValue >= 0) return static_cast<int64_t>(dValue + 0.5);
  const auto nBelow = static_cast<int64_t>(dValue - 1);
  return static_cast<int64_t>(dValue - static_cast<double>(nBelow) + 0.5) + nBelow;
}

}  // namespace

/// The remaining work that a query may do.
struct StoreQuery::Budget {
  int64_t nSteps;
  int64_t nBytes;
  bool bSpent = false;

  /// Progress handler, called every kStepsBetweenLooks steps. @return nonzero to interrupt the query.
  static int Look(void* pBudget) {
    auto* pSelf = static_cast<Budget*>(pBudget);
    pSelf->nSteps -= kStepsBetweenLooks;
    if (pSelf->nSteps < 0) pSelf->bSpent = true;
    return pSelf->bSpent || IsStopRequested() ? 1 : 0;
  }
};

StoreQuery::StoreQuery(const std::string& strPath, const char* pszStatement, Failure failure)
    : m_strPath(strPath), m_failure(failure) {
  Result<Examined> examined = ExamineStore(strPath);
  if (!examined) {
    m_problem = examined.Error();
    // A missing store isn't reported: not every device has all of them.
    if (failure == Failure::Reported && m_problem.nCode != ENOENT) ReportLoss(m_problem);
    return;
  }
  const int64_t nSize = std::min(examined->nSize, kLargestStore);  // avoids overflow below
  m_bCutShort = examined->bCutShort;
  if (examined->bCutShort && failure == Failure::Reported)
    ReportLoss(strPath, "cut short: its last page isn't whole (the rows that can be read are there)");
  m_pBudget = std::make_unique<Budget>(
      Budget{nSize * kStepsPerByte + kFreeSteps, nSize * kBytesPerByte + kFreeBytes});
  if (Open(strPath, pszStatement)) return;
  CloseAll();
}

StoreQuery::~StoreQuery() {
  CloseAll();
}

void StoreQuery::CloseAll() {
  sqlite3_finalize(m_pStatement);
  sqlite3_close(m_pDatabase);
  m_pStatement = nullptr;
  m_pDatabase = nullptr;
}

bool StoreQuery::Open(const std::string& strPath, const char* pszStatement) {
  // The resolved path contains no links; SQLITE_OPEN_NOFOLLOW fails if one was created meanwhile.
  int nStatus = sqlite3_open_v2(
      StoreUri(ResolvedBackupPath(strPath)).c_str(), &m_pDatabase,
      SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW, nullptr);
  if (nStatus == SQLITE_OK) {
    sqlite3_extended_result_codes(m_pDatabase, 1);
    for (const int nSwitch : {SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                              SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION})
      sqlite3_db_config(m_pDatabase, nSwitch, 0, nullptr);
    sqlite3_db_config(m_pDatabase, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(m_pDatabase, SQLITE_LIMIT_LENGTH, kLongestValue);
    sqlite3_limit(m_pDatabase, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_progress_handler(m_pDatabase, kStepsBetweenLooks, &Budget::Look, m_pBudget.get());
    nStatus = sqlite3_prepare_v2(m_pDatabase, pszStatement, -1, &m_pStatement, nullptr);
  }
  if (nStatus != SQLITE_OK || !m_pStatement) {
    KeepError(nStatus);
    return false;
  }
  m_bPlainUtf8 = NarrowIsUtf8() && IsUtf8Store();
  return true;
}

bool StoreQuery::IsUtf8Store() const {
  sqlite3_stmt* pStatement = nullptr;
  if (sqlite3_prepare_v2(m_pDatabase, "PRAGMA encoding", -1, &pStatement, nullptr) != SQLITE_OK) return false;
  const bool bUtf8 = sqlite3_step(pStatement) == SQLITE_ROW &&
                     strcmp(reinterpret_cast<const char*>(sqlite3_column_text(pStatement, 0)), "UTF-8") == 0;
  sqlite3_finalize(pStatement);
  return bUtf8;
}

void StoreQuery::KeepError(int nStatus) {
  const bool bInterrupted = (nStatus & 0xFF) == SQLITE_INTERRUPT;
  if (bInterrupted && !m_pBudget->bSpent) return;  // a stop isn't an error
  m_problem = {m_pStatement ? Problem::Step::Read : Problem::Step::Open, nStatus, m_strPath,
               bInterrupted  ? kEndless
               : m_pDatabase ? sqlite3_errmsg(m_pDatabase)
                             : sqlite3_errstr(nStatus)};
  if (m_failure == Failure::Expected) return;
  // A sound store without the tables or columns of a statement is not a loss: schemas differ by version.
  if ((nStatus & 0xFF) == SQLITE_ERROR && !m_pStatement)
    ReportProblem(m_problem);
  else
    ReportLoss(m_strPath, m_problem.strReason + (m_pStatement ? " (the rows before it were read)" : ""));
}

bool StoreQuery::Next() {
  if (!m_pStatement || m_bEnded) return false;
  const int nStatus = sqlite3_step(m_pStatement);
  if (nStatus == SQLITE_ROW && m_pBudget->nBytes >= 0) return true;
  m_bEnded = true;
  if (nStatus == SQLITE_ROW) m_pBudget->bSpent = true;
  if (nStatus != SQLITE_DONE) KeepError(nStatus == SQLITE_ROW ? SQLITE_INTERRUPT : nStatus);
  return false;
}

QString StoreQuery::Text(int nColumn) const {
  if (m_bEnded || !m_pStatement) return QString();
  switch (sqlite3_column_type(m_pStatement, nColumn)) {
    case SQLITE_INTEGER:
      return QString::number(sqlite3_column_int64(m_pStatement, nColumn));
    case SQLITE_FLOAT:
      return QString::number(sqlite3_column_double(m_pStatement, nColumn), 'g',
                             QLocale::FloatingPointShortest);
    case SQLITE_BLOB: {
      const Bytes bytes = Blob(nColumn);
      const auto* pText = static_cast<const char*>(bytes.pData);
      return pText ? QString::fromUtf8(pText, static_cast<int>(strnlen(pText, bytes.nSize))) : QString();
    }
    case SQLITE_TEXT: {
      const auto* pText = static_cast<const QChar*>(sqlite3_column_text16(m_pStatement, nColumn));
      const int nBytes = sqlite3_column_bytes16(m_pStatement, nColumn);
      m_pBudget->nBytes -= nBytes;
      return QString(pText, nBytes / static_cast<int>(sizeof(QChar)));
    }
    default:
      return QString();
  }
}

int StoreQuery::TextSize(int nColumn) const {
  if (m_bEnded || !m_pStatement || sqlite3_column_type(m_pStatement, nColumn) != SQLITE_INTEGER)
    return static_cast<int>(Text(nColumn).size());
  char szDigits[24];
  const char* pEnd =
      std::to_chars(szDigits, std::end(szDigits), sqlite3_column_int64(m_pStatement, nColumn)).ptr;
  return static_cast<int>(pEnd - szDigits);
}

std::string StoreQuery::Narrow(int nColumn) const {
  if (m_bEnded || !m_pStatement) return {};
  const int nType = sqlite3_column_type(m_pStatement, nColumn);
  if (nType == SQLITE_NULL) return {};
  // Fast path: most text needs no conversion.
  if (m_bPlainUtf8 && nType == SQLITE_TEXT) {
    const auto* pText = reinterpret_cast<const char*>(sqlite3_column_text(m_pStatement, nColumn));
    const auto nSize = static_cast<size_t>(sqlite3_column_bytes(m_pStatement, nColumn));
    m_pBudget->nBytes -= static_cast<int64_t>(nSize);
    if (pText && IsValidUtf8({pText, nSize})) return {pText, nSize};
  }
  return ToNarrow(Text(nColumn));
}

int StoreQuery::Integer(int nColumn) const {
  return static_cast<int>(Integer64(nColumn));
}

int64_t StoreQuery::Integer64(int nColumn) const {
  if (m_bEnded || !m_pStatement) return 0;
  switch (sqlite3_column_type(m_pStatement, nColumn)) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(m_pStatement, nColumn);
    case SQLITE_FLOAT:
      return Rounded(sqlite3_column_double(m_pStatement, nColumn));
    case SQLITE_BLOB: {
      const Bytes bytes = Blob(nColumn);
      return QByteArray::fromRawData(static_cast<const char*>(bytes.pData), static_cast<int>(bytes.nSize))
          .toLongLong();
    }
    case SQLITE_TEXT:
      return Text(nColumn).toLongLong();
    default:
      return 0;
  }
}

double StoreQuery::Real(int nColumn) const {
  return m_bEnded || !m_pStatement ? 0 : sqlite3_column_double(m_pStatement, nColumn);
}

bool StoreQuery::IsNull(int nColumn) const {
  return m_bEnded || !m_pStatement || sqlite3_column_type(m_pStatement, nColumn) == SQLITE_NULL;
}

StoreQuery::Bytes StoreQuery::Blob(int nColumn) const {
  if (m_bEnded || !m_pStatement) return {};
  const void* pData = sqlite3_column_blob(m_pStatement, nColumn);
  const auto nSize = static_cast<size_t>(sqlite3_column_bytes(m_pStatement, nColumn));
  m_pBudget->nBytes -= static_cast<int64_t>(nSize);
  return {pData, pData ? nSize : 0};
}

int StoreQuery::ColumnCount() const {
  return m_pStatement ? sqlite3_column_count(m_pStatement) : 0;
}

StoreTable::StoreTable(const std::string& strPath, const char* pszTable) {
  StoreQuery query(strPath, (std::string("PRAGMA table_info(") + pszTable + ")").c_str(),
                   StoreQuery::Failure::Expected);
  while (query.Next()) m_columns.push_back(query.Narrow(kNameColumn));
}

bool StoreTable::Has(const char* pszColumn) const {
  return std::any_of(m_columns.begin(), m_columns.end(), [&](const std::string& strColumn) {
    return strcasecmp(strColumn.c_str(), pszColumn) == 0;
  });
}

}  // namespace orvandel
