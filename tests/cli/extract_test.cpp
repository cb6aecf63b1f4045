// "orvandel-cli files --to": what is extracted, and under which names.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QJsonDocument>
#include <filesystem>

#include "cli/target_names.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/mount.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using Layout = BackupBuilder::Layout;

namespace {

constexpr time_t kFirstTime =
    1388577600;  // of the entries of a BackupBuilder; each is later than the one before
constexpr time_t kTimeStep = 7919;

struct stat StatOf(const std::string& strPath) {
  struct stat info = {};
  EXPECT_EQ(0, lstat(strPath.c_str(), &info)) << strPath;
  return info;
}

/// The identifier of an extracted file, by its path below the destination.
std::string IdOf(const std::string& strFile) {
  const QString name = QString::fromStdString(strFile);
  return BackupBuilder::fileId(name.section('/', 0, 0), name.section('/', 1)).toStdString();
}

class ExtractTest : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  CommandResult Extract(const std::vector<std::string>& arguments = {}) const {
    std::vector<std::string> all = {"files", Backup(), "--to", Out()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunWithPassword(m_folder.Path(), all);
  }

  /// Writes a backup with files of these names in "HomeDomain"; the content is the number, from 0.
  void WriteNames(const std::vector<QString>& names, Layout layout = Layout::Mbdb) const {
    BackupBuilder backup(QString::fromStdString(Backup()), layout);
    backup.writeInfo({});
    for (size_t i = 0; i < names.size(); ++i)
      backup.addFile("HomeDomain", names[i], QByteArray::number(static_cast<int>(i)));
    backup.finish();
  }

  TemporaryFolder m_folder;
};

class ExtractOfAnyAge : public ExtractTest, public testing::WithParamInterface<AnyAge> {
 protected:
  void SetUp() override { m_known = WriteAnyBackup(Backup(), GetParam()); }

  KnownBackup m_known;
};

/// A name in a hostile backup, and where it is extracted to.
struct HostileName {
  const char* pszName;
  QString path;
  std::string strTarget;
};

void PrintTo(const HostileName& name, std::ostream* pStream) {
  *pStream << name.pszName;
}

class HostileNames : public ExtractTest, public testing::WithParamInterface<HostileName> {};

}  // namespace

TEST_P(ExtractOfAnyAge, WritesEveryFileWithItsContent) {
  const CommandResult result = Extract();

  const std::vector<std::string> files = FilesBelow(Out());
  EXPECT_EQ(0, result.nExitStatus) << result.strErr << result.strOut;
  EXPECT_EQ(m_known.files.size() + 1, files.size());
  for (const std::string& strFile : files) {
    if (strFile == "HomeDomain/Library/link.link.txt") {
      EXPECT_EQ("/private/var/mobile/Library/link\n", ReadFile(Out() + "/" + strFile));
    } else {
      ASSERT_EQ(1u, m_known.files.count(IdOf(strFile))) << strFile;
      EXPECT_TRUE(m_known.files[IdOf(strFile)] == ReadFile(Out() + "/" + strFile)) << strFile;
    }
  }
  EXPECT_THAT(result.LastLine(), StartsWith(std::to_string(files.size()) + " extracted, 0 kept, 0 failed, "));
  EXPECT_THAT(result.LastLine(), EndsWith(" in " + Out()));
  EXPECT_THAT(result.Lines(), Contains("Success\t" + Out() + "/MediaDomain/Media/7"));
}

TEST_P(ExtractOfAnyAge, RestoresTheTimesAndSetsTheModes) {
  Extract();

  const struct stat file = StatOf(Out() + "/HomeDomain/Library/file 0");
  EXPECT_EQ(kFirstTime + 2 * kTimeStep, file.st_mtime);
  EXPECT_EQ(0100644u, file.st_mode);
  EXPECT_EQ(0100644u, StatOf(Out() + "/HomeDomain/Library/link.link.txt").st_mode);
  EXPECT_EQ(0040755u, StatOf(Out() + "/HomeDomain/Library").st_mode);
}

TEST_P(ExtractOfAnyAge, DoesNotChangeTheBackup) {
  const auto before = TreeOf(Backup());

  Extract();

  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_P(ExtractOfAnyAge, AgainKeepsEverything) {
  Extract();
  const auto before = TreeOf(Out() + "/HomeDomain");

  const CommandResult result = Extract();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.LastLine(),
              StartsWith("0 extracted, " + std::to_string(m_known.files.size() + 1) + " kept, 0 failed, 0 "));
  EXPECT_TRUE(before == TreeOf(Out() + "/HomeDomain"));
}

TEST_P(ExtractOfAnyAge, ReportsAMissingFileAndWritesTheRest) {
  ASSERT_EQ(0, unlink(m_known.paths[IdOf("MediaDomain/Media/7")].c_str()));

  const CommandResult result = Extract();

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(),
              Contains("Failed\t" + Out() + "/MediaDomain/Media/7\tis missing from the backup"));
  EXPECT_THAT(result.LastLine(),
              StartsWith(std::to_string(m_known.files.size()) + " extracted, 0 kept, 1 failed, "));
}

