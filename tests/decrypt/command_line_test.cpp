// orvandel-cli on encrypted backups.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QRegularExpression>
#include <chrono>
#include <filesystem>
#include <thread>

#include "sample/demo_backup.h"
#include "tests/backup/tree_state.h"
#include "tests/cli/command.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr int kLimit = 60000;  // milliseconds
constexpr int kStep = 10;

DemoOptions OptionsOf(const BackupAge& age) {
  DemoOptions options;
  options.layout = age.layout;
  options.age = age.age;
  options.rounds = 20;
  options.messages = 60;
  return options;
}

/// A backup of a well-used device, encrypted, and unencrypted beside it under the same name.
class EncryptedCommand : public testing::Test {
 protected:
  void Write(const BackupAge& age) {
    DemoOptions options = OptionsOf(age);
    writeDemoBackup(QString::fromStdString(Plain()), options);
    options.password = kPassword;
    writeDemoBackup(QString::fromStdString(Backup()), options);
    m_folder.Write("password", std::string(kPassword) + "\n");
  }
  std::string Plain() const { return m_folder.Path("plain/backup"); }
  std::string Backup() const { return m_folder.Path("encrypted/backup"); }
  std::string PasswordFile() const { return m_folder.Path("password"); }

  static CommandResult RunWithInput(const std::vector<std::string>& arguments, const std::string& strInput) {
    QProcess process;
    PrepareCommand(process, arguments);
    process.start();
    process.write(QByteArray::fromStdString(strInput));
    process.closeWriteChannel();
    return FinishCommand(process);
  }

  TemporaryFolder m_folder;
};

class EncryptedCommandOfAge : public EncryptedCommand, public testing::WithParamInterface<BackupAge> {};

INSTANTIATE_TEST_SUITE_P(Ages, EncryptedCommandOfAge, testing::ValuesIn(kBackupAges), NameOfAge);

/// JSON of a scan without the folders of paths, and without what differs between the two backups.
std::string WithoutFolders(const std::string& strJson) {
  QString qstrJson = QString::fromStdString(strJson);
  qstrJson.replace(QRegularExpression("\"path\": ?\"[^\"]*/"), "\"path\":\"");
  qstrJson.replace(QRegularExpression("\"encrypted\": ?(true|false)"), "\"encrypted\":ANY");
  return qstrJson.toStdString();
}

/// Contents by path, both without time stamps.
std::map<std::string, std::string> RecoveredFiles(const std::string& strOut) {
  std::map<std::string, std::string> files;
  for (const std::string& strFile : FilesBelow(strOut))
    files[WithoutStamps("/" + strFile)] = ReadFile(strOut + "/" + strFile);
  return files;
}

/// orvandel-cli on a pseudo-terminal.
class TerminalRun {
 public:
  explicit TerminalRun(const std::vector<std::string>& arguments) {
    std::vector<char*> list;
    m_arguments = arguments;
    m_arguments.insert(m_arguments.begin(), CommandPath().toStdString());
    for (std::string& strArgument : m_arguments) list.push_back(strArgument.data());
    list.push_back(nullptr);
    m_nPid = forkpty(&m_nMaster, nullptr, nullptr, nullptr);
    if (m_nPid == 0) {
      execv(list[0], list.data());
      _exit(127);
    }
    EXPECT_GT(m_nPid, 0);
    fcntl(m_nMaster, F_SETFL, fcntl(m_nMaster, F_GETFL) | O_NONBLOCK);
  }
  ~TerminalRun() {
    if (m_nPid > 0 && !m_bEnded) {
      kill(m_nPid, SIGKILL);
      waitpid(m_nPid, nullptr, 0);
    }
    close(m_nMaster);
  }

  /// Waits until it prompts with echo off.
  bool Asks() {
    for (int i = 0; i < kLimit / kStep; ++i) {
      Read();
      termios state;
      if (m_strShown.find("Password of ") != std::string::npos && tcgetattr(m_nMaster, &state) == 0 &&
          (state.c_lflag & ECHO) == 0)
        return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(kStep));
    }
    return false;
  }

  void Type(const std::string& strText) {
    EXPECT_EQ(static_cast<ssize_t>(strText.size()), write(m_nMaster, strText.data(), strText.size()));
  }

  /// @return its exit status, -1 if ended by a signal.
  int Finish() {
    for (int i = 0; i < kLimit / kStep; ++i) {
      Read();
      int nStatus = 0;
      if (waitpid(m_nPid, &nStatus, WNOHANG) == m_nPid) {
        m_bEnded = true;
        Read();
        return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(kStep));
    }
    ADD_FAILURE() << "doesn't end; shows: " << m_strShown;
    return -1;
  }

  const std::string& Shown() const { return m_strShown; }

 private:
  void Read() {
    char buffer[4096];
    for (ssize_t nRead; (nRead = read(m_nMaster, buffer, sizeof buffer)) > 0;)
      m_strShown.append(buffer, static_cast<size_t>(nRead));
  }

  std::vector<std::string> m_arguments;
  int m_nMaster = -1;
  pid_t m_nPid = -1;
  bool m_bEnded = false;
  std::string m_strShown;
};

}  // namespace

