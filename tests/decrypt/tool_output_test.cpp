// The files that the tool writes.
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/backup/tree_state.h"
#include "tests/cli/mount.h"
#include "tests/decrypt/tool_fixture.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class DecryptToolOutput : public DecryptTool {};
class DecryptToolOutputOfAge : public DecryptToolOfAge {};

INSTANTIATE_TEST_SUITE_P(Ages, DecryptToolOutputOfAge, testing::ValuesIn(kBackupAges), NameOfAge);

}  // namespace

TEST_P(DecryptToolOutputOfAge, WritesEveryFileAsItWasBeforeTheEncryption) {
  WriteEncryptedBackup(Backup(), GetParam());
  const KnownBackup plain = WritePlainBackup(m_folder.Path("plain"), GetParam());

  const ToolResult result = Decrypt();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.err, IsEmpty());
  ExpectFiles(plain);
  for (const auto& [strId, strPath] : plain.paths)
    EXPECT_TRUE(ReadFile(strPath) == ReadFile(Out() + "/" + strId)) << strId;
}

TEST_P(DecryptToolOutputOfAge, WritesFilesForTheirOwnerAlone) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());

  Decrypt();

  for (const auto& [strId, strBytes] : known.files) {
    struct stat attributes;
    ASSERT_EQ(0, stat((Out() + "/" + strId).c_str(), &attributes));
    EXPECT_EQ(0100600u, attributes.st_mode) << strId;
  }
}

TEST_F(DecryptToolOutput, CopiesAFileWithoutAKey) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  ASSERT_TRUE(known.files.at(known.strPlainId) == ReadFile(known.paths.at(known.strPlainId)));

  Decrypt();

  EXPECT_TRUE(known.files.at(known.strPlainId) == ReadFile(Out() + "/" + known.strPlainId));
}

TEST_F(DecryptToolOutput, WritesAFileThatIsListedTwice) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Mbdb);
  backup.encrypt({kPassword, Encryption::Age::BeforeIos10, 20, 1});
  const QByteArray bytes(200000, 'x');
  for (int i = 0; i < 50; ++i) backup.addFile("HomeDomain", "file", bytes);
  backup.finish();

  const ToolResult result = Decrypt();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(NamesIn(Out()), SizeIs(1));
  EXPECT_TRUE(bytes.toStdString() == ReadFile(Out() + "/" + NamesIn(Out()).at(0)));
}

TEST_F(DecryptToolOutput, WritesAnEncryptedManifestAsItWas) {
  // The only difference between the two generations.
  WriteEncryptedBackup(m_folder.Path("plain"), kBackupAges[1]);
  WriteEncryptedBackup(Backup(), kBackupAges[2]);
  const std::string strPlain = ReadFile(m_folder.Path("plain/Manifest.db"));
  ASSERT_FALSE(strPlain == ReadFile(Backup() + "/Manifest.db"));

  Decrypt();

  EXPECT_TRUE(strPlain == ReadFile(Backup() + "/Manifest.db-decypted"));
}

TEST_F(DecryptToolOutput, WritesAManifestAnewOverAnOldOne) {
  WriteEncryptedBackup(Backup(), kBackupAges[2]);
  WriteFile(Backup() + "/Manifest.db-decypted", "an old one");

  EXPECT_EQ(0, Decrypt().nExitStatus);

  EXPECT_EQ("SQLite format 3", ReadFile(Backup() + "/Manifest.db-decypted").substr(0, 15));
}

TEST_F(DecryptToolOutput, CopiesAManifestThatIsNotEncryptedOverAnOldOne) {
  WriteEncryptedBackup(Backup(), Ios10());
  WriteFile(Backup() + "/Manifest.db-decypted", "of another backup");

  EXPECT_EQ(0, Decrypt().nExitStatus);

  EXPECT_TRUE(ReadFile(Backup() + "/Manifest.db") == ReadFile(Backup() + "/Manifest.db-decypted"));
}

