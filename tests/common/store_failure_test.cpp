#include <gmock/gmock.h>

#include "common/problem.h"
#include "common/store.h"
#include "common/text.h"
#include "sample/stores.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr char kStatement[] = "select name from people";

class StoreFailure : public testing::Test {
 protected:
  /// Runs a statement over a store and counts the rows.
  static int Rows(const std::string& strPath, StoreQuery::Failure failure,
                  const char* pszStatement = kStatement) {
    StoreQuery query(strPath, pszStatement, failure);
    int nRows = 0;
    while (query.Next()) ++nRows;
    return nRows;
  }

  std::string MakeStore(int nRows = 1) const {
    SampleStore store(FromNarrow(m_folder.Path("a.db")), false);
    store.run("create table people (name TEXT)");
    for (int i = 0; i < nRows; ++i)
      store.run("insert into people values (?)", {QString("%1").arg(i, 2000, 10, QChar('0'))});
    store.close();
    return m_folder.Path("a.db");
  }

  TemporaryFolder m_folder;
  ProblemRecorder m_problems;
};

/// An object in place of a store.
struct NoStore {
  const char* pszName;
  std::string (*pfnMake)(const TemporaryFolder& folder);
};

void PrintTo(const NoStore& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class StoreThatIsNone : public StoreFailure, public testing::WithParamInterface<NoStore> {};

}  // namespace

TEST_P(StoreThatIsNone, GivesNoRowsAndIsReportedUnderItsPath) {
  const std::string strPath = GetParam().pfnMake(m_folder);

  const int nRows = Rows(strPath, StoreQuery::Failure::Reported);

  EXPECT_EQ(0, nRows);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_EQ(strPath, m_problems.Problems()[0].strFile);
  EXPECT_NE("", m_problems.Problems()[0].strReason);
}

TEST_P(StoreThatIsNone, IsSkippedSilentlyWhenThatIsExpected) {
  const std::string strPath = GetParam().pfnMake(m_folder);

  const int nRows = Rows(strPath, StoreQuery::Failure::Expected);

  EXPECT_EQ(0, nRows);
  EXPECT_THAT(m_problems.Problems(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, StoreThatIsNone,
    testing::Values(
        NoStore{"Text",
                [](const TemporaryFolder& folder) { return folder.Write("a.db", std::string(4096, 'x')); }},
        NoStore{"Short",
                [](const TemporaryFolder& folder) { return folder.Write("a.db", "SQLite format 3"); }},
        NoStore{"Folder", [](const TemporaryFolder& folder) { return folder.MakeFolder("a.db"); }},
        NoStore{"Empty", [](const TemporaryFolder& folder) { return folder.Write("a.db", ""); }}),
    [](const testing::TestParamInfo<NoStore>& info) { return info.param.pszName; });

TEST_F(StoreFailure, MissingStoreIsNoProblem) {
  const int nRows = Rows(m_folder.Path("missing.db"), StoreQuery::Failure::Reported);

  EXPECT_EQ(0, nRows);
  EXPECT_THAT(m_problems.Problems(), IsEmpty());
}

TEST_F(StoreFailure, ReasonNamesTheMissingTable) {
  Rows(MakeStore(), StoreQuery::Failure::Reported, "select name from animals");

  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_THAT(m_problems.Problems()[0].strReason, HasSubstr("animals"));
}

TEST_F(StoreFailure, ReasonNamesTheMissingColumn) {
  Rows(MakeStore(), StoreQuery::Failure::Reported, "select shoe_size from people");

  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_THAT(m_problems.Problems()[0].strReason, HasSubstr("shoe_size"));
}

TEST_F(StoreFailure, FailedStatementHasNoColumns) {
  StoreQuery query(MakeStore(), "select shoe_size from people");

  EXPECT_FALSE(query.Next());
  EXPECT_EQ(0, query.ColumnCount());
}

TEST_F(StoreFailure, StoreThatWorksReportsNothing) {
  const int nRows = Rows(MakeStore(3), StoreQuery::Failure::Reported);

  EXPECT_EQ(3, nRows);
  EXPECT_THAT(m_problems.Problems(), IsEmpty());
}

TEST_F(StoreFailure, DamageInTheMiddleEndsTheRowsAndIsReported) {
  const std::string strPath = MakeStore(200);
  std::string strBytes = ReadFile(strPath);
  std::fill(strBytes.begin() + strBytes.size() / 2, strBytes.end(), '\xEE');
  WriteFile(strPath, strBytes);

  const int nRows = Rows(strPath, StoreQuery::Failure::Reported);

  EXPECT_GT(nRows, 0);
  EXPECT_LT(nRows, 200);
  ASSERT_THAT(m_problems.Problems(), SizeIs(1));
  EXPECT_EQ(strPath, m_problems.Problems()[0].strFile);
}

TEST_F(StoreFailure, WithoutAHandlerNothingHappens) {
  SetProblemHandler(nullptr);

  const int nRows = Rows(m_folder.MakeFolder("a.db"), StoreQuery::Failure::Reported);

  EXPECT_EQ(0, nRows);
  EXPECT_THAT(m_problems.Problems(), IsEmpty());
}
