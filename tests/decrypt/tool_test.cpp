#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QProcess>
#include <algorithm>
#include <filesystem>
#include <regex>

#include "tests/backup/tree_state.h"
#include "tests/cli/mount.h"
#include "tests/decrypt/cryptography.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const BackupAge& kIos10 = kBackupAges[1];

class DecryptTool : public testing::Test {
 protected:
  void SetUp() override { m_folder.MakeFolder("out"); }
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }
  ToolResult Decrypt() const { return RunTool({Backup(), Out(), kPassword}); }
  ToolResult Check(const std::string& strPassword) const {
    return RunTool({Backup(), Out(), strPassword, "CheckPasswd"});
  }

  /// Expects all files of a backup but some.
  void ExpectFiles(const KnownBackup& known, const std::vector<std::string>& without = {}) const {
    std::vector<std::string> names;
    for (const auto& [strId, strBytes] : known.files) {
      if (std::count(without.begin(), without.end(), strId) > 0) continue;
      names.push_back(strId);
      EXPECT_TRUE(strBytes == ReadFile(Out() + "/" + strId))
          << strId << " of " << strBytes.size() << " bytes";
    }
    EXPECT_EQ(names, NamesIn(Out()));
  }

  TemporaryFolder m_folder;
};

class DecryptToolOfAge : public DecryptTool, public testing::WithParamInterface<BackupAge> {};

INSTANTIATE_TEST_SUITE_P(Ages, DecryptToolOfAge, testing::ValuesIn(kBackupAges), NameOfAge);

std::string IdOfSize(const KnownBackup& known, size_t nSize) {
  for (const auto& [strId, strBytes] : known.files) {
    if (strBytes.size() == nSize) return strId;
  }
  ADD_FAILURE() << "no file of " << nSize << " bytes";
  return {};
}

/// Puts other bytes into the record of a file.
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

void ExpectWrongPassword(const ToolResult& result) {
  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.out, ElementsAre("Wrong password"));
  EXPECT_THAT(result.err, IsEmpty());
}

void ExpectFailure(const ToolResult& result, const std::string& strFile, const std::string& strReason) {
  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, SizeIs(1));
  EXPECT_THAT(result.err[0], HasSubstr(strFile));
  EXPECT_THAT(result.err[0], HasSubstr(strReason));
  for (const std::string& strLine : result.out) EXPECT_THAT(strLine, Not(HasSubstr("Wrong password")));
}

}  // namespace

TEST_P(DecryptToolOfAge, WritesEveryFileAsItWasBeforeTheEncryption) {
  WriteEncryptedBackup(Backup(), GetParam());
  const KnownBackup plain = WritePlainBackup(m_folder.Path("plain"), GetParam());

  const ToolResult result = Decrypt();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.err, IsEmpty());
  ExpectFiles(plain);
  for (const auto& [strId, strPath] : plain.paths)
    EXPECT_TRUE(ReadFile(strPath) == ReadFile(Out() + "/" + strId)) << strId;
}

TEST_P(DecryptToolOfAge, WritesFilesForTheirOwnerAlone) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());

  Decrypt();

  for (const auto& [strId, strBytes] : known.files) {
    struct stat attributes;
    ASSERT_EQ(0, stat((Out() + "/" + strId).c_str(), &attributes));
    EXPECT_EQ(0100600u, attributes.st_mode) << strId;
  }
}

TEST_P(DecryptToolOfAge, LeavesTheBackupAsItWas) {
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

TEST_P(DecryptToolOfAge, ProvesAPassword) {
  WriteEncryptedBackup(Backup(), GetParam());

  const ToolResult result = Check(kPassword);

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Counts(), SizeIs(1));
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(NamesIn(Out()), IsEmpty());
}

TEST_P(DecryptToolOfAge, RejectsAnotherPassword) {
  WriteEncryptedBackup(Backup(), GetParam());

  ExpectWrongPassword(Check("geheim"));
  ExpectWrongPassword(RunTool({Backup(), Out(), "geheim"}));

  EXPECT_THAT(NamesIn(Out()), IsEmpty());
  EXPECT_FALSE(Exists(Backup() + "/Manifest.db-decypted"));
}

