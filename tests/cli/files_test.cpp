// "orvandel-cli files" as a list.
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QJsonDocument>
#include <filesystem>

#include "cli/files_options.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using Layout = BackupBuilder::Layout;

namespace {

constexpr qint64 kFirstTime =
    1388577600;  // of the entries of a BackupBuilder; each is later than the one before
constexpr qint64 kTimeStep = 7919;
constexpr size_t kFolders = 2, kLinks = 1;  // of a KnownBackup

std::vector<QJsonObject> Objects(const CommandResult& result) {
  std::vector<QJsonObject> objects;
  for (const std::string& strLine : result.Lines()) {
    QJsonParseError error;
    objects.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(strLine), &error).object());
    EXPECT_EQ(QJsonParseError::NoError, error.error) << strLine;
  }
  return objects;
}

class FilesOfAnyAge : public testing::TestWithParam<AnyAge> {
 protected:
  void SetUp() override { m_known = WriteAnyBackup(Backup(), GetParam()); }

  std::string Backup() const { return m_folder.Path("backup"); }

  CommandResult Files(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {"files", Backup()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunWithPassword(m_folder.Path(), all);
  }

  TemporaryFolder m_folder;
  KnownBackup m_known;
};

class FilesTest : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }

  /// Writes a backup with a file of each name in "HomeDomain".
  void WriteNames(const std::vector<QString>& names, Layout layout = Layout::Db) const {
    BackupBuilder backup(QString::fromStdString(Backup()), layout);
    backup.writeInfo({});
    for (const QString& name : names) backup.addFile("HomeDomain", name, "x");
    backup.finish();
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(FilesOfAnyAge, AreListedAllInTheOrderOfTheManifest) {
  const CommandResult result = Files({});

  const std::vector<std::string> lines = result.Lines();
  ASSERT_EQ(0, result.nExitStatus) << result.strErr;
  ASSERT_THAT(lines, SizeIs(m_known.files.size() + kFolders + kLinks));
  EXPECT_EQ("drwxr-xr-x\t0\t2014-01-01T12:00:00Z\t" + BackupBuilder::fileId("HomeDomain", "").toStdString() +
                "\t-\tHomeDomain",
            lines[0]);
  EXPECT_EQ("-rw-r--r--\t0\t2014-01-01T16:23:58Z\t" +
                BackupBuilder::fileId("HomeDomain", "Library/file 0").toStdString() +
                "\tpresent\tHomeDomain/Library/file 0",
            lines[2]);
  EXPECT_THAT(lines, Contains(EndsWith("\tHomeDomain/Library/link\t/private/var/mobile/Library/link")));
  EXPECT_THAT(result.strErr, IsEmpty());
}

TEST_P(FilesOfAnyAge, AreObjectsInJson) {
  const std::string strId = BackupBuilder::fileId("HomeDomain", "Library/file 17").toStdString();

  const CommandResult result = Files({"--json", "/HomeDomain/Library/file 17", "link", "HomeDomain"});

  const QString time =
      QDateTime::fromSecsSinceEpoch(kFirstTime + 6 * kTimeStep, Qt::UTC).toString(Qt::ISODate);
  const std::vector<QJsonObject> objects = Objects(result);
  ASSERT_THAT(objects, SizeIs(3));
  EXPECT_EQ(R"({"domain":"HomeDomain","id":")" + strId + R"(","kind":"file","mode":"0644","modified":")" +
                time.toStdString() + R"(","path":"Library/file 17","present":true,"size":17})",
            JsonText(objects[1]));
  EXPECT_EQ("folder", objects[0]["kind"].toString().toStdString());
  EXPECT_FALSE(objects[0].contains("present"));
  EXPECT_EQ("/private/var/mobile/Library/link", objects[2]["target"].toString().toStdString());
}

TEST_P(FilesOfAnyAge, ThatAreMissingCanBeSelected) {
  for (const char* pszName : {"Media/7", "Media/9"})
    ASSERT_EQ(0, unlink(m_known.paths[BackupBuilder::fileId("MediaDomain", pszName).toStdString()].c_str()));

  const CommandResult result = Files({"--missing"});

  ASSERT_THAT(result.Lines(), SizeIs(2));
  EXPECT_THAT(result.Line(0), EndsWith("\tmissing\tMediaDomain/Media/7"));
  EXPECT_THAT(result.Line(1), EndsWith("\tmissing\tMediaDomain/Media/9"));
  EXPECT_EQ(0, result.nExitStatus);
}

