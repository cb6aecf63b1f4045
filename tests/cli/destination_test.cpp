#include <gmock/gmock.h>

#include <filesystem>

#include "sample/pictures.h"
#include "tests/cli/command.h"
#include "tests/cli/mount.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using Layout = BackupBuilder::Layout;

class RecoverDestination : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  TemporaryFolder m_folder;
};

struct PlaceInBackup {
  const char* pszName;
  const char* pszPath;  ///< below the folder of the test; "link" is a link to the backup
};

void PrintTo(const PlaceInBackup& place, std::ostream* pStream) {
  *pStream << place.pszPath;
}

class DestinationInBackup : public RecoverDestination, public testing::WithParamInterface<PlaceInBackup> {};

class HostileApp : public RecoverDestination, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_P(DestinationInBackup, IsRefusedAndNothingIsCreated) {
  WriteSmallBackup(Backup(), Layout::Db);
  std::filesystem::create_directory_symlink(Backup(), m_folder.Path("link"));
  const auto before = TreeOf(Backup());

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), m_folder.Path(GetParam().pszPath)});

  EXPECT_EQ(1, result.nExitStatus);
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr("is inside the backup"));
  EXPECT_TRUE(before == TreeOf(Backup()));
}

INSTANTIATE_TEST_SUITE_P(
    Places, DestinationInBackup,
    testing::Values(PlaceInBackup{"Itself", "backup"}, PlaceInBackup{"WithSlash", "backup/"},
                    PlaceInBackup{"Below", "backup/out"}, PlaceInBackup{"FarBelow", "backup/a/b/c"},
                    PlaceInBackup{"ByWayOfAnother", "other/../backup/out"}, PlaceInBackup{"ByLink", "link"},
                    PlaceInBackup{"BelowLink", "link/out"}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(RecoverDestination, BackupThatIsGivenByALinkIsProtectedToo) {
  WriteSmallBackup(Backup(), Layout::Db);
  std::filesystem::create_directory_symlink(Backup(), m_folder.Path("link"));

  const CommandResult result =
      RunCommand({"recover", "--no-index", m_folder.Path("link"), m_folder.Path("backup/out")});

  EXPECT_EQ(1, result.nExitStatus);
  EXPECT_FALSE(Exists(m_folder.Path("backup/out")));
}

TEST_F(RecoverDestination, MayHaveANameThatBeginsLikeTheBackups) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand(RecoverFiles(Backup(), m_folder.Path("backup2")));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(small.files.size(), FilesBelow(m_folder.Path("backup2")).size());
}

// An existing link in the user's destination could also direct copies into the backup.
TEST_F(RecoverDestination, ThatHoldsALinkIntoTheBackupLeavesTheBackupUnchanged) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  std::filesystem::create_directory_symlink(Backup(), Out() + "/Camera Roll");
  const auto before = TreeOf(Backup());

  RunCommand(RecoverFiles(Backup(), Out()));

  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_F(RecoverDestination, ThatIsAFileExitsWithFour) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out", "mine");

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(Out() + ": is not a folder"));
  EXPECT_EQ("mine", ReadFile(Out()));
}

TEST_F(RecoverDestination, BelowAFileExitsWithFour) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out", "mine");

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out() + "/below"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(Out() + "/below: the folder can't be created"));
}

TEST_F(RecoverDestination, FileInPlaceOfACategoryFailsItsFilesAndTheRestIsCopied) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out/Camera Roll", "mine");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  const std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(4, result.nExitStatus);
  ASSERT_EQ(small.files.size() + 1, lines.size());
  EXPECT_THAT(lines[0], StartsWith("Failed\t" + Out() + "/Camera Roll/IMG_0001.PNG\t"));
  EXPECT_THAT(lines[1], StartsWith("Failed\t" + Out() + "/Camera Roll/IMG_0002.MOV\t"));
  for (size_t i = 2; i < small.files.size(); ++i) {
    EXPECT_EQ("Success\t" + Out() + small.files[i].strTarget, lines[i]);
    EXPECT_TRUE(small.files[i].strBytes == ReadFile(Out() + small.files[i].strTarget));
  }
  EXPECT_THAT(lines.back(), StartsWith("5 recovered, 2 failed, "));
  EXPECT_EQ("mine", ReadFile(Out() + "/Camera Roll"));
}

TEST_F(RecoverDestination, FailuresAreInJsonWithTheirReason) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out/Camera Roll", "mine");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out(), {"--json", "--quiet"}));

  const std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(4, result.nExitStatus);
  ASSERT_EQ(3u, lines.size());
  CommandResult first;
  first.strOut = lines[0];
  EXPECT_EQ("Failed", first.Object()["status"].toString());
  EXPECT_EQ(Out() + "/Camera Roll/IMG_0001.PNG", first.Object()["path"].toString().toStdString());
  EXPECT_FALSE(first.Object()["reason"].toString().isEmpty());
  EXPECT_THAT(lines.back(), HasSubstr(R"("failed":2,"succeeded":5})"));
}

