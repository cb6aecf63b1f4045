#include <gmock/gmock.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "backup/manifest.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;

namespace {

struct Row {
  QVariant fileId;
  QVariant domain;
  QVariant relativePath;
  int nFlags = 1;  // 1 file, 2 directory, 4 link
};

QString Utf8(const std::string& strText) {
  return QString::fromUtf8(strText.c_str());
}

void Execute(QSqlQuery& query, const char* pszStatement) {
  ASSERT_TRUE(query.exec(QString::fromLatin1(pszStatement))) << query.lastError().text().toUtf8().constData();
}

class DatabaseManifest : public testing::Test {
 protected:
  /// Writes and closes a store.
  /// @param pszMode journal mode; in "wal" the rows all go to the main file.
  void Write(const std::vector<Row>& rows, const char* pszMode = "delete") {
    {
      QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "manifest writer");
      database.setDatabaseName(Utf8(Path()));
      ASSERT_TRUE(database.open());
      QSqlQuery query(database);
      Execute(query, (std::string("pragma journal_mode=") + pszMode).c_str());
      Execute(query,
              "create table Files (fileID TEXT, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB)");
      query.prepare("insert into Files values (?, ?, ?, ?, x'62706c69')");
      for (const Row& row : rows) {
        for (const QVariant& value : {row.fileId, row.domain, row.relativePath}) query.addBindValue(value);
        query.addBindValue(row.nFlags);
        ASSERT_TRUE(query.exec()) << query.lastError().text().toUtf8().constData();
      }
      query.finish();
      database.close();
    }
    QSqlDatabase::removeDatabase("manifest writer");
  }

  int Read() { return process_db_file(Utf8(Path()).toStdU16String().c_str(), m_entries); }

  std::string Path() const { return m_folder.Path("Manifest.db"); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const __MBDB_FILE__& entry : m_entries) names.push_back(entry.strFileName);
    return names;
  }

  TemporaryFolder m_folder;
  Catalogue m_entries;
};

const QVariant kNull;

struct NameCase {
  const char* pszTitle;
  QVariant domain;
  QVariant relativePath;
  const char* pszName;
};

void PrintTo(const NameCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class DatabaseManifestName : public DatabaseManifest, public testing::WithParamInterface<NameCase> {};

}  // namespace

TEST_F(DatabaseManifest, IdentifierIsUsedVerbatim) {
  Write({{"0123", "HomeDomain", "Library/SMS/sms.db"}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  ASSERT_EQ(1u, m_entries.size());
  EXPECT_EQ("HomeDomain-Library/SMS/sms.db", m_entries[0].strFileName);
  EXPECT_EQ("0123", m_entries[0].strFileId);
}

TEST_P(DatabaseManifestName, IsMadeOfDomainAndPath) {
  Write({{"id", GetParam().domain, GetParam().relativePath}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre(GetParam().pszName));
}

INSTANTIATE_TEST_SUITE_P(
    Manifest, DatabaseManifestName,
    testing::Values(NameCase{"Both", "HomeDomain", "a/b", "HomeDomain-a/b"},
                    NameCase{"EmptyPathIsTheDomainAlone", "HomeDomain", "", "HomeDomain"},
                    NameCase{"NullPathIsTheDomainAlone", "HomeDomain", kNull, "HomeDomain"},
                    NameCase{"EmptyDomainBeginsWithTheDash", "", "a", "-a"},
                    NameCase{"NullDomainBeginsWithTheDash", kNull, "a", "-a"},
                    NameCase{"Neither", "", "", ""}),
    [](const testing::TestParamInfo<NameCase>& info) { return info.param.pszTitle; });

TEST_F(DatabaseManifest, DirectoriesAndLinksAreKept) {
  Write({{"id1", "HomeDomain", "Library", 2}, {"id2", "HomeDomain", "link", 4}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-Library", "HomeDomain-link"));
}

TEST_F(DatabaseManifest, RowWithoutAnIdentifierIsDropped) {
  Write({{"", "HomeDomain", "empty"}, {kNull, "HomeDomain", "null"}, {"id", "HomeDomain", "kept"}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-kept"));
}

TEST_F(DatabaseManifest, EqualRowsAreBothKeptInTheOrderOfTheTable) {
  Write({{"id2", "HomeDomain", "z"}, {"id1", "HomeDomain", "a"}, {"id2", "HomeDomain", "z"}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-z", "HomeDomain-a", "HomeDomain-z"));
}

TEST_F(DatabaseManifest, EntriesAlreadyThereAreRemoved) {
  m_entries = {{"CameraRollDomain-old", "id"}};
  Write({{"id", "HomeDomain", "a"}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
}

TEST_F(DatabaseManifest, NameIsInTheEncodingOfTheLocale) {
  Write({{"id", "HomeDomain", Utf8("caf\xC3\xA9")}});

  Read();
  const std::vector<std::string> utf8 = Names();
  LocaleCodec codec("ISO-8859-1");
  Read();

  EXPECT_THAT(utf8, ElementsAre("HomeDomain-caf\xC3\xA9"));
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-caf\xE9"));
}

TEST_F(DatabaseManifest, PathOfTheStoreMayHoldAnyCharacter) {
  Write({{"id", "HomeDomain", "a"}});
  const std::string strOdd = m_folder.Write("T\xC3\xA9l 100%41?#;&'", ReadFile(Path()));

  const int nStatus = process_db_file(Utf8(strOdd).toStdU16String().c_str(), m_entries);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
}

TEST_F(DatabaseManifest, StoreInWalModeIsReadWithoutATraceInTheBackup) {
  Write({{"id", "HomeDomain", "a"}}, "wal");
  const std::string strBefore = ReadFile(Path());
  ASSERT_EQ(2, strBefore.at(18));

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("Manifest.db"));
  EXPECT_TRUE(strBefore == ReadFile(Path()));
}

TEST_F(DatabaseManifest, SecondReadingTakesTheSecondStore) {
  Write({{"id", "HomeDomain", "a"}});
  Read();
  ASSERT_EQ(0, remove(Path().c_str()));
  Write({{"id", "HomeDomain", "b"}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-b"));
}