TEST_P(FilesOfAnyAge, CanBeListedByName) {
  const CommandResult result = Files({"--names", "Media/1?", "/MediaDomain/Media/[!1]", "**/*.dat"});

  EXPECT_THAT(result.Lines(), Contains("AppDomain-com.example.Sketch/Documents/Grüße – 文.dat"));
  EXPECT_THAT(result.Lines(), SizeIs(10));
  EXPECT_THAT(result.strErr, HasSubstr("nothing matches \"Media/1?\""));
}

TEST_P(FilesOfAnyAge, CanBeSelectedBySize) {
  const CommandResult result = Files({"--names", "--larger", "256K"});

  EXPECT_THAT(result.Lines(),
              ElementsAre("HomeDomain/Library/file 262145", "HomeDomain/Library/file 3145729"));
}

TEST_P(FilesOfAnyAge, CanBeSelectedByTime) {
  const QDateTime time = QDateTime::fromSecsSinceEpoch(kFirstTime + 13 * kTimeStep, Qt::UTC);

  const CommandResult result =
      Files({"--names", "--newer", time.toString(Qt::ISODate).toStdString(), "--domain", "HomeDomain"});

  EXPECT_THAT(result.Lines(), ElementsAre("HomeDomain/Library/file 3145729", "HomeDomain/Library/link"));
}

TEST_P(FilesOfAnyAge, AreCounted) {
  const CommandResult result = Files({"--count", "--domain", "MediaDomain", "--domain", "HomeDomain"});

  EXPECT_THAT(result.Lines(), ElementsAre(std::to_string(m_known.files.size() - 1 + kFolders + kLinks)));
}

TEST_P(FilesOfAnyAge, AreListedWithoutChangingTheBackup) {
  const auto before = TreeOf(Backup());

  Files({});

  EXPECT_TRUE(before == TreeOf(Backup()));
}

INSTANTIATE_TEST_SUITE_P(Ages, FilesOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);

