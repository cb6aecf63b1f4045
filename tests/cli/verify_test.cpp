#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <filesystem>

#include "cli/content_hash.h"
#include "sample/encryption.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Layout = BackupBuilder::Layout;

namespace {

class VerifyOfAnyAge : public testing::TestWithParam<AnyAge> {
 protected:
  void SetUp() override { m_known = WriteAnyBackup(Backup(), GetParam()); }

  std::string Backup() const { return m_folder.Path("backup"); }
  std::string PathOf(const char* pszName) {
    return m_known.paths[BackupBuilder::fileId("MediaDomain", pszName).toStdString()];
  }
  CommandResult Verify(const std::vector<std::string>& arguments = {}) const {
    std::vector<std::string> all = {"verify", Backup()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunWithPassword(m_folder.Path(), all);
  }
  std::string Totals(int nMissing, int nDamaged) const {
    const int nFiles = static_cast<int>(m_known.files.size());
    return std::to_string(nFiles) + " files, " + std::to_string(nFiles - nMissing - nDamaged) + " sound, " +
           std::to_string(nMissing) + " missing, " + std::to_string(nDamaged) + " damaged";
  }

  TemporaryFolder m_folder;
  KnownBackup m_known;
};

class VerifyTest : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(VerifyOfAnyAge, OfASoundBackupFindsNothing) {
  const auto before = TreeOf(Backup());

  const CommandResult result = Verify();

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.Lines(), ElementsAre(Totals(0, 0)));
  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_P(VerifyOfAnyAge, FindsAMissingFile) {
  ASSERT_EQ(0, unlink(PathOf("Media/3").c_str()));

  const CommandResult result = Verify();

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre("Missing\tMediaDomain/Media/3", Totals(1, 0)));
}

TEST_P(VerifyOfAnyAge, FindsAFileThatIsTooShort) {
  ASSERT_EQ(0, truncate(PathOf("Media/3").c_str(), 16));

  const CommandResult result = Verify();

  EXPECT_EQ(4, result.nExitStatus);
  ASSERT_THAT(result.Lines(), SizeIs(2));
  EXPECT_THAT(result.Line(0),
              StartsWith(GetParam().bEncrypted ? "Damaged\tMediaDomain/Media/3\tis cut short: 16 of 103"
                                               : "Damaged\tMediaDomain/Media/3\thas 16 of 103 bytes"));
  EXPECT_EQ(Totals(0, 1), result.LastLine());
}

TEST_P(VerifyOfAnyAge, FindsWhatIsNotARegularFile) {
  ASSERT_EQ(0, unlink(PathOf("Media/3").c_str()));
  fs::create_symlink(PathOf("Media/4"), PathOf("Media/3"));
  ASSERT_EQ(0, unlink(PathOf("Media/5").c_str()));
  ASSERT_EQ(0, mkfifo(PathOf("Media/5").c_str(), 0600));

  const CommandResult result = Verify();

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(StartsWith("Damaged\tMediaDomain/Media/3\tcan't be opened: ")));
  EXPECT_THAT(result.Lines(), Contains(StartsWith("Damaged\tMediaDomain/Media/5\tcan't be opened: ")));
  EXPECT_EQ(Totals(0, 2), result.LastLine());
}

TEST_P(VerifyOfAnyAge, FindsChangedContentWhereTheManifestHasHashes) {
  std::string strBytes = ReadFile(PathOf("Media/3"));
  strBytes[20] = static_cast<char>(strBytes[20] ^ 1);
  WriteFile(PathOf("Media/3"), strBytes);

  const CommandResult result = Verify();

  const bool bHashes = GetParam().age.layout == Layout::Mbdb;
  EXPECT_EQ(bHashes ? 4 : 0, result.nExitStatus);
  EXPECT_EQ(Totals(0, bHashes ? 1 : 0), result.LastLine());
  EXPECT_THAT(result.Line(0), HasSubstr(bHashes ? "its SHA-1 is another" : " 0 damaged"));
}

TEST_P(VerifyOfAnyAge, PrintsOneJsonObject) {
  ASSERT_EQ(0, unlink(PathOf("Media/3").c_str()));

  const CommandResult result = Verify({"--json"});

  const auto nFiles = static_cast<int>(m_known.files.size());
  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_EQ(R"({"damaged":0,"files":)" + std::to_string(nFiles) +
                R"(,"missing":1,"problems":[{"name":"MediaDomain/Media/3","status":"Missing"}],"sound":)" +
                std::to_string(nFiles - 1) + "}",
            JsonText(result.Object()));
}

