#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "sample/demo_backup.h"
#include "sample/pictures.h"
#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using Layout = BackupBuilder::Layout;

class RecoverCommand : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  TemporaryFolder m_folder;
};

class RecoverOfLayout : public RecoverCommand, public testing::WithParamInterface<Layout> {};

std::string NameOfLayout(const testing::TestParamInfo<Layout>& info) {
  return info.param == Layout::Db ? "Db" : "Mbdb";
}

struct OnlyCase {
  const char* pszName;
  const char* pszLabels;
  std::vector<const char*> folders;  ///< below the destination
};

void PrintTo(const OnlyCase& only, std::ostream* pStream) {
  *pStream << only.pszLabels;
}

class RecoverOnly : public RecoverCommand, public testing::WithParamInterface<OnlyCase> {};

std::vector<std::string> TargetsOf(const SmallBackup& small) {
  std::vector<std::string> targets;
  for (const SmallBackup::File& file : small.files) targets.push_back(file.strTarget.substr(1));
  std::sort(targets.begin(), targets.end());
  return targets;
}

void ExpectCopies(const SmallBackup& small, const std::string& strOut) {
  EXPECT_THAT(FilesBelow(strOut), ElementsAreArray(TargetsOf(small)));
  for (const SmallBackup::File& file : small.files)
    EXPECT_TRUE(file.strBytes == ReadFile(strOut + file.strTarget)) << file.strTarget;
}

/// Changes the working folder of the test's process during the object's lifetime.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& strFolder) : m_old(std::filesystem::current_path()) {
    std::filesystem::current_path(strFolder);
  }
  ~WorkingFolder() { std::filesystem::current_path(m_old); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

 private:
  std::filesystem::path m_old;
};

}  // namespace

TEST_P(RecoverOfLayout, CopiesEachFileToItsFolderAndSaysSoInOrder) {
  const SmallBackup small = WriteSmallBackup(Backup(), GetParam());

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  ExpectCopies(small, Out());
  const std::vector<std::string> lines = result.Lines();
  ASSERT_EQ(small.files.size() + 1, lines.size());
  for (size_t i = 0; i < small.files.size(); ++i)
    EXPECT_EQ("Success\t" + Out() + small.files[i].strTarget, lines[i]);
  EXPECT_THAT(lines.back(), StartsWith("7 recovered, 0 failed, "));
}

TEST_P(RecoverOfLayout, CopiesTheSameFilesInTheSameOrderWithoutOnly) {
  const SmallBackup small = WriteSmallBackup(Backup(), GetParam());
  std::vector<std::string> expected;
  for (const SmallBackup::File& file : small.files) expected.push_back("Success\t" + Out() + file.strTarget);

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus);
  std::vector<std::string> found;
  for (const std::string& strLine : result.Lines()) {
    if (std::find(expected.begin(), expected.end(), strLine) != expected.end()) found.push_back(strLine);
  }
  EXPECT_EQ(expected, found);
}

TEST_P(RecoverOfLayout, LeavesTheBackupUnchanged) {
  DemoOptions options;
  options.layout = GetParam();
  writeDemoBackup(QString::fromStdString(Backup()), options);
  const auto before = TreeOf(Backup());

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_P(RecoverOfLayout, CopiesAsManyFilesOfADemoBackupAsTheScanCounts) {
  DemoOptions options;
  options.layout = GetParam();
  writeDemoBackup(QString::fromStdString(Backup()), options);

  const QJsonObject counts = RunCommand({"scan", Backup(), "--json"}).Object()["counts"].toObject();
  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  size_t nExpected = 0;
  for (const char* pszLabel : {"Camera Roll", "Photo Stream", "App Photos", "App Videos",
                               "WhatsApp Attachments", "Messages Attachments"})
    nExpected += static_cast<size_t>(counts[pszLabel].toInt());
  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(nExpected, FilesBelow(Out()).size());
  EXPECT_EQ(nExpected + 1, result.Lines().size());
}

INSTANTIATE_TEST_SUITE_P(Layouts, RecoverOfLayout, testing::Values(Layout::Mbdb, Layout::Db), NameOfLayout);

TEST_F(RecoverCommand, CopiesMayBeReadWrittenAndRunByAll) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  RunCommand(RecoverFiles(Backup(), Out()));

  for (const SmallBackup::File& file : small.files) {
    struct stat info;
    ASSERT_EQ(0, stat((Out() + file.strTarget).c_str(), &info)) << file.strTarget;
    EXPECT_EQ(0777u, info.st_mode & 07777) << file.strTarget;
  }
}

TEST_F(RecoverCommand, JsonHasAnObjectOnEachLine) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  size_t nBytes = 0;
  for (const SmallBackup::File& file : small.files) nBytes += file.strBytes.size();

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out(), {"--json"}));

  const std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(0, result.nExitStatus);
  ASSERT_EQ(small.files.size() + 1, lines.size());
  for (size_t i = 0; i < small.files.size(); ++i)
    EXPECT_EQ(R"({"path":")" + Out() + small.files[i].strTarget + R"(","status":"Success"})", lines[i]);
  EXPECT_EQ(R"({"bytes":)" + std::to_string(nBytes) + R"(,"destination":")" + Out() +
                R"(","failed":0,"succeeded":7})",
            lines.back());
}

TEST_F(RecoverCommand, QuietPrintsTheTotalsAlone) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out(), {"--quiet"}));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre(StartsWith("7 recovered, 0 failed, ")));
  EXPECT_THAT(result.strErr, IsEmpty());
  ExpectCopies(small, Out());
}

