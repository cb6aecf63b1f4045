// orvandel-cli reads encrypted backups as plain ones.
#include <gmock/gmock.h>
#include <plist/plist.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QRegularExpression>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "backup/categories.h"
#include "common/layout.h"
#include "common/places.h"
#include "decrypt/property_list.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/cli/encrypted_pair.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr int kLimit = 60000;  // milliseconds
constexpr std::chrono::milliseconds kStep(10);

class EncryptedInPlace : public testing::TestWithParam<BackupAge> {
 protected:
  /// Recovers both backups, and expects the same files.
  void ExpectSameRecovery(const std::string& strLabels, size_t nLeastFiles) const {
    const std::string strPlain = m_pair.Path("one/" + strLabels), strOut = m_pair.Path("two/" + strLabels);
    const CommandResult plain =
        RunCommand({"recover", m_pair.Plain(), strPlain, "--no-index", "--only", strLabels});

    const CommandResult result =
        m_pair.Run({"recover", m_pair.Backup(), strOut, "--no-index", "--only", strLabels});

    EXPECT_EQ(plain.nExitStatus, result.nExitStatus) << result.strErr;
    EXPECT_EQ(plain.strErr, result.strErr);
    EXPECT_EQ(Succeeded(plain, strPlain), Succeeded(result, strOut));
    const auto expected = RecoveredTree(strPlain);
    EXPECT_GE(expected.size(), nLeastFiles);
    ExpectSameTree(expected, RecoveredTree(strOut));
  }

  EncryptedPair m_pair{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Ages, EncryptedInPlace, testing::ValuesIn(kBackupAges), NameOfAge);

/// JSON without the folders of paths and what tells an encrypted backup.
std::string WithoutPlaces(const CommandResult& result) {
  QString json = QString::fromStdString(WithoutStamps(result.strOut));
  json.replace(QRegularExpression("\"(path|destination)\": ?\"[^\"]*/"), "\"\\1\":\"");
  json.replace(QRegularExpression("\"encrypted\": ?(true|false)"), "\"encrypted\":ANY");
  return json.toStdString();
}

/// Runs a statement on "Manifest.db".
void Change(const std::string& strBackup, const char* pszStatement) {
  sqlite3* pDatabase = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open((strBackup + "/Manifest.db").c_str(), &pDatabase));
  EXPECT_EQ(SQLITE_OK, sqlite3_exec(pDatabase, pszStatement, nullptr, nullptr, nullptr));
  EXPECT_GT(sqlite3_changes(pDatabase), 50);
  sqlite3_close(pDatabase);
}

std::vector<std::pair<std::string, std::string>> FilesIn(const std::string& strFolder) {
  std::vector<std::pair<std::string, std::string>> files;
  for (const std::string& strName : NamesIn(strFolder))
    files.emplace_back(strName, ReadFile(strFolder + "/" + strName));
  return files;
}

#ifdef __linux__
/// The private work folder that a process holds open; empty if there is none.
std::string WorkFolderOf(qint64 nProcess) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc/" + std::to_string(nProcess) + "/fd", error)) {
    const std::string strTarget = fs::read_symlink(entry.path(), error).string();
    if (!error && strTarget.rfind("/var/tmp/orvandel-", 0) == 0 && fs::is_directory(strTarget))
      return strTarget;
  }
  return {};
}

/// Processor time that a process has used, in seconds.
double TimeOf(qint64 nProcess) {
  std::ifstream stream("/proc/" + std::to_string(nProcess) + "/stat");
  std::string strWord;
  double dTicks = 0;
  for (int i = 1; i <= 14 && stream >> strWord; ++i)
    if (i == 14) dTicks = std::stod(strWord);
  return dTicks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

/// Sets the rounds of the key derivation in "Manifest.plist". The password is wrong then.
void SetRounds(const std::string& strBackup, uint32_t nRounds) {
  const std::string strPath = strBackup + "/Manifest.plist", strBytes = ReadFile(strPath);
  const PropertyList list(strBytes.data(), strBytes.size());
  const Bytes keybag = DataOf(Member(list.Root(), "BackupKeyBag"));
  std::string strKeybag(keybag.begin(), keybag.end());
  for (const char* pszTag : {"DPIC", "ITER"}) {
    const size_t nTag = strKeybag.find(pszTag);
    if (nTag != std::string::npos) strKeybag.replace(nTag + 8, 4, manifest_bytes::Number(nRounds, 4));
  }
  plist_dict_set_item(list.Root(), "BackupKeyBag", plist_new_data(strKeybag.data(), strKeybag.size()));
  char* pXml = nullptr;
  uint32_t nSize = 0;
  plist_to_xml(list.Root(), &pXml, &nSize);
  WriteFile(strPath, std::string(pXml, nSize));
  plist_to_xml_free(pXml);
}
#endif

}  // namespace