TEST_F(DecryptTool, WritesAnEncryptedManifestAsItWas) {
  // The two ages differ in nothing but this.
  WriteEncryptedBackup(m_folder.Path("plain"), kBackupAges[1]);
  WriteEncryptedBackup(Backup(), kBackupAges[2]);
  const std::string strPlain = ReadFile(m_folder.Path("plain/Manifest.db"));
  ASSERT_FALSE(strPlain == ReadFile(Backup() + "/Manifest.db"));

  Decrypt();

  EXPECT_TRUE(strPlain == ReadFile(Backup() + "/Manifest.db-decypted"));
}

TEST_F(DecryptTool, WritesAManifestAnewOverAnOldOne) {
  WriteEncryptedBackup(Backup(), kBackupAges[2]);
  WriteFile(Backup() + "/Manifest.db-decypted", "an old one");

  EXPECT_EQ(0, Decrypt().nExitStatus);

  EXPECT_EQ("SQLite format 3", ReadFile(Backup() + "/Manifest.db-decypted").substr(0, 15));
}

TEST_F(DecryptTool, CopiesAManifestThatIsNotEncryptedOverAnOldOne) {
  WriteEncryptedBackup(Backup(), kIos10);
  WriteFile(Backup() + "/Manifest.db-decypted", "of another backup");

  EXPECT_EQ(0, Decrypt().nExitStatus);

  EXPECT_TRUE(ReadFile(Backup() + "/Manifest.db") == ReadFile(Backup() + "/Manifest.db-decypted"));
}

TEST_P(DecryptToolOfAge, LeavesTheBackupAloneWhenItIsToldTo) {
  WriteEncryptedBackup(Backup(), GetParam());
  WriteFile(Backup() + "/Manifest.db-decypted", "of another run");
  const auto before = TreeState(Backup());

  const ToolResult result = RunTool({"--leave-backup", Backup(), Out(), kPassword});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(before, TreeState(Backup()));
  const bool bDatabase = GetParam().layout == BackupBuilder::Layout::Db;
  EXPECT_EQ(bDatabase, Exists(Out() + "/Manifest.db-decypted"));
}

TEST_P(DecryptToolOfAge, ReadsABackupOnADiskThatIsReadOnly) {
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

TEST_P(DecryptToolOfAge, FollowsNoLinkInTheBackup) {
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

TEST_F(DecryptTool, FollowsNoLinkInPlaceOfItsManifests) {
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

TEST_F(DecryptTool, TakesAPasswordFromItsInput) {
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

TEST_F(DecryptTool, CopiesAFileWithoutAKey) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
  ASSERT_TRUE(known.files.at(known.strPlainId) == ReadFile(known.paths.at(known.strPlainId)));

  Decrypt();

  EXPECT_TRUE(known.files.at(known.strPlainId) == ReadFile(Out() + "/" + known.strPlainId));
}

TEST_F(DecryptTool, TakesAPasswordInPieces) {
  WriteEncryptedBackup(Backup(), kIos10);

  EXPECT_EQ(0, RunTool({Backup(), Out(), "geh", "heim", "CheckPasswd"}).nExitStatus);
  EXPECT_EQ(0, RunTool({Backup(), Out(), "geh", "heim"}).nExitStatus);
  ExpectWrongPassword(RunTool({Backup(), Out(), "geh", "", "heim", "CheckPasswd"}));
}

TEST_F(DecryptTool, IsStartedByACommandStringAsTheWindowStartsIt) {
  WriteEncryptedBackup(Backup(), kIos10);
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

TEST_F(DecryptTool, RejectsAnEmptyPassword) {
  WriteEncryptedBackup(Backup(), kIos10);

  ExpectWrongPassword(Check(""));
  ExpectWrongPassword(RunTool({Backup(), Out(), ""}));
}

TEST_F(DecryptTool, RejectsAnEmptyPasswordThoughItWouldFit) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({"", Encryption::Age::Ios10, 20, 1});
  backup.finish();

  ExpectWrongPassword(Check(""));
}

TEST_F(DecryptTool, RejectsAMissingPassword) {
  WriteEncryptedBackup(Backup(), kIos10);

  ExpectWrongPassword(RunTool({Backup(), Out()}));
  // The third argument is always the password: what an empty one leaves of a check is a wrong one.
  ExpectWrongPassword(RunTool({Backup(), Out(), "CheckPasswd"}));
}

TEST_F(DecryptTool, TakesTheNameOfTheCheckAsAPassword) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({"CheckPasswd", Encryption::Age::Ios10, 20, 1});
  backup.addFile("HomeDomain", "file", "text");
  backup.finish();

  EXPECT_EQ(0, RunTool({Backup(), Out(), "CheckPasswd", "CheckPasswd"}).nExitStatus);
  EXPECT_THAT(NamesIn(Out()), IsEmpty());
  EXPECT_EQ(0, RunTool({Backup(), Out(), "CheckPasswd"}).nExitStatus);
  EXPECT_THAT(NamesIn(Out()), SizeIs(1));
}

TEST_F(DecryptTool, TakesPasswordsOfAnyCharacters) {
  for (const char* pszPassword : {"Grüße", "密码", "-h", "--help", "\"quoted\"", " ", "a\tb"}) {
    const TemporaryFolder folder;
    BackupBuilder backup(QString::fromStdString(folder.Path()), BackupBuilder::Layout::Db);
    backup.encrypt({pszPassword, Encryption::Age::From102, 20, 1});
    backup.finish();

    EXPECT_EQ(0, RunTool({folder.Path(), Out(), pszPassword, "CheckPasswd"}).nExitStatus) << pszPassword;
  }
}

TEST_F(DecryptTool, CountsUpToTheNumberOfFiles) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);

  const std::vector<long long> counts = Decrypt().Counts();

  ASSERT_FALSE(counts.empty());
  EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
  EXPECT_TRUE(std::adjacent_find(counts.begin(), counts.end()) == counts.end()) << "a number comes twice";
  EXPECT_EQ(static_cast<long long>(known.files.size()), counts.back());
}

