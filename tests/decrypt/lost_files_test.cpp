// Reports of orvandel-cli about an encrypted backup that can't be decrypted completely.
#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>

#include "common/layout.h"
#include "sample/demo_backup.h"
#include "tests/backup/tree_state.h"
#include "tests/cli/command.h"
#include "tests/cli/mount.h"
#include "tests/cli/small_backup.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class LostFile : public testing::TestWithParam<BackupAge> {
 protected:
  void SetUp() override {
    DemoOptions options;
    options.layout = GetParam().layout;
    options.age = GetParam().age;
    options.rounds = 20;
    options.messages = 60;
    options.password = kPassword;
    writeDemoBackup(QString::fromStdString(Backup()), options);
    m_folder.Write("password", std::string(kPassword) + "\n");
  }

  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }
  std::string PathOf(const std::string& strId) const {
    const bool bShards = GetParam().layout == BackupBuilder::Layout::Db;
    return Backup() + "/" + (bShards ? strId.substr(0, 2) + "/" : "") + strId;
  }
  CommandResult Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--password-file", m_folder.Path("password")});
    return RunCommand(arguments);
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(LostFile, CountsAsFailedByNameInARecovery) {
  fs::resize_file(PathOf(kMessageStore), 100);

  const CommandResult result = Run({"recover", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(StartsWith("Failed\tHomeDomain-Library/SMS/sms.db\tis cut short")));
  EXPECT_THAT(result.LastLine(), HasSubstr(" recovered, 1 failed, "));
  EXPECT_THAT(result.LastLine(), Not(StartsWith("0 recovered")));
}

TEST_P(LostFile, EndsAScanWithStatusFourAndIsNamed) {
  fs::resize_file(PathOf(kMessageStore), 100);

  const CommandResult result = Run({"scan", Backup()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains("Message(0)"));
  EXPECT_THAT(result.strErr, AllOf(HasSubstr("HomeDomain-Library/SMS/sms.db: is cut short"),
                                   HasSubstr("1 file could not be decrypted")));
}

TEST_P(LostFile, IsListedInTheJsonOfAScan) {
  fs::resize_file(PathOf(kMessageStore), 100);

  const CommandResult result = Run({"scan", Backup(), "--json"});

  EXPECT_EQ(4, result.nExitStatus);
  const QJsonArray lost = result.Object()["failed"].toArray();
  ASSERT_EQ(1, lost.size());
  EXPECT_EQ("HomeDomain-Library/SMS/sms.db", lost[0].toObject()["name"].toString());
}

TEST_P(LostFile, MissingInTheBackupIsSkippedAsInAPlainBackup) {
  fs::remove(PathOf(kMessageStore));

  const CommandResult result = Run({"scan", Backup()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains("Message(0)"));
}

TEST_P(LostFile, BehindADanglingLinkCountsAsFailed) {
  if (GetParam().layout != BackupBuilder::Layout::Db) GTEST_SKIP() << "has no folders inside";
  const fs::path shard = fs::path(PathOf(kMessageStore)).parent_path();
  fs::remove_all(shard);
  fs::create_symlink(m_folder.Path("nowhere"), shard);

  const CommandResult result = Run({"recover", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(AllOf(StartsWith("Failed\tHomeDomain-Library/SMS/sms.db\t"),
                                             HasSubstr("is a symbolic link"))));
}

TEST_P(LostFile, WithoutTheContactsStoreManifestPlistDecidesWhetherItIsEncrypted) {
  for (const bool bLink : {true, false}) {
    fs::remove(PathOf(kContactsStore));
    if (bLink) fs::create_symlink(m_folder.Path("nowhere"), PathOf(kContactsStore));

    const CommandResult result = Run({"scan", Backup()});

    EXPECT_EQ(bLink ? 4 : 0, result.nExitStatus);
    EXPECT_THAT(result.Lines(), AllOf(Contains("Contacts(0)"), Not(Contains("Camera Roll(0)"))));
  }
}

TEST_P(LostFile, IsNamedInABackupWhosePathHasALineFeed) {
  const std::string strBackup = m_folder.Path("two\nlines");
  fs::resize_file(PathOf(kMessageStore), 100);
  fs::rename(Backup(), strBackup);

  const CommandResult result = Run({"recover", strBackup, Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(StartsWith("Failed\tHomeDomain-Library/SMS/sms.db\tis cut short")));
  EXPECT_THAT(result.LastLine(), HasSubstr(" recovered, 1 failed, "));
}

TEST_P(LostFile, BackupWithoutEnoughSpaceIsRefusedBeforeAnythingIsWritten) {
  if (!MayMount("/var/tmp")) GTEST_SKIP() << "no file system may be mounted here";

  const CommandResult result =
      RunOnMount("size=64k", "/var/tmp", m_folder.Path("kept"),
                 {"recover", Backup(), Out(), "--password-file", m_folder.Path("password")});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, AllOf(HasSubstr("decrypting its manifest and stores takes "),
                                   HasSubstr(" KB free"), HasSubstr("--force")));
  EXPECT_FALSE(Exists(Out()));
  EXPECT_EQ("", result.strOut);
}

TEST_P(LostFile, ForLackOfSpaceIsNamedWhenForced) {
  if (!MayMount("/var/tmp")) GTEST_SKIP() << "no file system may be mounted here";

  const CommandResult result =
      RunOnMount("size=64k", "/var/tmp", m_folder.Path("kept"),
                 {"recover", Backup(), Out(), "--force", "--password-file", m_folder.Path("password")});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("No space left on device"));
  EXPECT_THAT(result.LastLine(), Not(HasSubstr(" 0 failed")));
}

INSTANTIATE_TEST_SUITE_P(Ages, LostFile, testing::ValuesIn(kBackupAges), NameOfAge);

namespace {

/// A command, and the damage to the backup before it runs.
struct Command {
  const char* pszName;
  bool bEncrypted;
  std::vector<std::string> arguments;  ///< "BACKUP" and "OUT" are replaced by the folders
  const char* pszPassword;
  int nExitStatus;
  void (*pfnDamage)(const std::string& strBackup) = nullptr;
};

void PrintTo(const Command& command, std::ostream* pStream) {
  *pStream << command.pszName;
}

class CommandOnABackup : public testing::TestWithParam<Command> {};

const Command kCommands[] = {
    {"BackupsPlain", false, {"backups", "BACKUP/.."}, "", 0},
    {"ScanPlain", false, {"scan", "BACKUP"}, "", 0},
    {"RecoverPlain", false, {"recover", "BACKUP", "OUT"}, "", 0},
    {"RecoverPlainIntoTheBackup", false, {"recover", "BACKUP", "BACKUP/out"}, "", 1},
    {"ScanNoBackup",
     false,
     {"scan", "BACKUP"},
     "",
     2,
     [](const std::string& strBackup) { fs::remove(strBackup + "/Info.plist"); }},
    {"RecoverNoBackup",
     false,
     {"recover", "BACKUP", "OUT"},
     "",
     2,
     [](const std::string& strBackup) { fs::remove(strBackup + "/Info.plist"); }},
    {"ScanEncrypted", true, {"scan", "BACKUP"}, kPassword, 0},
    {"ScanEncryptedJson", true, {"scan", "BACKUP", "--json", "--manifest"}, kPassword, 0},
    {"RecoverEncrypted", true, {"recover", "BACKUP", "OUT"}, kPassword, 0},
    {"ScanWithAWrongPassword", true, {"scan", "BACKUP"}, "another", 3},
    {"RecoverWithAWrongPassword", true, {"recover", "BACKUP", "OUT"}, "another", 3},
    {"ScanWithoutAKeybag",
     true,
     {"scan", "BACKUP"},
     kPassword,
     4,
     [](const std::string& strBackup) { fs::remove(strBackup + "/Manifest.plist"); }},
    {"RecoverWithoutAManifest",
     true,
     {"recover", "BACKUP", "OUT"},
     kPassword,
     4,
     [](const std::string& strBackup) { WriteFile(strBackup + "/Manifest.db", "0123456789abcdef"); }},
    {"RecoverWithALostStore",
     true,
     {"recover", "BACKUP", "OUT"},
     kPassword,
     4,
     [](const std::string& strBackup) {
       fs::resize_file(strBackup + "/" + std::string(kMessageStore, 2) + "/" + kMessageStore, 100);
     }},
};

}  // namespace

TEST_P(CommandOnABackup, LeavesItUnchanged) {
  TemporaryFolder folder;
  const std::string strBackup = folder.Path("backups/backup");
  DemoOptions options;
  options.layout = BackupBuilder::Layout::Db;
  options.rounds = 20;
  options.messages = 60;
  if (GetParam().bEncrypted) options.password = kPassword;
  writeDemoBackup(QString::fromStdString(strBackup), options);
  if (GetParam().pfnDamage) GetParam().pfnDamage(strBackup);
  // As written by a window that is decrypting, or was killed.
  for (const char* pszName : {"Manifest.db-decypted.part", "Manifest.db-decypted.part2"})
    WriteFile(strBackup + "/" + pszName, "not ours");
  if (GetParam().bEncrypted) WriteFile(strBackup + "/Manifest.db-decypted", "not ours");
  std::vector<std::string> arguments;
  for (std::string strArgument : GetParam().arguments) {
    for (const auto& [pszWord, strFolder] :
         {std::pair<const char*, std::string>{"BACKUP", strBackup}, {"OUT", folder.Path("out")}}) {
      const size_t nHit = strArgument.find(pszWord);
      if (nHit != std::string::npos) strArgument.replace(nHit, strlen(pszWord), strFolder);
    }
    arguments.push_back(strArgument);
  }
  if (GetParam().bEncrypted)
    arguments.insert(arguments.end(), {"--password-file", folder.Write("password", GetParam().pszPassword)});
  const auto before = TreeState(folder.Path("backups"));

  const CommandResult result = RunCommand(arguments);

  EXPECT_EQ(GetParam().nExitStatus, result.nExitStatus) << result.strErr;
  EXPECT_EQ(before, TreeState(folder.Path("backups")));
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandOnABackup, testing::ValuesIn(kCommands),
                         [](const auto& info) { return std::string(info.param.pszName); });
