// The tool's reports about unusable backups or folders, and what it still writes.
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>

#include "tests/cli/mount.h"
#include "tests/decrypt/cryptography.h"
#include "tests/decrypt/tool_fixture.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

class DecryptToolFailure : public DecryptTool {};
class DecryptToolFailureOfAge : public DecryptToolOfAge {};

INSTANTIATE_TEST_SUITE_P(Ages, DecryptToolFailureOfAge, testing::ValuesIn(kBackupAges), NameOfAge);

std::string IdOfSize(const KnownBackup& known, size_t nSize) {
  for (const auto& [strId, strBytes] : known.files) {
    if (strBytes.size() == nSize) return strId;
  }
  ADD_FAILURE() << "no file of " << nSize << " bytes";
  return {};
}

/// Replaces the record of a file.
void ReplaceRecord(const std::string& strManifest, const std::string& strId, const QByteArray& record) {
  sqlite3* pDatabase = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(strManifest.c_str(), &pDatabase));
  sqlite3_stmt* pStatement = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_prepare_v2(pDatabase, "update Files set file = ? where fileID = ?", -1,
                                          &pStatement, nullptr));
  sqlite3_bind_blob(pStatement, 1, record.constData(), record.size(), SQLITE_STATIC);
  sqlite3_bind_text(pStatement, 2, strId.c_str(), -1, SQLITE_STATIC);
  ASSERT_EQ(SQLITE_DONE, sqlite3_step(pStatement));
  ASSERT_EQ(1, sqlite3_changes(pDatabase));
  sqlite3_finalize(pStatement);
  sqlite3_close(pDatabase);
}

void ExpectFailure(const ToolResult& result, const std::string& strFile, const std::string& strReason) {
  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, SizeIs(1));
  EXPECT_THAT(result.err[0], HasSubstr(strFile));
  EXPECT_THAT(result.err[0], HasSubstr(strReason));
  for (const std::string& strLine : result.out) EXPECT_THAT(strLine, Not(HasSubstr("Wrong password")));
}

}  // namespace

TEST_F(DecryptToolFailure, SaysThatABackupIsNotEncrypted) {
  BackupBuilder(QString::fromStdString(Backup()), BackupBuilder::Layout::Db).finish();
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><false/></dict></plist>");

  ExpectFailure(Decrypt(), "Manifest.plist", "isn't encrypted");
  ExpectFailure(Check(kPassword), "Manifest.plist", "isn't encrypted");
}

TEST_F(DecryptToolFailure, NamesAManifestListThatItCanNotUse) {
  m_folder.MakeFolder("backup");
  ExpectFailure(Check(kPassword), "Manifest.plist", "No such file or directory");
  ExpectFailure(RunTool({m_folder.Path("nowhere"), Out(), kPassword}), "nowhere/Manifest.plist",
                "No such file or directory");
  WriteFile(Backup() + "/Manifest.plist", "");
  ExpectFailure(Check(kPassword), "Manifest.plist", "isn't a property list");
  WriteFile(Backup() + "/Manifest.plist", "some text of no use");
  ExpectFailure(Check(kPassword), "Manifest.plist", "isn't a property list");
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><true/></dict></plist>");
  ExpectFailure(Check(kPassword), "Manifest.plist", "contains no keybag");
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><true/><key>BackupKeyBag</key>"
            "<data>VkVSUwAAAAQ=</data></dict></plist>");
  ExpectFailure(Check(kPassword), "Manifest.plist", "the keybag is damaged: an item runs beyond its end");
  ASSERT_EQ(0, unlink((Backup() + "/Manifest.plist").c_str()));
  m_folder.MakeFolder("backup/Manifest.plist");
  ExpectFailure(Check(kPassword), "Manifest.plist", "Is a directory");
}

TEST_F(DecryptToolFailure, NamesAManifestThatIsMissing) {
  WriteEncryptedBackup(Backup(), kBackupAges[0]);
  ASSERT_EQ(0, unlink((Backup() + "/Manifest.mbdb").c_str()));

  ExpectFailure(Decrypt(), "Manifest.mbdb", "is missing");
}

TEST_P(DecryptToolFailureOfAge, NamesAManifestThatIsDamaged) {
  WriteEncryptedBackup(Backup(), GetParam());
  const bool bFlat = GetParam().layout == BackupBuilder::Layout::Mbdb;
  const std::string strManifest = Backup() + (bFlat ? "/Manifest.mbdb" : "/Manifest.db");
  WriteFile(strManifest, std::string(8192, 'x'));

  const ToolResult result = Decrypt();

  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, Not(IsEmpty()));
  EXPECT_THAT(result.err[0], HasSubstr(bFlat ? "Manifest.mbdb" : "Manifest.db"));
  EXPECT_THAT(NamesIn(Out()), IsEmpty());
}