INSTANTIATE_TEST_SUITE_P(Ages, ExtractOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);

TEST_F(ExtractTest, WritesOnlyWhatMatches) {
  WriteNames({"a/x.HEIC", "a/y.JPG", "b/z.HEIC"});

  const CommandResult result = Extract({"**/*.HEIC"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(FilesBelow(Out()), ElementsAre("HomeDomain/a/x.HEIC", "HomeDomain/b/z.HEIC"));
}

TEST_F(ExtractTest, CreatesFoldersThatMatchWithoutTheirContent) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addEntry("HomeDomain", "Library", BackupBuilder::kDirectory);
  backup.addFile("HomeDomain", "Library/file", "x");
  backup.finish();

  const CommandResult result = Extract({"Library/"});

  EXPECT_TRUE(fs::is_directory(Out() + "/HomeDomain/Library"));
  EXPECT_THAT(FilesBelow(Out()), IsEmpty());
  EXPECT_THAT(result.LastLine(), StartsWith("0 extracted, 0 kept, 0 failed, 0 Bytes in "));
}

TEST_F(ExtractTest, DoesNotDependOnTheUmask) {
  WriteNames({"a/b"});
  QProcess process;
  PrepareCommand(process, {});
  process.start("sh", Arguments({"-c", "umask 077; \"$@\"", "sh", CommandPath().toStdString(), "files",
                                 Backup(), "--to", Out()}));

  FinishCommand(process);

  EXPECT_EQ(0100644u, StatOf(Out() + "/HomeDomain/a/b").st_mode);
  EXPECT_EQ(0040755u, StatOf(Out() + "/HomeDomain/a").st_mode);
}

TEST_F(ExtractTest, PrintsJsonLines) {
  WriteNames({"a", "b"});
  m_folder.Write("out/HomeDomain/a", "mine");

  const CommandResult result = Extract({"--json"});

  EXPECT_THAT(result.Lines(),
              UnorderedElementsAre(
                  "{\"path\":\"" + Out() + "/HomeDomain/a\",\"status\":\"Kept\"}",
                  "{\"path\":\"" + Out() + "/HomeDomain/b\",\"status\":\"Success\"}",
                  "{\"bytes\":1,\"destination\":\"" + Out() + "\",\"extracted\":1,\"failed\":0,\"kept\":1}"));
}

TEST_F(ExtractTest, PrintsOnlyFailuresAndTotalsWhenQuiet) {
  WriteNames({"a", "b", "c"});
  m_folder.Write("out/HomeDomain/a", "mine");
  m_folder.MakeFolder("out/HomeDomain/b");

  const CommandResult result = Extract({"-q"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(),
              ElementsAre("Failed\t" + Out() + "/HomeDomain/b\tcan't be created: a folder has its name",
                          "1 extracted, 1 kept, 1 failed, 1 Bytes in " + Out()));
}

TEST_F(ExtractTest, KeepsWhatIsThere) {
  WriteNames({"a", "b"});
  m_folder.Write("out/HomeDomain/a", "mine");

  Extract();

  EXPECT_EQ("mine", ReadFile(Out() + "/HomeDomain/a"));
}

TEST_F(ExtractTest, ReplacesWhatIsThereIfAsked) {
  WriteNames({"a", "b", "c"});
  const std::string strMine = m_folder.Write("mine", "mine");
  m_folder.Write("out/HomeDomain/a", "old");
  fs::create_symlink(strMine, Out() + "/HomeDomain/b");
  ASSERT_EQ(0, mkfifo((Out() + "/HomeDomain/c").c_str(), 0600));

  const CommandResult result = Extract({"--replace"});

  EXPECT_THAT(result.LastLine(), StartsWith("3 extracted, 0 kept, 0 failed, "));
  EXPECT_EQ("0", ReadFile(Out() + "/HomeDomain/a"));
  EXPECT_EQ("1", ReadFile(Out() + "/HomeDomain/b"));
  EXPECT_FALSE(fs::is_symlink(Out() + "/HomeDomain/b"));
  EXPECT_EQ("2", ReadFile(Out() + "/HomeDomain/c"));
  EXPECT_EQ("mine", ReadFile(strMine));
  EXPECT_THAT(NamesIn(Out() + "/HomeDomain"), ElementsAre("a", "b", "c"));
}

TEST_F(ExtractTest, KeepsTheOldFileWhenTheNewOneCannotBeRead) {
  WriteNames({"a"});
  ASSERT_EQ(0, unlink((Backup() + "/" + IdOf("HomeDomain/a")).c_str()));
  m_folder.Write("out/HomeDomain/a", "old");

  const CommandResult result = Extract({"--replace"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_EQ("old", ReadFile(Out() + "/HomeDomain/a"));
}

TEST_F(ExtractTest, GivesTheSecondOfTwoEqualNamesANumber) {
  const QString longName = QString(255, 'n');
  WriteNames({"a/../b.txt", "a/_/b.txt", "a/_/b.txt", ".x", "./", longName, longName});

  const CommandResult result = Extract();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(FilesBelow(Out()), UnorderedElementsAre("HomeDomain/a/_/b.txt", "HomeDomain/a/_/b (2).txt",
                                                      "HomeDomain/a/_/b (3).txt", "HomeDomain/.x",
                                                      "HomeDomain/_/_", "HomeDomain/" + std::string(255, 'n'),
                                                      "HomeDomain/" + std::string(236, 'n') + " (2)"));
  EXPECT_THAT(result.strErr,
              HasSubstr("b (2).txt: in the backup it is called \"HomeDomain/a/_/b.txt\", a name "
                        "that another file of it has"));
  EXPECT_EQ("0", ReadFile(Out() + "/HomeDomain/a/_/b.txt"));
}

TEST_F(ExtractTest, GivesTheSameNumbersInTheNextRun) {
  WriteNames({"a", "a", "a"});
  Extract();
  const auto before = TreeOf(Out() + "/HomeDomain");

  const CommandResult result = Extract({"--resume"});

  EXPECT_THAT(result.LastLine(), StartsWith("0 extracted, 3 kept, 0 failed, "));
  EXPECT_TRUE(before == TreeOf(Out() + "/HomeDomain"));
}

TEST_P(HostileNames, StayBelowTheDestination) {
  WriteNames({GetParam().path});

  const CommandResult result = Extract();

  EXPECT_EQ(0, result.nExitStatus) << result.strErr << result.strOut;
  EXPECT_THAT(FilesBelow(Out()), ElementsAre(GetParam().strTarget));
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("backup", "out", "password"));
  EXPECT_THAT(result.strErr, HasSubstr("in the backup it is called \"HomeDomain/"));
}

INSTANTIATE_TEST_SUITE_P(
    Names, HostileNames,
    testing::Values(HostileName{"Parent", "../evil", "HomeDomain/_/evil"},
                    HostileName{"Parents", "a/../../../evil", "HomeDomain/a/_/_/_/evil"},
                    HostileName{"Absolute", "/etc/evil", "HomeDomain/_/etc/evil"},
                    HostileName{"Dot", "./evil", "HomeDomain/_/evil"},
                    HostileName{"EmptySegment", "a//evil", "HomeDomain/a/_/evil"},
                    HostileName{"Nul", QString::fromUtf8("e\0vil", 5), "HomeDomain/e_vil"},
                    HostileName{"Long", QString(300, 'x'), "HomeDomain/" + std::string(236, 'x')},
                    HostileName{"LongWithExtension", QString(300, 'x') + ".HEIC",
                                "HomeDomain/" + std::string(231, 'x') + ".HEIC"},
                    HostileName{"OnlyParent", "..", "HomeDomain/_"},
                    HostileName{"Temporary", ".orvandel-0123456789abcdef-7.part",
                                "HomeDomain/_.orvandel-0123456789abcdef-7.part"}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(ExtractTest, MakesHostileDomainsSafe) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  for (const char* pszDomain : {"..", "../../evil", "", "/etc"}) backup.addFile(pszDomain, "x", "x");
  backup.finish();

  const CommandResult result = Extract();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(FilesBelow(Out()), UnorderedElementsAre("_/x", ".._.._evil/x", "_/x (2)", "_etc/x"));
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("backup", "out", "password"));
}

TEST_F(ExtractTest, ReportsAPathThatIsTooLong) {
  WriteNames({QString("folder/").repeated(600) + "x", "a"});

  const CommandResult result = Extract();

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(AllOf(StartsWith("Failed\t"), EndsWith("File name too long"))));
  EXPECT_THAT(FilesBelow(Out()), ElementsAre("HomeDomain/a"));
}

TEST_F(ExtractTest, SelectsNothingWithoutFailing) {
  WriteNames({"a"});

  const CommandResult result = Extract({"*.HEIC"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("nothing matches \"*.HEIC\""));
  EXPECT_THAT(result.LastLine(), StartsWith("0 extracted, 0 kept, 0 failed, "));
}

TEST(TargetNames, DifferInMoreThanCaseWhereCaseIsIgnored) {
  TargetNames names(false, true);
  ManifestEntry entry;
  entry.strDomain = "HomeDomain";
  entry.strPath = "Readme.txt";
  names.Of(entry);
  entry.strPath = "README.TXT";

  EXPECT_EQ("HomeDomain/README (2).TXT", names.Of(entry).strPath);
}

TEST(TargetNames, AreSafeEverywhereWhereTheyHaveToBe) {
  TargetNames names(true, false);
  ManifestEntry entry;
  entry.strDomain = "HomeDomain";
  entry.strPath = "a:b/c?.txt";

  const TargetNames::Target target = names.Of(entry);

  EXPECT_EQ("HomeDomain/a_b/c_.txt", target.strPath);
  EXPECT_EQ("HomeDomain/a:b/c?.txt", target.strOriginal);
}

TEST(TargetNames, OfAMillionEqualEntriesTakeNoQuadraticTime) {
  TargetNames names(false, false);
  ManifestEntry entry;
  entry.strDomain = "D";
  entry.strPath = "x";
  std::string strLast;

  for (int i = 0; i < 1000000; ++i) strLast = names.Of(entry).strPath;

  EXPECT_EQ("D/x (1000000)", strLast);
}
