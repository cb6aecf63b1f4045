// The passwords that the tool accepts, and how they are passed.
#include <gmock/gmock.h>

#include <QProcess>

#include "tests/decrypt/tool_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class DecryptToolPassword : public DecryptTool {};
class DecryptToolPasswordOfAge : public DecryptToolOfAge {};

INSTANTIATE_TEST_SUITE_P(Ages, DecryptToolPasswordOfAge, testing::ValuesIn(kBackupAges), NameOfAge);

void ExpectWrongPassword(const ToolResult& result) {
  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.out, ElementsAre("Wrong password"));
  EXPECT_THAT(result.err, IsEmpty());
}

}  // namespace

TEST_P(DecryptToolPasswordOfAge, ProvesAPassword) {
  WriteEncryptedBackup(Backup(), GetParam());

  const ToolResult result = Check(kPassword);

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Counts(), SizeIs(1));
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(NamesIn(Out()), IsEmpty());
}

TEST_P(DecryptToolPasswordOfAge, RejectsAnotherPassword) {
  WriteEncryptedBackup(Backup(), GetParam());

  ExpectWrongPassword(Check("geheim"));
  ExpectWrongPassword(RunTool({Backup(), Out(), "geheim"}));

  EXPECT_THAT(NamesIn(Out()), IsEmpty());
  EXPECT_FALSE(Exists(Backup() + "/Manifest.db-decypted"));
}

TEST_F(DecryptToolPassword, RejectsAnEmptyPassword) {
  WriteEncryptedBackup(Backup(), Ios10());

  ExpectWrongPassword(Check(""));
  ExpectWrongPassword(RunTool({Backup(), Out(), ""}));
}

TEST_F(DecryptToolPassword, RejectsAnEmptyPasswordThoughItWouldFit) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({"", Encryption::Age::Ios10, 20, 1});
  backup.finish();

  ExpectWrongPassword(Check(""));
}

TEST_F(DecryptToolPassword, RejectsAMissingPassword) {
  WriteEncryptedBackup(Backup(), Ios10());

  ExpectWrongPassword(RunTool({Backup(), Out()}));
  // The third argument is always the password: if it is missing in a check, the mode is taken for it.
  ExpectWrongPassword(RunTool({Backup(), Out(), "CheckPasswd"}));
}

TEST_F(DecryptToolPassword, TakesTheNameOfTheCheckAsAPassword) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({"CheckPasswd", Encryption::Age::Ios10, 20, 1});
  backup.addFile("HomeDomain", "file", "text");
  backup.finish();

  EXPECT_EQ(0, RunTool({Backup(), Out(), "CheckPasswd", "CheckPasswd"}).nExitStatus);
  EXPECT_THAT(NamesIn(Out()), IsEmpty());
  EXPECT_EQ(0, RunTool({Backup(), Out(), "CheckPasswd"}).nExitStatus);
  EXPECT_THAT(NamesIn(Out()), SizeIs(1));
}

TEST_F(DecryptToolPassword, TakesPasswordsOfAnyCharacters) {
  for (const char* pszPassword : {"Grüße", "密码", "-h", "--help", "\"quoted\"", " ", "a\tb"}) {
    const TemporaryFolder folder;
    BackupBuilder backup(QString::fromStdString(folder.Path()), BackupBuilder::Layout::Db);
    backup.encrypt({pszPassword, Encryption::Age::From102, 20, 1});
    backup.finish();

    EXPECT_EQ(0, RunTool({folder.Path(), Out(), pszPassword, "CheckPasswd"}).nExitStatus) << pszPassword;
  }
}

TEST_F(DecryptToolPassword, TakesAPasswordInPieces) {
  WriteEncryptedBackup(Backup(), Ios10());

  EXPECT_EQ(0, RunTool({Backup(), Out(), "geh", "heim", "CheckPasswd"}).nExitStatus);
  EXPECT_EQ(0, RunTool({Backup(), Out(), "geh", "heim"}).nExitStatus);
  ExpectWrongPassword(RunTool({Backup(), Out(), "geh", "", "heim", "CheckPasswd"}));
}

TEST_F(DecryptToolPassword, TakesAPasswordFromItsInput) {
  WriteEncryptedBackup(Backup(), kBackupAges[2]);
  QProcess process;
  process.start(QString::fromStdString(ToolPath()),
                {"--leave-backup", "--password-stdin", QString::fromStdString(Backup()),
                 QString::fromStdString(Out())});
  process.write(kPassword);
  process.closeWriteChannel();

  ASSERT_TRUE(process.waitForFinished());

  EXPECT_EQ(0, process.exitCode());
  EXPECT_TRUE(Exists(Out() + "/Manifest.db-decypted"));
}

TEST_F(DecryptToolPassword, IsStartedByACommandStringAsTheWindowStartsIt) {
  WriteEncryptedBackup(Backup(), Ios10());
  const QString qstrCommand = QString("\"%1\" \"%2\" \"%3\" %4 CheckPasswd")
                                  .arg(QString::fromStdString(ToolPath()), QString::fromStdString(Backup()),
                                       QString::fromStdString(Out() + "//"), kPassword);
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);

  QStringList pieces = QProcess::splitCommand(qstrCommand);
  const QString qstrProgram = pieces.takeFirst();
  process.start(qstrProgram, pieces, QIODevice::ReadWrite);
  ASSERT_TRUE(process.waitForFinished(60000));

  EXPECT_EQ("Count:0\n", process.readAll().toStdString());
}

TEST_F(DecryptToolPassword, HidesThePasswordFromTheListOfProcesses) {
  WriteEncryptedBackup(Backup(), kBackupAges[2], 3000000);
  QProcess process;
  process.start(QString::fromStdString(ToolPath()),
                {QString::fromStdString(Backup()), QString::fromStdString(Out()), "not-to-be-seen"});
  ASSERT_TRUE(process.waitForStarted());
  const std::string strList = "/proc/" + std::to_string(process.processId()) + "/cmdline";

  bool bHidden = false;
  while (!bHidden && process.state() != QProcess::NotRunning) {
    const std::string strArguments = ReadFile(strList);
    bHidden = strArguments.find(Out()) != std::string::npos &&
              strArguments.find("not-to-be-seen") == std::string::npos;
    process.waitForFinished(10);
  }
  process.waitForFinished(60000);

  EXPECT_TRUE(bHidden);
}
