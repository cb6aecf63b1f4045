// "orvandel-cli files --to": hostile destinations, interruptions, full disks.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "cli/temporary_name.h"
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
using Layout = BackupBuilder::Layout;

namespace {

constexpr int kFiles = 300;

QByteArray ContentOf(int nFile) {
  return QByteArray(1000 + nFile * 997, static_cast<char>('a' + nFile % 26));
}

class ExtractDestination : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  std::vector<std::string> Arguments(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> all = {"files", Backup(), "--to", Out()};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  /// Writes a backup with files in "HomeDomain/a", "HomeDomain/b" and so on.
  void WriteBackup(const std::vector<const char*>& names) const {
    BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
    backup.writeInfo({});
    for (const char* pszName : names) backup.addFile("HomeDomain", pszName, pszName);
    backup.finish();
  }

  /// Writes a backup of some 45 MB. @return its files by their paths when extracted.
  std::map<std::string, std::string> WriteLargeBackup() const {
    std::map<std::string, std::string> files;
    BackupBuilder backup(QString::fromStdString(Backup()), Layout::Mbdb);
    backup.encrypt({kPassword, Encryption::Age::BeforeIos10, 20, 1});
    backup.writeInfo({});
    for (int i = 0; i < kFiles; ++i) {
      const QString name = QString("folder %1/file %2").arg(i % 7).arg(i);
      backup.addFile("HomeDomain", name, ContentOf(i));
      files["HomeDomain/" + name.toStdString()] = ContentOf(i).toStdString();
    }
    backup.finish();
    m_folder.Write("password", kPassword);
    return files;
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_F(ExtractDestination, InsideTheBackupIsRefused) {
  WriteBackup({"a"});
  const auto before = TreeOf(Backup());

  const CommandResult result = RunCommand({"files", Backup(), "--to", Backup() + "/out"});

  EXPECT_EQ(1, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("is inside the backup"));
  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_F(ExtractDestination, WithTheBackupInItLeavesTheBackupAlone) {
  WriteBackup({"a"});
  fs::create_directory(Out());
  fs::rename(Backup(), Out() + "/HomeDomain");
  const auto before = TreeOf(Out() + "/HomeDomain");

  const CommandResult result = RunCommand({"files", Out() + "/HomeDomain", "--to", Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Line(0), HasSubstr("inside the backup, which must not change"));
  EXPECT_TRUE(before == TreeOf(Out() + "/HomeDomain"));
}

TEST_F(ExtractDestination, MayBeALinkItself) {
  WriteBackup({"a"});
  m_folder.MakeFolder("real");
  fs::create_directory_symlink(m_folder.Path("real"), Out());

  const CommandResult result = RunCommand(Arguments());

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(FilesBelow(m_folder.Path("real")), ElementsAre("HomeDomain/a"));
}

TEST_F(ExtractDestination, WithALinkOnTheWayWritesNothingBehindIt) {
  WriteBackup({"x/a", "b"});
  const std::string strElsewhere = m_folder.MakeFolder("elsewhere");
  m_folder.MakeFolder("out/HomeDomain");
  fs::create_directory_symlink(strElsewhere, Out() + "/HomeDomain/x");

  for (const char* pszOption : {"--quiet", "--replace", "--resume"}) {
    const CommandResult result = RunCommand(Arguments({pszOption}));

    EXPECT_EQ(4, result.nExitStatus);
    EXPECT_THAT(result.Lines(), Contains("Failed\t" + Out() + "/HomeDomain/x/a\tcan't be created: " + Out() +
                                         "/HomeDomain/x is a link, which isn't followed"));
    EXPECT_THAT(FilesBelow(strElsewhere), IsEmpty());
    EXPECT_EQ("b", ReadFile(Out() + "/HomeDomain/b"));
  }
}

TEST_F(ExtractDestination, WithALinkAtTheEndKeepsIt) {
  WriteBackup({"a"});
  const std::string strMine = m_folder.Write("mine", "mine");
  m_folder.MakeFolder("out/HomeDomain");
  fs::create_symlink(strMine, Out() + "/HomeDomain/a");

  for (const char* pszOption : {"--json", "--resume"}) {
    const CommandResult result = RunCommand(Arguments({pszOption}));

    EXPECT_EQ(0, result.nExitStatus);
    EXPECT_EQ("mine", ReadFile(strMine));
    EXPECT_TRUE(fs::is_symlink(Out() + "/HomeDomain/a"));
  }
}

TEST_F(ExtractDestination, WithAFileOrPipeForAFolderFailsByName) {
  WriteBackup({"x/a", "y/a", "b"});
  m_folder.Write("out/HomeDomain/x", "mine");
  ASSERT_EQ(0, mkfifo((Out() + "/HomeDomain/y").c_str(), 0600));

  const CommandResult result = RunCommand(Arguments({"--replace"}));

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(),
              Contains("Failed\t" + Out() + "/HomeDomain/x/a\tcan't be created: Not a directory"));
  EXPECT_THAT(result.Lines(),
              Contains("Failed\t" + Out() + "/HomeDomain/y/a\tcan't be created: Not a directory"));
  EXPECT_THAT(result.LastLine(), StartsWith("1 extracted, 0 kept, 2 failed, "));
  EXPECT_EQ("mine", ReadFile(Out() + "/HomeDomain/x"));
}

TEST_F(ExtractDestination, ThatIsAFileIsAFailure) {
  WriteBackup({"a"});
  m_folder.Write("out", "mine");

  const CommandResult result = RunCommand(Arguments());

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("is not a folder"));
}

TEST_F(ExtractDestination, ThatGetsFullFailsEachFileAndKeepsOnlyWholeOnes) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  for (int i = 0; i < 8; ++i) backup.addFile("HomeDomain", QString::number(i), QByteArray(20000, 'x'));
  backup.finish();
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a small file system";

  const CommandResult result = RunOnMount("size=64k", Out(), m_folder.Path("kept"), Arguments());

  const std::vector<std::string> kept = FilesBelow(m_folder.Path("kept"));
  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  EXPECT_FALSE(kept.empty());
  for (const std::string& strFile : kept)
    EXPECT_EQ(20000u, ReadFile(m_folder.Path("kept/" + strFile)).size()) << strFile;
  EXPECT_THAT(result.Lines(), Contains(AllOf(StartsWith("Failed\t"), EndsWith("No space left on device"))));
  ASSERT_THAT(result.Lines(), SizeIs(9));
  EXPECT_THAT(result.LastLine(), StartsWith(std::to_string(kept.size()) + " extracted, 0 kept, " +
                                            std::to_string(8 - kept.size()) + " failed, "));
}

TEST_F(ExtractDestination, OfAnInterruptedRunIsCompleted) {
  const auto files = WriteLargeBackup();
  std::mt19937 random(1);
  int nKilled = 0;
  for (int nRun = 0; nRun < 12; ++nRun) {
    QProcess process;
    PrepareCommand(process, Arguments({"--resume", "--password-file", m_folder.Path("password")}));
    process.start();
    ASSERT_TRUE(process.waitForReadyRead(60000));
    process.waitForFinished(static_cast<int>(random() % 30));
    nKilled += process.state() != QProcess::NotRunning;
    process.kill();
    process.waitForFinished(60000);
    // Whatever is there is whole.
    for (const std::string& strFile : FilesBelow(Out())) {
      if (!IsTemporaryName(fs::path(strFile).filename())) {
        ASSERT_TRUE(files.at(strFile) == ReadFile(Out() + "/" + strFile)) << strFile;
      }
    }
  }

  const CommandResult result =
      RunCommand(Arguments({"--resume", "--password-file", m_folder.Path("password")}));

  EXPECT_GT(nKilled, 0);
  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  EXPECT_EQ(files.size(), FilesBelow(Out()).size());
  for (const auto& [strFile, strBytes] : files)
    EXPECT_TRUE(strBytes == ReadFile(Out() + "/" + strFile)) << strFile;
}

TEST_F(ExtractDestination, OfAnInterruptedRunIsCompletedAndKeepsFilesOfTheUser) {
  WriteBackup({"a", "b", "c"});
  RunCommand(Arguments());
  WriteFile(Out() + "/HomeDomain/a", "");  // as after a power cut
  WriteFile(Out() + "/HomeDomain/b", "mine");
  const ino_t nInode = [&] {
    struct stat info = {};
    stat((Out() + "/HomeDomain/c").c_str(), &info);
    return info.st_ino;
  }();

  const CommandResult result = RunCommand(Arguments({"--resume"}));

  struct stat info = {};
  stat((Out() + "/HomeDomain/c").c_str(), &info);
  EXPECT_THAT(result.LastLine(), StartsWith("1 extracted, 2 kept, 0 failed, "));
  EXPECT_EQ("a", ReadFile(Out() + "/HomeDomain/a"));
  EXPECT_EQ("mine", ReadFile(Out() + "/HomeDomain/b"));
  EXPECT_EQ(nInode, info.st_ino);
}

TEST_F(ExtractDestination, LosesItsLeftoversWhenResumed) {
  WriteBackup({"a"});
  m_folder.Write("out/HomeDomain/.orvandel-0123456789abcdef-7.part", "left");
  m_folder.Write("out/HomeDomain/.orvandel-mine", "mine");

  RunCommand(Arguments());
  EXPECT_THAT(NamesIn(Out() + "/HomeDomain"), SizeIs(3));
  RunCommand(Arguments({"--resume"}));

  EXPECT_THAT(NamesIn(Out() + "/HomeDomain"), ElementsAre(".orvandel-mine", "a"));
}

TEST_F(ExtractDestination, IsLeftWithoutAFragmentAfterASignal) {
  const auto files = WriteLargeBackup();
  for (const int nSignal : {SIGINT, SIGTERM}) {
    fs::remove_all(Out());
    QProcess process;
    PrepareCommand(process, Arguments({"--password-file", m_folder.Path("password")}));
    process.start();
    ASSERT_TRUE(process.waitForReadyRead(60000));
    ASSERT_EQ(0, kill(static_cast<pid_t>(process.processId()), nSignal));

    const CommandResult result = FinishCommand(process);

    const std::vector<std::string> written = FilesBelow(Out());
    EXPECT_EQ(128 + nSignal, result.nExitStatus);
    EXPECT_LT(written.size(), files.size());
    for (const std::string& strFile : written)
      EXPECT_TRUE(files.at(strFile) == ReadFile(Out() + "/" + strFile)) << strFile;
    EXPECT_THAT(result.LastLine(),
                StartsWith(std::to_string(written.size()) + " extracted, 0 kept, 0 failed, "));
  }
}

TEST(TemporaryNames, AreRecognised) {
  const std::string strName = NewTemporaryName();

  EXPECT_TRUE(IsTemporaryName(strName));
  EXPECT_TRUE(IsOwnTemporaryName(strName));
  EXPECT_NE(strName, NewTemporaryName());
  EXPECT_TRUE(IsTemporaryName(".orvandel-0123456789abcdef-7.part"));
  for (const char* pszOther : {".orvandel-0123456789abcdef-.part", ".orvandel-0123456789abcdeg-7.part",
                               ".orvandel-0123456789abcdef-7.par", "orvandel-0123456789abcdef-7.part", ""})
    EXPECT_FALSE(IsTemporaryName(pszOther)) << pszOther;
}