TEST_F(RecoverDestination, ThatIsReadOnlyFailsEachFile) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a read-only folder";

  const CommandResult result = RunOnMount("ro", Out(), m_folder.Path("kept"), RecoverFiles(Backup(), Out()));

  std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  ASSERT_EQ(small.files.size() + 1, lines.size());
  EXPECT_THAT(lines.back(), StartsWith("0 recovered, 7 failed, "));
  lines.pop_back();
  EXPECT_THAT(lines, Each(StartsWith("Failed\t" + Out() + "/")));
}

TEST_F(RecoverDestination, ThatIsReadOnlyIsReportedAsTheReason) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a read-only folder";

  const CommandResult result = RunOnMount("ro", Out(), m_folder.Path("kept"), RecoverFiles(Backup(), Out()));

  EXPECT_THAT(result.strOut, HasSubstr("Read-only file system"));
}

TEST_F(RecoverDestination, ThatGetsFullKeepsOnlyCompleteFiles) {
  const QByteArray bytes = sample_media::jpeg(1).leftJustified(20000, '\0');
  WritePhotos(Backup(), 8, bytes);
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a small file system";

  const CommandResult result =
      RunOnMount("size=64k", Out(), m_folder.Path("kept"), RecoverFiles(Backup(), Out()));

  const std::vector<std::string> kept = FilesBelow(m_folder.Path("kept"));
  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  EXPECT_FALSE(kept.empty());
  EXPECT_LT(kept.size(), 8u);
  for (const std::string& strFile : kept)
    EXPECT_TRUE(bytes.toStdString() == ReadFile(m_folder.Path("kept/" + strFile))) << strFile;
  ASSERT_EQ(9u, result.Lines().size());
  EXPECT_THAT(result.LastLine(), StartsWith(std::to_string(kept.size()) + " recovered, " +
                                            std::to_string(8 - kept.size()) + " failed, "));
}

TEST_F(RecoverDestination, ThatGetsFullIsReportedAsTheReason) {
  WritePhotos(Backup(), 8, sample_media::jpeg(1).leftJustified(20000, '\0'));
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a small file system";

  const CommandResult result =
      RunOnMount("size=64k", Out(), m_folder.Path("kept"), RecoverFiles(Backup(), Out()));

  EXPECT_THAT(result.strOut, HasSubstr("No space left on device"));
}

TEST_P(HostileApp, WritesNothingOutsideTheDestination) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile(GetParam(), "a/evil.jpg", sample_media::jpeg(1));
  backup.addFile("AppDomain-com.example.Snap", "a/good.jpg", sample_media::jpeg(2));
  backup.finish();
  m_folder.MakeFolder("a/b");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), m_folder.Path("a/b/out")));

  EXPECT_THAT(result.strOut,
              HasSubstr("Success\t" + m_folder.Path("a/b/out/App Photos/example.Snap/good.JPG\n")));
  for (const std::string& strFile : FilesBelow(m_folder.Path())) {
    if (strFile.rfind("backup/", 0) != 0) {
      EXPECT_THAT(strFile, StartsWith("a/b/out/App Photos/"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Domains, HostileApp,
                         testing::Values("AppDomain-com.../../x-", "AppDomain-com...-",
                                         "AppDomain-com.../..-", "AppDomain-com./../../../x-",
                                         "AppDomain-com.a/../../../../x-", "AppDomain-com./tmp/x-",
                                         "AppDomain-com..-", "AppDomain-com.-", "AppDomain-net.../../x-"));

TEST_F(RecoverDestination, HostileAppIsCopiedUnderASafeName) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile("AppDomain-com.../../x-", "a/evil.jpg", sample_media::jpeg(1));
  backup.finish();

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("Success\t" + Out() + "/App Photos/.._.._x/evil.JPG", result.Line(0));
  EXPECT_THAT(result.strErr, HasSubstr("\"../../x/evil.JPG\""));
  EXPECT_TRUE(sample_media::jpeg(1).toStdString() == ReadFile(Out() + "/App Photos/.._.._x/evil.JPG"));
}

TEST_F(RecoverDestination, HostileFileNamesStayInTheirFolder) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile("CameraRollDomain", "Media/DCIM/..", sample_media::jpeg(1));
  backup.addFile("CameraRollDomain", "Media/DCIM/../../../x.JPG", sample_media::jpeg(2));
  backup.addFile("MediaDomain", "Library/SMS/Attachments/..", sample_media::jpeg(3));
  backup.finish();

  RunCommand(RecoverFiles(Backup(), m_folder.Path("a/out")));

  int nCopies = 0;
  for (const std::string& strFile : FilesBelow(m_folder.Path())) {
    if (strFile.rfind("backup/", 0) == 0) continue;
    EXPECT_THAT(strFile, StartsWith("a/out/"));
    ++nCopies;
  }
  EXPECT_GE(nCopies, 2);
}
