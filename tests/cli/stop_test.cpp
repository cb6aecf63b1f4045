#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "sample/demo_backup.h"
#include "sample/pictures.h"
#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr int kLimit = 60000;  // milliseconds
constexpr int kPhotos = 3000;

/// A recovery that blocks until it is continued: nobody reads its output, which doesn't fit into a pipe (64
/// KiB, with paths of more than 250 bytes).
class LongRecovery : public testing::Test {
 protected:
  explicit LongRecovery(bool bIndex = false) : m_bIndex(bIndex) {}

  void SetUp() override {
    m_photos = WritePhotos(m_folder.Path("backup"), kPhotos, m_bytes);
    std::vector<std::string> arguments = {"recover", m_folder.Path("backup"), Out(), "--only", "Camera Roll"};
    if (!m_bIndex) arguments.push_back("--no-index");
    PrepareCommand(m_process, arguments);
    m_process.start();
    ASSERT_TRUE(m_process.waitForReadyRead(kLimit)) << "no line comes";
  }

  void TearDown() override {
    if (m_process.state() == QProcess::NotRunning) return;
    m_process.kill();
    m_process.waitForFinished(kLimit);
  }

  std::string Out() const { return m_folder.Path(std::string(120, 'a') + "/" + std::string(120, 'b')); }

  bool m_bIndex;
  TemporaryFolder m_folder;
  QByteArray m_bytes = sample_media::jpeg(1, 64, 48).leftJustified(1024, '\0');
  std::vector<std::string> m_photos;
  QProcess m_process;
};

#ifdef __linux__
/// The private work folder that a process holds open; empty if there is none.
std::string WorkFolderOf(qint64 nProcess) {
  std::error_code error;
  for (const auto& entry :
       std::filesystem::directory_iterator("/proc/" + std::to_string(nProcess) + "/fd", error)) {
    const std::string strTarget = std::filesystem::read_symlink(entry.path(), error).string();
    if (!error && strTarget.rfind("/var/tmp/orvandel-", 0) == 0) return strTarget;
  }
  return {};
}

TEST_F(LongRecovery, WorkFolderOfAKilledRunIsRemovedByTheNext) {
  const std::string strLeft = WorkFolderOf(m_process.processId());
  ASSERT_TRUE(!strLeft.empty() && std::filesystem::is_directory(strLeft)) << "no work folder: " << strLeft;
  m_process.kill();
  ASSERT_TRUE(m_process.waitForFinished(kLimit));

  const CommandResult next = RunCommand({"scan", m_folder.Path("backup")});

  EXPECT_EQ(0, next.nExitStatus) << next.strErr;
  EXPECT_FALSE(std::filesystem::exists(strLeft)) << strLeft;
}
#endif

/// Would write a front page at its end.
class StoppedRecovery : public LongRecovery, public testing::WithParamInterface<int> {
 protected:
  StoppedRecovery() : LongRecovery(true) {}
};

/// The master side of a pseudo-terminal.
class Terminal {
 public:
  Terminal() : m_nMaster(posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_NE(-1, m_nMaster);
    EXPECT_EQ(0, grantpt(m_nMaster));
    EXPECT_EQ(0, unlockpt(m_nMaster));
    // Kept open, so that output isn't lost at the end of the process.
    m_nSlave = open(ptsname(m_nMaster), O_RDWR | O_NOCTTY);
    EXPECT_NE(-1, m_nSlave);
    fcntl(m_nMaster, F_SETFL, fcntl(m_nMaster, F_GETFL) | O_NONBLOCK);
  }
  ~Terminal() {
    close(m_nSlave);
    close(m_nMaster);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Runs the command with standard error on the terminal. @return the terminal's output.
  std::string Run(const std::vector<std::string>& arguments, CommandResult& result) {
    QProcess process;
    PrepareCommand(process, arguments);
    process.setStandardErrorFile(ptsname(m_nMaster), QIODevice::Append);
    process.start();
    EXPECT_TRUE(process.waitForStarted(kLimit));
    std::string strReceived;
    // A terminal buffers little, so it must be read while the process writes.
    for (int nRound = 0; nRound < kLimit / kRound && process.state() != QProcess::NotRunning; ++nRound) {
      process.waitForFinished(kRound);
      Read(strReceived);
    }
    result = FinishCommand(process);
    Read(strReceived);
    return strReceived;
  }

 private:
  static constexpr int kRound = 10;  // milliseconds

  void Read(std::string& strReceived) const {
    char buffer[4096];
    for (ssize_t nRead; (nRead = read(m_nMaster, buffer, sizeof buffer)) > 0;)
      strReceived.append(buffer, static_cast<size_t>(nRead));
  }

  int m_nMaster;
  int m_nSlave = -1;
};

}  // namespace

TEST_P(StoppedRecovery, EndsBetweenTwoFilesAndSaysSo) {
  ASSERT_EQ(0, kill(static_cast<pid_t>(m_process.processId()), GetParam()));

  const CommandResult result = FinishCommand(m_process);

  const std::vector<std::string> files = FilesBelow(Out());
  EXPECT_EQ(128 + GetParam(), result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("stopped"));
  EXPECT_GT(files.size(), 0u);
  EXPECT_LT(files.size(), static_cast<size_t>(kPhotos));
  for (const std::string& strFile : files)
    ASSERT_TRUE(m_bytes.toStdString() == ReadFile(Out() + "/" + strFile)) << strFile << " isn't whole";
  EXPECT_EQ(files.size() + 1, result.Lines().size());
  EXPECT_THAT(result.LastLine(), StartsWith(std::to_string(files.size()) + " recovered, 0 failed, "));
}

