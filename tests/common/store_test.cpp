#include "common/store.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>

#include "common/text.h"
#include "sample/stores.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr char kNames[] = "select name from people order by name";

class Store : public testing::Test {
 protected:
  /// Creates a store with two people.
  /// @return its narrow path.
  std::string MakeStore(const std::string& strName, bool bWal = false) const {
    m_folder.MakeFolder(strName.substr(0, strName.find_last_of('/') + 1));
    SampleStore store(FromNarrow(m_folder.Path(strName)), bWal);
    store.run("create table people (name TEXT, age)");
    store.run("insert into people values ('Ann', 41)");
    store.run("insert into people values ('Bo', NULL)");
    store.close();
    return m_folder.Path(strName);
  }

  static std::vector<std::string> Read(const std::string& strPath, const char* pszStatement = kNames,
                                       StoreQuery::Failure failure = StoreQuery::Failure::Reported) {
    std::vector<std::string> texts;
    StoreQuery query(strPath, pszStatement, failure);
    while (query.Next()) texts.push_back(query.Narrow(0));
    return texts;
  }

  TemporaryFolder m_folder;
};

class StoreName : public Store, public testing::WithParamInterface<const char*> {};

class StoreRelativeName : public Store, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_F(Store, RowsComeInTheOrderOfTheStatement) {
  const std::string strPath = MakeStore("a.db");

  const std::vector<std::string> texts = Read(strPath, "select name from people order by name desc");

  EXPECT_THAT(texts, ElementsAre("Bo", "Ann"));
}

TEST_F(Store, ColumnsAreReadAsTextOrNumber) {
  const std::string strPath = MakeStore("a.db");

  StoreQuery query(
      strPath,
      "select name || 'e', age, x'', 'J' || char(252) || 'rgen', 2.5, 'words' from people where age");

  ASSERT_TRUE(query.Next());
  EXPECT_EQ(6, query.ColumnCount());
  EXPECT_EQ("Anne", query.Text(0));
  EXPECT_EQ("41", query.Text(1));
  EXPECT_EQ(41, query.Integer(1));
  EXPECT_EQ("", query.Narrow(2));
  EXPECT_EQ("J\xC3\xBCrgen", query.Narrow(3));
  EXPECT_EQ("2.5", query.Text(4));
  EXPECT_EQ(0, query.Integer(5));
}

TEST_F(Store, NarrowTextIsInTheEncodingOfTheLocale) {
  const std::string strPath = MakeStore("a.db");
  LocaleCodec codec("ISO-8859-1");

  const std::vector<std::string> texts = Read(strPath, "select 'J' || char(252) || 'rgen'");

  EXPECT_THAT(texts, ElementsAre("J\xFCrgen"));
}

TEST_F(Store, NullIsEmptyAsTextAndZeroAsNumber) {
  const std::string strPath = MakeStore("a.db");

  StoreQuery query(strPath, "select age from people where age is null");

  ASSERT_TRUE(query.Next());
  EXPECT_EQ("", query.Narrow(0));
  EXPECT_TRUE(query.Text(0).isEmpty());
  EXPECT_EQ(0, query.Integer(0));
}

TEST_F(Store, NothingFollowsTheLastRow) {
  const std::string strPath = MakeStore("a.db");
  StoreQuery query(strPath, kNames);

  const std::vector<bool> answers = {query.Next(), query.Next(), query.Next(), query.Next()};

  EXPECT_THAT(answers, ElementsAre(true, true, false, false));
}

TEST_F(Store, StatementWithoutRowsStillHasColumns) {
  const std::string strPath = MakeStore("a.db");
  StoreQuery query(strPath, "select * from people where 0");

  const bool bRow = query.Next();

  EXPECT_FALSE(bRow);
  EXPECT_EQ(2, query.ColumnCount());
}

TEST_F(Store, MissingFileGivesNoRowsAndIsNotCreated) {
  const std::vector<std::string> texts = Read(m_folder.Path("missing.db"));

  EXPECT_THAT(texts, IsEmpty());
  EXPECT_THAT(NamesIn(m_folder.Path()), IsEmpty());
}

TEST_F(Store, MissingFolderGivesNoRowsAndIsNotCreated) {
  const std::vector<std::string> texts = Read(m_folder.Path("missing/a.db"));

  EXPECT_THAT(texts, IsEmpty());
  EXPECT_THAT(NamesIn(m_folder.Path()), IsEmpty());
}

TEST_F(Store, WalModeGivesAllRowsAndNoFileBeside) {
  const std::string strPath = MakeStore("wal.db", true);
  const std::string strBytes = ReadFile(strPath);
  ASSERT_EQ("\2\2", strBytes.substr(18, 2));
  StoreQuery query(strPath, kNames);

  const bool bRow = query.Next();

  EXPECT_TRUE(bRow);
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("wal.db"));
  EXPECT_TRUE(strBytes == ReadFile(strPath));
}