TEST_P(RecoverOnly, CopiesTheNamedCategoriesAlone) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  SmallBackup expected;
  for (const SmallBackup::File& file : small.files) {
    for (const char* pszFolder : GetParam().folders) {
      if (file.strTarget.rfind(pszFolder, 0) == 0) expected.files.push_back(file);
    }
  }

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), Out(), "--only", GetParam().pszLabels});

  EXPECT_EQ(0, result.nExitStatus);
  ExpectCopies(expected, Out());
  EXPECT_THAT(result.LastLine(), StartsWith(std::to_string(expected.files.size()) + " recovered"));
}

INSTANTIATE_TEST_SUITE_P(
    Labels, RecoverOnly,
    testing::Values(
        OnlyCase{"CameraRoll", "Camera Roll", {"/Camera Roll/"}},
        OnlyCase{"PhotoStream", "Photo Stream", {"/Photo Stream/"}},
        OnlyCase{"AppPhotos", "App Photos", {"/App Photos/"}},
        OnlyCase{"AppVideos", "App Videos", {"/App Video/"}},
        OnlyCase{"MessageAttachments", "Messages Attachments", {"/Message Attachments/"}},
        OnlyCase{"WhatsAppAttachments", "WhatsApp Attachments", {"/WhatsApp Attachments/"}},
        OnlyCase{"Several", "App Videos,Camera Roll", {"/Camera Roll/", "/App Video/"}},
        OnlyCase{"AnyCaseWithBlanks", "camera roll , PHOTO STREAM", {"/Camera Roll/", "/Photo Stream/"}},
        OnlyCase{"Twice", "Camera Roll,Camera Roll", {"/Camera Roll/"}}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(RecoverCommand, NameThatIsTakenGetsANumberBeforeItsExtension) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  for (int i = 0; i < 3; ++i) {
    const QString path = QString("Media/DCIM/10%1APPLE/IMG_0001.JPG").arg(i);
    backup.addFile("CameraRollDomain", path, sample_media::jpeg(i, 160, 120));
  }
  backup.finish();
  m_folder.Write("out/Camera Roll/IMG_0001.JPG", "mine");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  const std::string strRoll = Out() + "/Camera Roll/";
  EXPECT_EQ("mine", ReadFile(strRoll + "IMG_0001.JPG"));
  EXPECT_THAT(
      result.Lines(),
      ElementsAre("Success\t" + strRoll + "IMG_0001(1).JPG", "Success\t" + strRoll + "IMG_0001(2).JPG",
                  "Success\t" + strRoll + "IMG_0001(3).JPG", StartsWith("3 recovered")));
  std::vector<std::string> expected, found;
  for (int i = 0; i < 3; ++i) {
    expected.push_back(sample_media::jpeg(i, 160, 120).toStdString());
    found.push_back(ReadFile(strRoll + "IMG_0001(" + std::to_string(i + 1) + ").JPG"));
  }
  std::sort(expected.begin(), expected.end());
  std::sort(found.begin(), found.end());
  EXPECT_TRUE(expected == found);
}

TEST_F(RecoverCommand, SecondRunKeepsTheCopiesOfTheFirst) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  RunCommand(RecoverFiles(Backup(), Out()));
  const auto first = TreeOf(Out() + "/Camera Roll");

  RunCommand(RecoverFiles(Backup(), Out()));

  const auto second = TreeOf(Out() + "/Camera Roll");
  for (const auto& [strPath, strFacts] : first) {
    if (strPath != Out() + "/Camera Roll") {
      EXPECT_TRUE(second.at(strPath) == strFacts) << strPath;
    }
  }
  EXPECT_EQ(2 * small.files.size(), FilesBelow(Out()).size());
}

TEST_F(RecoverCommand, MakesTheDestinationWithItsParents) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand(RecoverFiles(Backup(), m_folder.Path("a/b/c")));

  EXPECT_EQ(0, result.nExitStatus);
  ExpectCopies(small, m_folder.Path("a/b/c"));
}

TEST_F(RecoverCommand, RelativePathsCountFromTheWorkingFolder) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  const WorkingFolder there(m_folder.Path());

  const CommandResult result = RunCommand(RecoverFiles("backup/", "./out/"));

  EXPECT_EQ(0, result.nExitStatus);
  ExpectCopies(small, Out());
}

TEST_F(RecoverCommand, NamesKeepTheirCharactersInALocaleWithoutEncoding) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  const QByteArray bytes = sample_media::jpeg(1);
  backup.addFile("CameraRollDomain", QString::fromUtf8("Media/DCIM/100APPLE/Höhenweg 🍁.JPG"), bytes);
  backup.finish();
  const std::string strTarget = m_folder.Path("Ausgänge") + "/Camera Roll/Höhenweg 🍁.JPG";

  const CommandResult result =
      RunCommand(RecoverFiles(Backup(), m_folder.Path("Ausgänge")), {"LANG=C", "LC_ALL=C"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("Success\t" + strTarget, result.Line(0));
  EXPECT_TRUE(bytes.toStdString() == ReadFile(strTarget));
}

TEST_F(RecoverCommand, EncryptedBackupExitsWithThreeAndCreatesNothing) {
  WriteSmallBackup(Backup(), Layout::Db);
  WriteFile(StorePathIn(Backup(), Layout::Db, store_places::contacts()), "cipher text");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(Backup() + ": the backup is encrypted"));
  EXPECT_FALSE(Exists(Out()));
}

TEST_F(RecoverCommand, FolderThatIsNoBackupExitsWithTwoAndCreatesNothing) {
  m_folder.MakeFolder("backup");

  const CommandResult result = RunCommand(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(2, result.nExitStatus);
  EXPECT_FALSE(Exists(Out()));
}