TEST_F(FilesTest, ThatMatchNothingAreNoFailure) {
  WriteNames({"a"});

  const CommandResult result = RunCommand({"files", Backup(), "*.HEIC", "a"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("orvandel-cli: nothing matches \"*.HEIC\"\n", result.strErr);
  EXPECT_THAT(result.Lines(), SizeIs(1));
}

TEST_F(FilesTest, ThatMeetNoConditionAreNoFailure) {
  WriteNames({"a"});

  const CommandResult result = RunCommand({"files", Backup(), "a", "--larger", "1G", "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr("no entry of the manifest meets these conditions"));
}

TEST_F(FilesTest, WithControlCharactersArePrintedWithoutThem) {
  WriteNames({"a\nb\x1B[31m", QString::fromUtf8("\xC2\x9B"
                                                "1m")},
             Layout::Mbdb);

  const CommandResult result = RunCommand({"files", Backup(), "--names"});

  EXPECT_THAT(result.Lines(), ElementsAre("HomeDomain/a?b?[31m", "HomeDomain/?1m"));
}

TEST_F(FilesTest, WithOddNamesAreWholeInJson) {
  const QString name = QString::fromUtf8("a\n\"\\\x1B\t\xC2\x9B\xE6\x96\x87/..");
  WriteNames({name}, Layout::Mbdb);

  const std::vector<QJsonObject> objects = Objects(RunCommand({"files", Backup(), "--json", "--names"}));

  ASSERT_THAT(objects, SizeIs(1));
  EXPECT_EQ(name.toStdString(), objects[0]["path"].toString().toStdString());
  EXPECT_THAT(objects[0].keys(), ElementsAre("domain", "path"));
}

TEST_F(FilesTest, InALinkedFolderAreMissing) {
  WriteNames({"a"});
  const std::string strShard = BackupBuilder::fileId("HomeDomain", "a").left(2).toStdString();
  std::filesystem::rename(Backup() + "/" + strShard, m_folder.Path("elsewhere"));
  std::filesystem::create_directory_symlink(m_folder.Path("elsewhere"), Backup() + "/" + strShard);

  const CommandResult result = RunCommand({"files", Backup(), "--missing", "--names"});

  EXPECT_THAT(result.Lines(), ElementsAre("HomeDomain/a"));
}

TEST_F(FilesTest, OfAManifestThatEndsEarlyAreListedAndTheEndIsReported) {
  WriteNames({"a", "b", "c"}, Layout::Mbdb);
  const std::string strManifest = Backup() + "/Manifest.mbdb";
  WriteFile(strManifest, ReadFile(strManifest).substr(0, ReadFile(strManifest).size() - 10));

  const CommandResult result = RunCommand({"files", Backup(), "--names"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre("HomeDomain/a", "HomeDomain/b"));
  EXPECT_THAT(result.strErr, HasSubstr("Manifest.mbdb"));
}

TEST_F(FilesTest, OfADamagedManifestAreAFailure) {
  WriteNames({"a"});
  WriteFile(Backup() + "/Manifest.db", std::string(100, 'x'));

  const CommandResult result = RunCommand({"files", Backup()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("Manifest.db: "));
}

TEST_F(FilesTest, WithoutAManifestAreNoBackup) {
  m_folder.Write("backup/Info.plist", "<plist></plist>");

  for (const char* pszCommand : {"files", "domains", "verify"}) {
    const CommandResult result = RunCommand({pszCommand, Backup()});

    EXPECT_EQ(2, result.nExitStatus);
    EXPECT_THAT(result.strErr, HasSubstr("contains no manifest"));
  }
}

TEST_F(FilesTest, WithoutInfoAreNoBackup) {
  m_folder.MakeFolder("backup");

  const CommandResult result = RunCommand({"files", Backup()});

  EXPECT_EQ(2, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("not a backup"));
}

TEST_F(FilesTest, OfAnEncryptedBackupNeedItsPassword) {
  WriteEncryptedBackup(Backup(), kBackupAges.back());
  m_folder.Write("password", "wrong");

  const CommandResult result = RunCommand({"files", Backup(), "--password-file", m_folder.Path("password")});

  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("wrong password"));
  EXPECT_THAT(result.strOut, IsEmpty());
}

namespace {

struct SizeCase {
  const char* pszSize;
  std::optional<uint64_t> nSize;
};

void PrintTo(const SizeCase& row, std::ostream* pStream) {
  *pStream << '"' << row.pszSize << '"';
}

class SizeTable : public testing::TestWithParam<SizeCase> {};

struct TimeCase {
  const char* pszTime;
  std::optional<int64_t> nSeconds;
};

void PrintTo(const TimeCase& row, std::ostream* pStream) {
  *pStream << '"' << row.pszTime << '"';
}

class TimeTable : public testing::TestWithParam<TimeCase> {};

}  // namespace

TEST_P(SizeTable, IsParsed) {
  EXPECT_EQ(GetParam().nSize, ParseSize(GetParam().pszSize));
}

INSTANTIATE_TEST_SUITE_P(
    FilesOptions, SizeTable,
    testing::Values(SizeCase{"0", 0}, SizeCase{"1023", 1023}, SizeCase{"1K", 1024}, SizeCase{"2k", 2048},
                    SizeCase{"3M", 3 << 20}, SizeCase{"4G", 4ULL << 30}, SizeCase{"1T", 1ULL << 40},
                    SizeCase{"18446744073709551615", UINT64_MAX}, SizeCase{"18446744073709551616", {}},
                    SizeCase{"16777216T", {}}, SizeCase{"16777215T", 16777215ULL << 40}, SizeCase{"", {}},
                    SizeCase{"K", {}}, SizeCase{"-1", {}}, SizeCase{"+1", {}}, SizeCase{" 1", {}},
                    SizeCase{"1.5M", {}}, SizeCase{"1KB", {}}, SizeCase{"1P", {}}));

TEST_P(TimeTable, IsParsed) {
  EXPECT_EQ(GetParam().nSeconds, ParseTime(GetParam().pszTime));
}

INSTANTIATE_TEST_SUITE_P(
    FilesOptions, TimeTable,
    testing::Values(TimeCase{"1970-01-02", 86400}, TimeCase{"2016-05-01T09:12:33Z", 1462093953},
                    TimeCase{"2016-05-01T09:12:33", 1462093953}, TimeCase{"2016-05-01 09:12:33", 1462093953},
                    TimeCase{"2016-05-01T11:12:33+02:00", 1462093953}, TimeCase{"2016-13-01", {}},
                    TimeCase{"yesterday", {}}, TimeCase{"", {}}));