TEST_P(EncryptedInPlace, RecoversEachCategoryAsThePlainBackup) {
  for (const Category& category : Categories()) {
    SCOPED_TRACE(category.pszLabel);
    ExpectSameRecovery(category.pszLabel, 0);
  }
}

TEST_P(EncryptedInPlace, RecoversSeveralCategoriesAsThePlainBackup) {
  ExpectSameRecovery("Notes,Call History", 2);
  ExpectSameRecovery("Camera Roll,Message,Contacts", 30);
}

TEST_P(EncryptedInPlace, PrintsTheSameJsonOfARecovery) {
  const CommandResult plain =
      RunCommand({"recover", m_pair.Plain(), m_pair.Path("one/out"), "--no-index", "--json"});

  const CommandResult result =
      m_pair.Run({"recover", m_pair.Backup(), m_pair.Path("two/out"), "--no-index", "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_GT(result.Lines().size(), 50u);
  EXPECT_EQ(WithoutPlaces(plain), WithoutPlaces(result));
}

TEST_P(EncryptedInPlace, RowsWithoutFlagsAreJudgedByTheModeInTheirRecord) {
  if (GetParam().age != Encryption::Age::Ios10) GTEST_SKIP() << "has no manifest that can be changed";
  const CommandResult scan = m_pair.Run({"scan", m_pair.Backup(), "--json", "--manifest"});
  m_pair.Run({"recover", m_pair.Backup(), m_pair.Path("with"), "--no-index"});
  const auto tree = RecoveredTree(m_pair.Path("with"));
  fs::create_directory(m_pair.Path("tool-with"));
  const ToolResult decrypted = RunTool({m_pair.Backup(), m_pair.Path("tool-with"), kPassword});
  fs::remove(m_pair.Backup() + "/Manifest.db-decypted");
  for (const char* pszFlags : {"0", "null"}) {
    SCOPED_TRACE(pszFlags);
    Change(m_pair.Backup(), (std::string("update Files set flags = ") + pszFlags).c_str());
    const std::string strOut = m_pair.Path(std::string("without-") + pszFlags);
    const std::string strToolOut = m_pair.Path(std::string("tool-without-") + pszFlags);
    fs::create_directory(strToolOut);

    const CommandResult scanWithout = m_pair.Run({"scan", m_pair.Backup(), "--json", "--manifest"});
    m_pair.Run({"recover", m_pair.Backup(), strOut, "--no-index"});
    const ToolResult decryptedWithout = RunTool({m_pair.Backup(), strToolOut, kPassword});
    fs::remove(m_pair.Backup() + "/Manifest.db-decypted");

    EXPECT_EQ(0, scanWithout.nExitStatus);
    EXPECT_TRUE(WithoutPlaces(scan) == WithoutPlaces(scanWithout)) << scanWithout.strOut;
    ExpectSameTree(tree, RecoveredTree(strOut));
    EXPECT_EQ(decrypted.nExitStatus, decryptedWithout.nExitStatus);
    EXPECT_EQ(decrypted.out, decryptedWithout.out);
    // Workers report in any order.
    EXPECT_THAT(decryptedWithout.err, testing::UnorderedElementsAreArray(decrypted.err));
    EXPECT_TRUE(FilesIn(m_pair.Path("tool-with")) == FilesIn(strToolOut));
  }
}

TEST_P(EncryptedInPlace, IsEncryptedByItsManifestPlistWhateverTheContactsStoreIs) {
  const std::string strStore = m_pair.PathOf(kContactsStore);
  std::string strBytes = ReadFile(strStore);
  strBytes.replace(0, 16, std::string("SQLite format 3\0", 16));
  WriteFile(strStore, strBytes);

  const CommandResult result = m_pair.Run({"scan", m_pair.Backup(), "--json"});

  EXPECT_TRUE(result.Object()["backup"].toObject()["encrypted"].toBool());
  EXPECT_GT(result.Object()["counts"].toObject()["Camera Roll"].toInt(), 20);
  EXPECT_GT(result.Object()["counts"].toObject()["Notes"].toInt(), 0);
}

TEST_P(EncryptedInPlace, IsEncryptedByItsManifestPlistWithoutAContactsStore) {
  ASSERT_TRUE(fs::remove(m_pair.PathOf(kContactsStore)));

  const CommandResult result = m_pair.Run({"scan", m_pair.Backup(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_TRUE(result.Object()["backup"].toObject()["encrypted"].toBool());
  EXPECT_GT(result.Object()["counts"].toObject()["Camera Roll"].toInt(), 20);
}

TEST_P(EncryptedInPlace, PlainBackupWithAGarbageContactsStoreIsPlain) {
  const std::string strStore = m_pair.PathIn(m_pair.Plain(), kContactsStore);
  WriteFile(strStore, std::string(8192, 'x'));
  WriteFile(m_pair.Plain() + "/Manifest.plist",
            "<plist version=\"1.0\"><dict><key>IsEncrypted</key><false/></dict></plist>");

  const CommandResult result = RunCommand({"scan", m_pair.Plain(), "--json"});

  EXPECT_NE(3, result.nExitStatus) << "it asked for a password";
  EXPECT_FALSE(result.Object()["backup"].toObject()["encrypted"].toBool(true));
  EXPECT_GT(result.Object()["counts"].toObject()["Camera Roll"].toInt(), 20);
}

#ifdef __linux__
TEST_P(EncryptedInPlace, KeepsOnlyManifestAndWantedStoresInItsPrivateWorkFolder) {
  const EncryptedPair pair(GetParam(), 600);
  QProcess process;
  // Nobody reads its output, which doesn't fit into a pipe, so that it blocks.
  PrepareCommand(process, pair.WithPassword({"recover", pair.Backup(),
                                             pair.Path(std::string(120, 'a') + "/" + std::string(120, 'b')),
                                             "--only", "Camera Roll,Notes", "--no-index"}));
  process.start();
  ASSERT_TRUE(process.waitForReadyRead(kLimit)) << "no line comes";

  const std::string strWork = WorkFolderOf(process.processId());
  std::vector<std::string> names;
  for (const std::string& strPath : FilesBelow(strWork)) names.push_back(fs::path(strPath).filename());
  struct stat attributes = {};
  EXPECT_EQ(0, stat(strWork.c_str(), &attributes));
  for (const auto& entry : fs::recursive_directory_iterator(strWork)) {
    struct stat inner = {};
    EXPECT_EQ(0, stat(entry.path().c_str(), &inner));
    EXPECT_EQ(0u, inner.st_mode & 077) << entry.path();
  }
  const CommandResult result = FinishCommand(process);

  std::vector<std::string> expected;
  if (GetParam().layout == BackupBuilder::Layout::Db) expected.push_back(kDecryptedManifestName);
  for (const char* pszId : {kNotesStore, kNotesCloudStore})
    if (Exists(pair.PathOf(pszId))) expected.push_back(pszId);
  EXPECT_THAT(names, testing::UnorderedElementsAreArray(expected));
  EXPECT_EQ(0700u, attributes.st_mode & 07777);
  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  EXPECT_FALSE(Exists(strWork));
}

TEST_P(EncryptedInPlace, StopsWithinASecondWhileItDerivesTheKey) {
  SetRounds(m_pair.Backup(), 20'000'000);
  QProcess process;
  PrepareCommand(process, m_pair.WithPassword({"scan", m_pair.Backup()}));
  process.start();
  ASSERT_TRUE(process.waitForStarted(kLimit));
  for (int i = 0; i < 3000 && TimeOf(process.processId()) < 0.5; ++i) std::this_thread::sleep_for(kStep);
  const std::string strWork = WorkFolderOf(process.processId());
  ASSERT_NE("", strWork);

  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(0, kill(static_cast<pid_t>(process.processId()), SIGINT));
  const CommandResult result = FinishCommand(process);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;

  EXPECT_EQ(130, result.nExitStatus);
  EXPECT_LT(taken.count(), 1);
  EXPECT_THAT(result.strErr, HasSubstr("stopped"));
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_FALSE(Exists(strWork));
}
#endif