INSTANTIATE_TEST_SUITE_P(Ages, VerifyOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);

TEST_F(VerifyTest, FindsAFileOfAnotherKey) {
  for (const BackupAge& age : kBackupAges) {
    const std::string strBackup = m_folder.Path(age.pszName);
    const KnownBackup known = WriteEncryptedBackup(strBackup, age);
    const auto pathOf = [&](const char* pszName) {
      return known.paths.at(BackupBuilder::fileId("MediaDomain", pszName).toStdString());
    };
    fs::copy_file(pathOf("Media/4"), pathOf("Media/3"), fs::copy_options::overwrite_existing);

    const CommandResult result = RunWithPassword(m_folder.Path(), {"verify", strBackup});

    EXPECT_EQ(4, result.nExitStatus);
    EXPECT_THAT(result.Line(0), StartsWith("Damaged\tMediaDomain/Media/3\tis damaged"));
  }
}

TEST_F(VerifyTest, FindsFilesWithoutAUsableKey) {
  WriteEncryptedBackup(Backup(), kBackupAges[1]);
  const QByteArray id = BackupBuilder::fileId("MediaDomain", "Media/3").toUtf8();
  const BackupKeys keys({kPassword, Encryption::Age::Ios10, 20, 1});
  QByteArray damaged = keys.wrappedKey(id, 2);
  damaged[20] = static_cast<char>(damaged[20] ^ 1);
  const std::pair<QByteArray, const char*> records[] = {
      {BackupKeys::record(BackupBuilder::kFile, 103, keys.wrappedKey(id, 12), false),
       "no key for its class 12"},
      {BackupKeys::record(BackupBuilder::kFile, 103, damaged, false), "its key is damaged"},
      {"bplist00 and no more", "its record in the manifest is damaged"}};
  for (const auto& [record, pszReason] : records) {
    RunSql(Backup() + "/Manifest.db",
           "UPDATE Files SET file = ? WHERE domain = 'MediaDomain' AND relativePath = 'Media/3'", record);

    const CommandResult result = RunWithPassword(m_folder.Path(), {"verify", Backup()});

    EXPECT_EQ(4, result.nExitStatus);
    EXPECT_EQ(std::string("Damaged\tMediaDomain/Media/3\t") + pszReason, result.Line(0));
    EXPECT_THAT(result.LastLine(), EndsWith(" 0 missing, 1 damaged"));
  }
}

TEST_F(VerifyTest, AcceptsTheHashOfTheEncryptedContent) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), kBackupAges[0]);
  const std::string strId = BackupBuilder::fileId("MediaDomain", "Media/3").toStdString();
  const auto hashOf = [](const std::string& strBytes) {
    return QCryptographicHash::hash(QByteArray::fromStdString(strBytes), QCryptographicHash::Sha1)
        .toStdString();
  };
  std::string strManifest = ReadFile(Backup() + "/Manifest.mbdb");
  const size_t nHash = strManifest.find(hashOf(known.files.at(strId)));
  ASSERT_NE(std::string::npos, nHash);
  strManifest.replace(nHash, 20, hashOf(ReadFile(known.paths.at(strId))));
  WriteFile(Backup() + "/Manifest.mbdb", strManifest);

  const CommandResult result = RunWithPassword(m_folder.Path(), {"verify", Backup()});

  EXPECT_EQ(0, result.nExitStatus) << result.strOut;
}

TEST_F(VerifyTest, FindsAnInvalidIdentifier) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile("HomeDomain", "a", "x");
  backup.finish();
  RunSql(Backup() + "/Manifest.db", "UPDATE Files SET fileID = '../../etc/passwd'");

  const CommandResult result = RunCommand({"verify", Backup()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_EQ("Damaged\tHomeDomain/a\tits identifier in the manifest is invalid", result.Line(0));
}

TEST_F(VerifyTest, AcceptsFilesOfUnknownSize) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile("HomeDomain", "a", "x");
  backup.finish();
  RunSql(Backup() + "/Manifest.db", "UPDATE Files SET file = NULL");

  const CommandResult result = RunCommand({"verify", Backup()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre("1 files, 1 sound, 0 missing, 0 damaged"));
}

TEST(ContentHash, IsFormattedAsTheManifestsReaderFormatsIt) {
  ContentHash hash;
  hash.Add(reinterpret_cast<const unsigned char*>("abc"), 3);

  // a9 99 3e 36 47 06 81 6a ba 3e 25 71 78 50 c2 6c 9c d0 d8 9d
  EXPECT_EQ(
      "a9993e3647681"
      "6aba3e25717850c26c9cd0d89d",
      hash.Text());
}
