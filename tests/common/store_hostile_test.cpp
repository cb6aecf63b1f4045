// Untrusted stores: no code in the schema is run, and no query runs forever.
#include <gmock/gmock.h>
#include <sqlite3.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "common/stop.h"
#include "common/store.h"
#include "common/text.h"
#include "sample/stores.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

constexpr char kEndless[] = "with recursive n(i) as (select 1 union all select i + 1 from n) select i from n";

class HostileStore : public testing::Test {
 protected:
  ~HostileStore() override { SetStopFlag(nullptr); }

  std::string MakeStore(const std::vector<QString>& statements) const {
    SampleStore store(FromNarrow(m_folder.Path("a.db")), false);
    for (const QString& qstrStatement : statements) store.run(qstrStatement);
    store.close();
    return m_folder.Path("a.db");
  }

  static int Rows(const std::string& strPath, const char* pszStatement) {
    StoreQuery query(strPath, pszStatement);
    int nRows = 0;
    while (query.Next()) {
      query.Narrow(0);
      ++nRows;
    }
    return nRows;
  }

  TemporaryFolder m_folder;
  ProblemRecorder m_problems;
};

/// A page of SQLite's file format whose cells all point to one child: any number of rows in 8 KiB.
std::string AmplifiedStore(const std::string& strPath) {
  constexpr size_t kPage = 4096, kHead = 12, kCell = 5;
  constexpr int kLevels = 12;
  std::string strBytes = ReadFile(strPath);
  const size_t nPages = strBytes.size() / kPage;
  EXPECT_EQ(2u, nPages);  // the schema, and the table's only page
  const std::string strLeaf = strBytes.substr(kPage, kPage);
  std::string strStore = strBytes.substr(0, kPage);
  const auto put = [](std::string& strPage, size_t nAt, uint32_t nValue, int nBytes) {
    for (int i = 0; i < nBytes; ++i)
      strPage[nAt + static_cast<size_t>(i)] = static_cast<char>(nValue >> 8 * (nBytes - 1 - i));
  };
  for (int nLevel = 0; nLevel < kLevels; ++nLevel) {
    const auto nChild = static_cast<uint32_t>(nLevel + 3);
    const size_t nCells = (kPage - kHead) / (kCell + 2);
    std::string strPage(kPage, '\0');
    strPage[0] = 5;  // an interior page of a table
    put(strPage, 3, static_cast<uint32_t>(nCells), 2);
    put(strPage, 5, static_cast<uint32_t>(kPage - nCells * kCell), 2);
    put(strPage, 8, nChild, 4);
    for (size_t i = 0; i < nCells; ++i) {
      const size_t nCell = kPage - (i + 1) * kCell;
      put(strPage, kHead + 2 * i, static_cast<uint32_t>(nCell), 2);
      put(strPage, nCell, nChild, 4);
      strPage[nCell + 4] = 1;  // the row id
    }
    strStore += strPage;
  }
  strStore += strLeaf;
  put(strStore, 28, static_cast<uint32_t>(strStore.size() / kPage), 4);
  return strStore;
}

}  // namespace

TEST_F(HostileStore, ViewInPlaceOfATableIsNotRun) {
  const std::string strPath =
      MakeStore({QString("create view people as %1 limit 5000000").arg(QString(kEndless))});

  const int nRows = Rows(strPath, "select * from people");

  EXPECT_EQ(0, nRows);
  EXPECT_THAT(m_problems.Problems(), SizeIs(1));
}

TEST_F(HostileStore, PlainViewIsNotReadEither) {
  const std::string strPath = MakeStore(
      {"create table t (name)", "insert into t values ('Ann')", "create view people as select name from t"});

  const int nRows = Rows(strPath, "select name from people");

  EXPECT_EQ(0, nRows);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_THAT(m_problems.Problems()[0].strReason, HasSubstr("people"));
}

TEST_F(HostileStore, ThatRepeatsItsPagesEndsCleanly) {
  const std::string strPath = MakeStore({"create table people (name)", "insert into people values ('Ann')"});
  WriteFile(strPath, AmplifiedStore(strPath));

  const int nRows = Rows(strPath, "select name from people");

  EXPECT_GT(nRows, 1000);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_THAT(m_problems.Problems()[0].strReason, HasSubstr("more than a store of its size can hold"));
}

TEST_F(HostileStore, ThatRepeatsAndSortsEndsCleanly) {
  const std::string strPath = MakeStore({"create table people (name)", "insert into people values ('Ann')"});
  WriteFile(strPath, AmplifiedStore(strPath));

  const int nRows = Rows(strPath, "select count(*) from people where name = 'Bo'");

  EXPECT_EQ(0, nRows);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
}

TEST_F(HostileStore, EndsWithinTheLimitOnceAStopIsRequested) {
  const std::string strPath = MakeStore({"create table people (name)"});
  std::atomic<bool> bStop{false};
  SetStopFlag(&bStop);
  using Clock = std::chrono::steady_clock;
  std::atomic<Clock::rep> nStopped{0};
  std::thread stopper([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    nStopped = Clock::now().time_since_epoch().count();
    bStop = true;
  });

  // Counting returns no row for long: only checking the flag can end it in time.
  const int nRows =
      Rows(strPath, "with recursive n(i) as (select 1 union all select i + 1 from n) select count(*) from n");
  const auto waited = Clock::duration(Clock::now().time_since_epoch().count() - nStopped);
  stopper.join();

  EXPECT_EQ(0, nRows);
  EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(waited).count(), 100);
  EXPECT_THAT(m_problems.Problems(), SizeIs(0)) << "a stop is no problem of the store";
}

TEST_F(HostileStore, ValueBeyondTheLimitEndsTheRows) {
  const std::string strPath = MakeStore({"create table people (name)", "insert into people values ('Ann')"});

  const int nRows = Rows(strPath, "select zeroblob(200000000) from people");

  EXPECT_EQ(0, nRows);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
}

TEST_F(HostileStore, CutWithinItsLastPageIsReportedAndReadAsFarAsItGoes) {
  const std::string strPath = MakeStore({"create table people (name)", "insert into people values ('Ann')",
                                         "create table more (name)", "create table last (name)"});
  const std::string strBytes = ReadFile(strPath);
  WriteFile(strPath, strBytes.substr(0, strBytes.size() - 700));

  const int nRows = Rows(strPath, "select name from people");

  EXPECT_EQ(1, nRows);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_THAT(m_problems.Problems()[0].strReason, HasSubstr("cut short"));
}

TEST_F(HostileStore, CannotAttachAnotherFile) {
  const std::string strPath = MakeStore({"create table people (name)"});

  const int nRows = Rows(strPath, "attach 'other.db' as other");

  EXPECT_EQ(0, nRows);
  EXPECT_THAT(m_problems.Problems(), SizeIs(1));
}