TEST_F(DecryptTool, CountsInSomeHundredStepsAtMost) {
  for (const int nFiles : {1, 199, 200, 201, 1000, 3001}) {
    const TemporaryFolder folder;
    BackupBuilder backup(QString::fromStdString(folder.Path("backup")), BackupBuilder::Layout::Mbdb);
    backup.encrypt({kPassword, Encryption::Age::BeforeIos10, 20, 1});
    for (int i = 0; i < nFiles; ++i) backup.addFile("HomeDomain", QString::number(i), "text");
    backup.finish();
    folder.MakeFolder("out");

    const std::vector<long long> counts =
        RunTool({folder.Path("backup"), folder.Path("out"), kPassword}).Counts();

    ASSERT_FALSE(counts.empty());
    EXPECT_LE(counts.size(), 250u);
    EXPECT_GE(counts.size(), static_cast<size_t>(std::min(nFiles, 100)));
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
    EXPECT_EQ(nFiles, counts.back());
    EXPECT_EQ(1, std::count(counts.begin(), counts.end(), nFiles));
  }
}

TEST_F(DecryptTool, CountsNoFilesOfAnEmptyBackup) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({kPassword, Encryption::Age::From102, 20, 1});
  backup.finish();

  const ToolResult result = Decrypt();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.out, ElementsAre("Count:0"));
}

TEST_F(DecryptTool, SaysThatABackupIsNotEncrypted) {
  BackupBuilder(QString::fromStdString(Backup()), BackupBuilder::Layout::Db).finish();
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><false/></dict></plist>");

  ExpectFailure(Decrypt(), "Manifest.plist", "isn't encrypted");
  ExpectFailure(Check(kPassword), "Manifest.plist", "isn't encrypted");
}

TEST_F(DecryptTool, NamesAManifestListThatItCanNotUse) {
  m_folder.MakeFolder("backup");
  ExpectFailure(Check(kPassword), "Manifest.plist", "No such file or directory");
  ExpectFailure(RunTool({m_folder.Path("nowhere"), Out(), kPassword}), "nowhere/Manifest.plist",
                "No such file or directory");
  WriteFile(Backup() + "/Manifest.plist", "");
  ExpectFailure(Check(kPassword), "Manifest.plist", "is no property list");
  WriteFile(Backup() + "/Manifest.plist", "some text of no use");
  ExpectFailure(Check(kPassword), "Manifest.plist", "is no property list");
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><true/></dict></plist>");
  ExpectFailure(Check(kPassword), "Manifest.plist", "holds no keybag");
  WriteFile(Backup() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><true/><key>BackupKeyBag</key>"
            "<data>VkVSUwAAAAQ=</data></dict></plist>");
  ExpectFailure(Check(kPassword), "Manifest.plist", "the keybag is damaged: an item runs beyond its end");
  ASSERT_EQ(0, unlink((Backup() + "/Manifest.plist").c_str()));
  m_folder.MakeFolder("backup/Manifest.plist");
  ExpectFailure(Check(kPassword), "Manifest.plist", "Is a directory");
}