// Rows that the device had not yet checkpointed are in the WAL file. An immutable store is read without it.
TEST_F(Store, RowsOfTheWalFileBesideAreNotRead) {
  const std::string strWriter = MakeStore("writer.db", true);
  sqlite3* pWriter = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(strWriter.c_str(), &pWriter));
  ASSERT_EQ(SQLITE_OK,
            sqlite3_exec(pWriter, "insert into people values ('Late', 7)", nullptr, nullptr, nullptr));
  const std::string strPath = m_folder.Write("a.db", ReadFile(strWriter));
  const std::string strWal = m_folder.Write("a.db-wal", ReadFile(strWriter + "-wal"));
  sqlite3_close(pWriter);
  ASSERT_NE(std::string::npos, ReadFile(strWal).find("Late"));

  const std::vector<std::string> texts = Read(strPath);

  EXPECT_THAT(texts, ElementsAre("Ann", "Bo"));
}

TEST_F(Store, WritingStatementFailsAndChangesNothing) {
  const std::string strPath = MakeStore("a.db");
  const std::string strBytes = ReadFile(strPath);

  const std::vector<std::string> texts = Read(strPath, "delete from people");

  EXPECT_THAT(texts, IsEmpty());
  EXPECT_TRUE(strBytes == ReadFile(strPath));
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("a.db"));
}

TEST_F(Store, FileThatNobodyMayWriteIsRead) {
  const std::string strPath = MakeStore("a.db");
  ASSERT_TRUE(QFile::setPermissions(FromNarrow(strPath), QFile::ReadOwner));

  const std::vector<std::string> texts = Read(strPath);

  EXPECT_THAT(texts, ElementsAre("Ann", "Bo"));
}

TEST_P(StoreName, IsFoundWhateverItHolds) {
  const std::string strPath = MakeStore(GetParam());

  const std::vector<std::string> texts = Read(strPath);

  EXPECT_THAT(texts, ElementsAre("Ann", "Bo"));
}

INSTANTIATE_TEST_SUITE_P(Paths, StoreName,
                         testing::Values("plain.db", "with blank.db", " leading.db", "100%.db", "%41.db",
                                         "a%3Fb.db", "what?.db", "a.db?mode=rw", "a#b.db", "a&b=c.db",
                                         "a+b.db", "a:b.db", "a\\b.db", "\"quoted\".db", "a;b,c.db", "[a].db",
                                         "file:a.db", "J\xC3\xBCrgen.db", "\xE4\xBA\xAC\xE9\x83\xBD.db",
                                         "\xF0\x9F\x8D\x81.db", "folder with blank/100%?#/a.db",
                                         "no-extension", "a//b.db"),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

// "%41" decodes to "A": decoding a name twice, or not encoding it, opens the wrong file.
TEST_F(Store, EncodedLookingNameIsNotTakenForAnotherFile) {
  MakeStore("A.db");

  const std::vector<std::string> texts = Read(m_folder.Path("%41.db"));

  EXPECT_THAT(texts, IsEmpty());
}

TEST_P(StoreRelativeName, BeginsInTheCurrentFolder) {
  const QString qstrOld = QDir::currentPath();
  MakeStore("inner/a b.db");
  ASSERT_TRUE(QDir::setCurrent(FromNarrow(m_folder.Path("inner"))));

  const std::vector<std::string> texts = Read(GetParam());
  QDir::setCurrent(qstrOld);

  EXPECT_THAT(texts, ElementsAre("Ann", "Bo"));
}

INSTANTIATE_TEST_SUITE_P(Paths, StoreRelativeName, testing::Values("a b.db", "./a b.db", "../inner/a b.db"),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_F(Store, SecondQueryReadsItsOwnStore) {
  Read(MakeStore("a.db"));
  SampleStore store(FromNarrow(m_folder.Path("b.db")), false);
  store.run("create table people as select 'Cy' as name");
  store.close();

  const std::vector<std::string> texts = Read(m_folder.Path("b.db"));

  EXPECT_THAT(texts, ElementsAre("Cy"));
}

TEST_F(Store, TwoQueriesRunSideBySide) {
  const std::string strPath = MakeStore("a.db");
  StoreQuery first(strPath, kNames);
  StoreQuery second(strPath, "select age from people where age");

  const bool bBoth = first.Next() && second.Next();

  EXPECT_TRUE(bBoth);
  EXPECT_EQ("Ann", first.Narrow(0));
  EXPECT_EQ("41", second.Narrow(0));
}

TEST_F(Store, RowsAreFetchedOnlyWhenTheyAreAskedFor) {
  const std::string strPath = MakeStore("a.db");
  // The statement never ends, so fetching ahead would not return.
  StoreQuery query(strPath,
                   "with recursive n(i) as (select 1 union all select i + 1 from n) select i from n");

  std::vector<int> numbers;
  while (numbers.size() < 3 && query.Next()) numbers.push_back(query.Integer(0));

  EXPECT_THAT(numbers, ElementsAre(1, 2, 3));
}