TEST_P(DecryptToolFailureOfAge, NamesAFileThatIsMissingAndGoesOn) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const std::string strId = IdOfSize(known, 4096);
  ASSERT_EQ(0, unlink(known.paths.at(strId).c_str()));

  const ToolResult result = Decrypt();

  ExpectFailure(result, known.paths.at(strId), "No such file or directory");
  ExpectFiles(known, {strId});
  EXPECT_EQ(static_cast<long long>(known.files.size()), result.Counts().back());
}

TEST_P(DecryptToolFailureOfAge, NamesAFileThatIsCutShortAndGoesOn) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const std::string strId = IdOfSize(known, 262145);
  for (const off_t nSize : {100000, 160000, 0}) {
    ASSERT_EQ(0, truncate(known.paths.at(strId).c_str(), nSize));
    std::filesystem::remove(Out() + "/" + strId);

    ExpectFailure(Decrypt(), known.paths.at(strId), "is cut short");

    ExpectFiles(known, {strId});
  }
}

TEST_F(DecryptToolFailure, NamesAFileOfAClassWithoutAKey) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  const std::string strId = IdOfSize(known, 4096);
  const BackupKeys keys({kPassword, Encryption::Age::Ios10, 20, 1});
  const QByteArray name = QByteArray::fromStdString(strId);
  for (const quint32 nClass : {12u, 77u}) {
    ReplaceRecord(Backup() + "/Manifest.db", strId,
                  BackupKeys::record(BackupBuilder::kFile, 4096, keys.wrappedKey(name, nClass), false));
    std::filesystem::remove(Out() + "/" + strId);

    ExpectFailure(Decrypt(), known.paths.at(strId), "no key for its class " + std::to_string(nClass));

    ExpectFiles(known, {strId});
  }
}

TEST_F(DecryptToolFailure, NamesAFileWhoseKeyIsDamaged) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  const std::string strId = IdOfSize(known, 4096);
  const BackupKeys keys({kPassword, Encryption::Age::Ios10, 20, 1});
  QByteArray damaged = keys.wrappedKey(QByteArray::fromStdString(strId), 2);
  damaged[20] = static_cast<char>(damaged[20] ^ 1);
  ReplaceRecord(Backup() + "/Manifest.db", strId,
                BackupKeys::record(BackupBuilder::kFile, 4096, damaged, true));

  ExpectFailure(Decrypt(), known.paths.at(strId), "its key is damaged");

  ExpectFiles(known, {strId});
}

TEST_F(DecryptToolFailure, NamesAFileWhoseRecordIsDamaged) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  const std::string strId = IdOfSize(known, 4096);
  for (const QByteArray& record : {QByteArray("bplist00 and no more"), QByteArray("")}) {
    ReplaceRecord(Backup() + "/Manifest.db", strId, record);

    ExpectFailure(Decrypt(), known.paths.at(strId), "its record in the manifest is damaged");

    ExpectFiles(known, {strId});
  }
}

TEST_F(DecryptToolFailure, NamesAFolderThatIsMissing) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());

  const ToolResult result = RunTool({Backup(), m_folder.Path("nowhere"), kPassword});

  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, SizeIs(known.files.size()));
  for (const std::string& strLine : result.err)
    EXPECT_THAT(strLine, HasSubstr("can't be created: No such file or directory"));
}

TEST_F(DecryptToolFailure, NamesFilesForWhichTheDiskIsTooFull) {
  if (!MayMount(Out())) GTEST_SKIP() << "no file system may be mounted here";
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());
  const std::string strLargest = IdOfSize(known, 3 * 1024 * 1024 + 1);

  // The mount ends with the process, so the result is copied.
  const ToolResult result = RunProgram(
      "unshare", {"-rm", "sh", "-c",
                  "mount -t tmpfs -o size=2m tmpfs \"$2\" || exit 99\n\"$1\" \"$3\" \"$2\" \"$4\"; "
                  "status=$?; cp -r \"$2\" \"$5\"; exit $status",
                  "sh", ToolPath(), Out(), Backup(), kPassword, m_folder.Path("kept")});

  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, Not(IsEmpty()));
  bool bLargest = false;
  for (const std::string& strLine : result.err) {
    EXPECT_THAT(strLine, HasSubstr("can't be written: No space left on device"));
    bLargest |= strLine.find(strLargest) != std::string::npos;
  }
  EXPECT_TRUE(bLargest);
  const std::vector<std::string> kept = NamesIn(m_folder.Path("kept"));
  EXPECT_EQ(known.files.size(), kept.size() + result.err.size());
  for (const std::string& strName : kept)
    EXPECT_TRUE(known.files.at(strName) == ReadFile(m_folder.Path("kept/" + strName))) << strName;
}