TEST_F(DecryptToolOutput, WritesNothingOutsideOfItsFolder) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  m_folder.Write("backup/../victim", "untouched");
  sqlite3* pDatabase = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open((Backup() + "/Manifest.db").c_str(), &pDatabase));
  ASSERT_EQ(
      SQLITE_OK,
      sqlite3_exec(pDatabase,
                   "insert into Files values ('../victim', 'a', 'b', 1, x''), ('/etc/passwd', 'a', 'c', 1, "
                   "x''), (null, 'a', 'd', 1, x''), ('', 'a', 'e', 1, x'')",
                   nullptr, nullptr, nullptr));
  sqlite3_close(pDatabase);

  EXPECT_EQ(0, Decrypt().nExitStatus);

  ExpectFiles(known);
  EXPECT_EQ("untouched", ReadFile(m_folder.Path("victim")));
}

TEST_P(DecryptToolOutputOfAge, LeavesTheBackupUnchanged) {
  WriteEncryptedBackup(Backup(), GetParam());
  const auto before = TreeState(Backup());

  Check(kPassword);
  EXPECT_EQ(before, TreeState(Backup()));
  Decrypt();

  auto after = TreeState(Backup());
  if (GetParam().layout == BackupBuilder::Layout::Db) {
    EXPECT_EQ(1u, after.erase("/Manifest.db-decypted"));
    after[""] = before.at("");  // the folder's own time has changed with it
  }
  EXPECT_EQ(before, after);
}

TEST_P(DecryptToolOutputOfAge, LeavesTheBackupAloneWhenAskedTo) {
  WriteEncryptedBackup(Backup(), GetParam());
  WriteFile(Backup() + "/Manifest.db-decypted", "of another run");
  const auto before = TreeState(Backup());

  const ToolResult result = RunTool({"--leave-backup", Backup(), Out(), kPassword});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(before, TreeState(Backup()));
  const bool bDatabase = GetParam().layout == BackupBuilder::Layout::Db;
  EXPECT_EQ(bDatabase, Exists(Out() + "/Manifest.db-decypted"));
}

TEST_P(DecryptToolOutputOfAge, ReadsABackupOnADiskThatIsReadOnly) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const std::string strScript =
      "mount --bind \"$1\" \"$1\" && mount -o remount,bind,ro \"$1\" && exec \"$0\" \"$@\"";
  if (!MayMount(Out())) GTEST_SKIP() << "no file system may be mounted here";

  const ToolResult result =
      RunProgram("unshare", {"-rm", "sh", "-c", strScript, ToolPath(), Backup(), Out(), kPassword});

  const bool bDatabase = GetParam().layout == BackupBuilder::Layout::Db;
  EXPECT_EQ(bDatabase ? 1 : 0, result.nExitStatus);
  EXPECT_THAT(result.err, SizeIs(bDatabase ? 1 : 0));
  for (const auto& [strId, strBytes] : known.files)
    EXPECT_TRUE(strBytes == ReadFile(Out() + "/" + strId)) << strId;
  EXPECT_EQ(bDatabase, Exists(Out() + "/Manifest.db-decypted"));
}

TEST_P(DecryptToolOutputOfAge, FollowsNoLinkInTheBackup) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const auto& [strId, strPath] = *known.paths.begin();
  const std::string strElsewhere = m_folder.Path("elsewhere");
  std::filesystem::rename(strPath, strElsewhere);
  std::filesystem::create_symlink(strElsewhere, strPath);

  const ToolResult result = Decrypt();

  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, SizeIs(1));
  EXPECT_EQ(strPath + ": can't be opened: is a symbolic link, which is not followed", result.err[0]);
  EXPECT_FALSE(Exists(Out() + "/" + strId));
}

TEST_F(DecryptToolOutput, FollowsNoLinkInPlaceOfItsManifests) {
  for (const char* pszName : {"Manifest.plist", "Manifest.db"}) {
    std::filesystem::remove_all(Backup());
    WriteEncryptedBackup(Backup(), kBackupAges[2]);
    std::filesystem::rename(Backup() + "/" + pszName, m_folder.Path("elsewhere"));
    std::filesystem::create_symlink(m_folder.Path("elsewhere"), Backup() + "/" + pszName);

    const ToolResult result = Decrypt();

    EXPECT_EQ(1, result.nExitStatus) << pszName;
    ASSERT_THAT(result.err, SizeIs(1)) << pszName;
    EXPECT_THAT(result.err[0], HasSubstr("is a symbolic link")) << pszName;
  }
}