TEST_P(EncryptedCommandOfAge, ScansAsThePlainBackup) {
  Write(GetParam());
  const CommandResult plain = RunCommand({"scan", Plain(), "--json", "--manifest"});

  const CommandResult result =
      RunCommand({"scan", Backup(), "--json", "--manifest", "--password-file", PasswordFile()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_TRUE(result.Object()["backup"].toObject()["encrypted"].toBool() ||
              result.strOut.find("\"encrypted\":true") != std::string::npos);
  EXPECT_EQ(WithoutFolders(plain.strOut), WithoutFolders(result.strOut));
}

TEST_P(EncryptedCommandOfAge, RecoversAsThePlainBackup) {
  Write(GetParam());
  const CommandResult plain =
      RunCommand({"recover", "--no-index", Plain(), m_folder.Path("out/plain"), "-q"});

  const CommandResult result = RunWithInput(
      {"recover", "--no-index", Backup(), m_folder.Path("out/encrypted"), "-q", "--password-stdin"},
      std::string(kPassword) + "\n");

  EXPECT_EQ(plain.nExitStatus, result.nExitStatus);
  const auto expected = RecoveredFiles(m_folder.Path("out/plain"));
  const auto files = RecoveredFiles(m_folder.Path("out/encrypted"));
  EXPECT_GT(expected.size(), 40u);
  for (const auto& [strFile, strBytes] : expected) {
    ASSERT_EQ(1u, files.count(strFile)) << strFile;
    EXPECT_TRUE(strBytes == files.at(strFile)) << strFile;
  }
  EXPECT_EQ(expected.size(), files.size());
}

TEST_P(EncryptedCommandOfAge, LeavesTheBackupUnchanged) {
  Write(GetParam());
  const auto before = TreeState(Backup());

  RunCommand({"scan", Backup(), "-q", "--password-file", PasswordFile()});

  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_F(EncryptedCommand, ReadsThePasswordWithoutItsLineEnd) {
  Write(kBackupAges[1]);
  for (const char* pszEnd : {"", "\n", "\r\n", "\nanother line\n"}) {
    const std::string strInput = kPassword + std::string(pszEnd);
    m_folder.Write("other", strInput);

    EXPECT_EQ(0, RunWithInput({"scan", Backup(), "-q", "--password-stdin"}, strInput).nExitStatus);
    EXPECT_EQ(0, RunCommand({"scan", Backup(), "-q", "--password-file", m_folder.Path("other")}).nExitStatus);
  }
}

TEST_F(EncryptedCommand, SaysThatThePasswordIsWrong) {
  Write(kBackupAges[2]);
  for (const char* pszPassword : {"another\n", "\n", ""}) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"scan", Backup(), "--password-stdin"},
          std::vector<std::string>{"recover", Backup(), m_folder.Path("out"), "--password-stdin"}}) {
      const CommandResult result = RunWithInput(arguments, pszPassword);

      EXPECT_EQ(3, result.nExitStatus);
      EXPECT_THAT(result.strOut, IsEmpty());
      EXPECT_EQ("orvandel-cli: " + Backup() + ": wrong password\n", result.strErr);
      EXPECT_FALSE(Exists(m_folder.Path("out")));
    }
  }
}

TEST_F(EncryptedCommand, SaysThatThePasswordFileCanNotBeRead) {
  Write(kBackupAges[1]);

  const CommandResult result = RunCommand({"scan", Backup(), "--password-file", m_folder.Path("nowhere")});

  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(m_folder.Path("nowhere") + ": No such file or directory"));
}

TEST_F(EncryptedCommand, NeedsAPasswordWithoutATerminal) {
  Write(kBackupAges[1]);
  QProcess process;
  PrepareCommand(process, {});
  // A new session has no terminal.
  process.start("setsid", Arguments({"-w", CommandPath().toStdString(), "scan", Backup()}));

  const CommandResult result = FinishCommand(process);

  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr("--password-stdin"));
}

TEST_F(EncryptedCommand, AsksOnATerminalWithoutEcho) {
  Write(kBackupAges[2]);
  TerminalRun run({"scan", Backup(), "-q"});
  ASSERT_TRUE(run.Asks()) << run.Shown();

  run.Type(std::string(kPassword) + "\n");

  EXPECT_EQ(0, run.Finish());
  EXPECT_THAT(run.Shown(), HasSubstr("Password of " + Backup() + ": "));
  EXPECT_THAT(run.Shown(), Not(HasSubstr(kPassword)));
  EXPECT_THAT(run.Shown(), HasSubstr("Contacts"));
}

TEST_F(EncryptedCommand, RejectsAWrongAnswerOnATerminal) {
  Write(kBackupAges[2]);
  TerminalRun run({"scan", Backup(), "-q"});
  ASSERT_TRUE(run.Asks()) << run.Shown();

  run.Type("another\n");

  EXPECT_EQ(3, run.Finish());
  EXPECT_THAT(run.Shown(), HasSubstr("wrong password"));
}

TEST_F(EncryptedCommand, StopsAtThePromptByASignal) {
  Write(kBackupAges[2]);
  TerminalRun run({"scan", Backup(), "-q"});
  ASSERT_TRUE(run.Asks()) << run.Shown();

  run.Type("\x03");

  EXPECT_EQ(130, run.Finish());
}

TEST_F(EncryptedCommand, NeedsNothingBesideItself) {
  Write(kBackupAges[1]);
  const TemporaryFolder alone;
  std::filesystem::copy_file(CommandPath().toStdString(), alone.Path("orvandel-cli"));
  QProcess process;
  PrepareCommand(process, {"scan", Backup(), "-q", "--password-file", PasswordFile()});
  process.setProgram(QString::fromStdString(alone.Path("orvandel-cli")));
  process.start();

  const CommandResult result = FinishCommand(process);

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
}