INSTANTIATE_TEST_SUITE_P(
    Signals, StoppedRecovery, testing::Values(SIGINT, SIGTERM, SIGHUP), [](const auto& info) {
      return std::string(info.param == SIGINT ? "Int" : info.param == SIGTERM ? "Term" : "Hup");
    });

TEST_F(LongRecovery, SourceThatGoesAwayFailsAndTheRestIsCopied) {
  static constexpr size_t kGone[] = {kPhotos - 5, kPhotos - 2};
  for (const size_t nGone : kGone) ASSERT_EQ(0, unlink(m_photos[nGone].c_str()));

  const CommandResult result = FinishCommand(m_process);

  const std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(4, result.nExitStatus);
  ASSERT_EQ(static_cast<size_t>(kPhotos) + 1, lines.size());
  for (size_t i = 0; i < kPhotos; ++i) {
    const bool bGone = std::find(std::begin(kGone), std::end(kGone), i) != std::end(kGone);
    ASSERT_THAT(lines[i], StartsWith(bGone ? "Failed\t" : "Success\t"));
  }
  EXPECT_THAT(lines.back(), StartsWith(std::to_string(kPhotos - 2) + " recovered, 2 failed, "));
  EXPECT_EQ(static_cast<size_t>(kPhotos - 2), FilesBelow(Out()).size());
}

TEST_F(LongRecovery, SourceThatGoesAwayIsGivenAsTheReason) {
  const std::string& strGone = m_photos[kPhotos - 2];
  ASSERT_EQ(0, unlink(strGone.c_str()));

  const CommandResult result = FinishCommand(m_process);

  ASSERT_EQ(static_cast<size_t>(kPhotos) + 1, result.Lines().size());
  EXPECT_THAT(result.Line(kPhotos - 2), HasSubstr("No such file or directory"));
}

TEST(ReaderOfTheLines, ThatClosesThePipeCausesAFailedWrite) {
  TemporaryFolder folder;
  WritePhotos(folder.Path("backup"), kPhotos, sample_media::jpeg(1, 64, 48).leftJustified(1024, '\0'));
  QProcess process;
  PrepareCommand(process, {});
  process.start("sh",
                Arguments({"-c", "status=$1; shift; { \"$@\"; echo $? >\"$status\"; } | head -n 1", "sh",
                           folder.Path("status"), CommandPath().toStdString(), "recover", "--no-index",
                           folder.Path("backup"), folder.Path("out"), "--only", "Camera Roll"}));

  const CommandResult result = FinishCommand(process);

  EXPECT_EQ("4\n", ReadFile(folder.Path("status")));
  EXPECT_THAT(result.strErr, HasSubstr("standard output: Broken pipe"));
  EXPECT_EQ(static_cast<size_t>(kPhotos), FilesBelow(folder.Path("out")).size());
}

TEST(Progress, IsDrawnOnATerminalAndErased) {
  TemporaryFolder folder;
  writeDemoBackup(QString::fromStdString(folder.Path("backup")), {});
  Terminal terminal;
  CommandResult result;

  const std::string strReceived = terminal.Run({"scan", folder.Path("backup")}, result);

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(strReceived, HasSubstr("\r["));
  EXPECT_THAT(strReceived, HasSubstr("%"));
  const size_t nErased = strReceived.rfind("\r\033[K");
  ASSERT_NE(std::string::npos, nErased);
  EXPECT_THAT(strReceived.substr(nErased + 4), StartsWith("orvandel-cli: not in the categories: "));
  EXPECT_THAT(result.strOut, Not(HasSubstr("%")));
}

TEST(Progress, NeverDecreases) {
  TemporaryFolder folder;
  writeDemoBackup(QString::fromStdString(folder.Path("backup")), {});
  Terminal terminal;
  CommandResult result;

  const std::string strReceived = terminal.Run({"scan", folder.Path("backup")}, result);

  int nLast = -1;
  int nBars = 0;
  for (size_t nPercent = 0; (nPercent = strReceived.find('%', nPercent)) != std::string::npos; ++nPercent) {
    ASSERT_GE(nPercent, 3u);
    const int nNow = std::stoi(strReceived.substr(nPercent - 3, 3));
    EXPECT_GE(nNow, nLast);
    EXPECT_LE(nNow, 100);
    nLast = nNow;
    ++nBars;
  }
  EXPECT_GT(nBars, 1);
}

TEST(Progress, IsShownWhileFilesAreCopied) {
  TemporaryFolder folder;
  WriteSmallBackup(folder.Path("backup"), BackupBuilder::Layout::Db);
  Terminal terminal;
  CommandResult result;

  const std::string strReceived =
      terminal.Run(RecoverFiles(folder.Path("backup"), folder.Path("out")), result);

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(strReceived, HasSubstr("100%"));
}

TEST(Progress, IsNotShownWhenQuiet) {
  TemporaryFolder folder;
  WriteSmallBackup(folder.Path("backup"), BackupBuilder::Layout::Db);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"scan", folder.Path("backup"), "--quiet"},
        RecoverFiles(folder.Path("backup"), folder.Path("out"), {"-q"})}) {
    Terminal terminal;
    CommandResult result;

    const std::string strReceived = terminal.Run(arguments, result);

    EXPECT_EQ(0, result.nExitStatus);
    EXPECT_THAT(strReceived, IsEmpty());
  }
}