TEST_F(DecryptTool, NamesAManifestThatIsMissing) {
  WriteEncryptedBackup(Backup(), kBackupAges[0]);
  ASSERT_EQ(0, unlink((Backup() + "/Manifest.mbdb").c_str()));

  ExpectFailure(Decrypt(), "Manifest.mbdb", "is missing");
}

TEST_P(DecryptToolOfAge, NamesAManifestThatIsDamaged) {
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

TEST_P(DecryptToolOfAge, NamesAFileThatIsMissingAndGoesOn) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const std::string strId = IdOfSize(known, 4096);
  ASSERT_EQ(0, unlink(known.paths.at(strId).c_str()));

  const ToolResult result = Decrypt();

  ExpectFailure(result, known.paths.at(strId), "No such file or directory");
  ExpectFiles(known, {strId});
  EXPECT_EQ(static_cast<long long>(known.files.size()), result.Counts().back());
}

TEST_P(DecryptToolOfAge, NamesAFileThatIsCutShortAndGoesOn) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), GetParam());
  const std::string strId = IdOfSize(known, 262145);
  for (const off_t nSize : {100000, 160000, 0}) {
    ASSERT_EQ(0, truncate(known.paths.at(strId).c_str(), nSize));
    std::filesystem::remove(Out() + "/" + strId);

    ExpectFailure(Decrypt(), known.paths.at(strId), "is cut short");

    ExpectFiles(known, {strId});
  }
}

TEST_F(DecryptTool, NamesAFileOfAClassWithoutAKey) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
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

TEST_F(DecryptTool, NamesAFileWhoseKeyIsDamaged) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
  const std::string strId = IdOfSize(known, 4096);
  const BackupKeys keys({kPassword, Encryption::Age::Ios10, 20, 1});
  QByteArray damaged = keys.wrappedKey(QByteArray::fromStdString(strId), 2);
  damaged[20] = static_cast<char>(damaged[20] ^ 1);
  ReplaceRecord(Backup() + "/Manifest.db", strId,
                BackupKeys::record(BackupBuilder::kFile, 4096, damaged, true));

  ExpectFailure(Decrypt(), known.paths.at(strId), "its key is damaged");

  ExpectFiles(known, {strId});
}

TEST_F(DecryptTool, NamesAFileWhoseRecordIsDamaged) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
  const std::string strId = IdOfSize(known, 4096);
  for (const QByteArray& record : {QByteArray("bplist00 and no more"), QByteArray("")}) {
    ReplaceRecord(Backup() + "/Manifest.db", strId, record);

    ExpectFailure(Decrypt(), known.paths.at(strId), "its record in the manifest is damaged");

    ExpectFiles(known, {strId});
  }
}

TEST_F(DecryptTool, WritesNothingOutsideOfItsFolder) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
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

TEST_F(DecryptTool, NamesAFolderThatIsMissing) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);

  const ToolResult result = RunTool({Backup(), m_folder.Path("nowhere"), kPassword});

  EXPECT_EQ(1, result.nExitStatus);
  ASSERT_THAT(result.err, SizeIs(known.files.size()));
  for (const std::string& strLine : result.err)
    EXPECT_THAT(strLine, HasSubstr("can't be made: No such file or directory"));
}

TEST_F(DecryptTool, NamesFilesForWhichTheDiskIsTooFull) {
  if (!MayMount(Out())) GTEST_SKIP() << "no file system may be mounted here";
  const KnownBackup known = WriteEncryptedBackup(Backup(), kIos10);
  const std::string strLargest = IdOfSize(known, 3 * 1024 * 1024 + 1);

  // The mount ends with the process: what came there is copied.
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

TEST_F(DecryptTool, WritesAFileThatIsListedTwice) {
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

TEST_F(DecryptTool, ShowsItsHelpAndVersion) {
  const ToolResult help = RunTool({"--help"}), version = RunTool({"--version"}), nothing = RunTool({});

  EXPECT_EQ(0, help.nExitStatus);
  EXPECT_THAT(help.out, testing::Contains(HasSubstr("CheckPasswd")));
  EXPECT_EQ(0, version.nExitStatus);
  EXPECT_THAT(version.out, ElementsAre(HasSubstr(ORVANDEL_VERSION)));
  EXPECT_EQ(2, nothing.nExitStatus);
  EXPECT_THAT(nothing.out, IsEmpty());
  EXPECT_THAT(nothing.err, Not(IsEmpty()));
}

TEST_F(DecryptTool, HidesThePasswordFromTheListOfProcesses) {
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
