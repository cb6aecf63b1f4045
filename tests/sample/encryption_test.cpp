#include "sample/encryption.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "sample/stores.h"
#include "tests/backup/tree_state.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string SamplePath() {
  const std::string strTool = ToolPath();
  return strTool.substr(0, strTool.rfind('/')) + "/orvandel-sample";
}

ToolResult RunSample(const std::vector<std::string>& arguments) {
  return RunProgram(SamplePath(), arguments);
}

std::string ContactsOf(const std::string& strBackup, BackupBuilder::Layout layout) {
  const StorePlace place = store_places::contacts();
  const BackupBuilder backup(QString::fromStdString(strBackup), layout);
  return ReadFile(backup.filePath(BackupBuilder::fileId(place.domain, place.relativePath)).toStdString());
}

struct AgeCase {
  const char* pszName;
  std::vector<std::string> arguments;
  BackupBuilder::Layout layout;
  const char* pszVersion;
  bool bManifestEncrypted;
};

void PrintTo(const AgeCase& age, std::ostream* pStream) {
  *pStream << age.pszName;
}

class EncryptedSample : public testing::TestWithParam<AgeCase> {};

using Layout = BackupBuilder::Layout;

INSTANTIATE_TEST_SUITE_P(
    Ages, EncryptedSample,
    testing::Values(AgeCase{"ByDefault", {}, Layout::Db, "11.0.3", true},
                    AgeCase{"Age102", {"--age", "10.2"}, Layout::Db, "11.0.3", true},
                    AgeCase{"Age100", {"--age", "10.0"}, Layout::Db, "10.1.1", false},
                    AgeCase{"Age9", {"--age", "9"}, Layout::Mbdb, "9.3.5", false},
                    AgeCase{"FlatByDefault", {"--layout", "mbdb"}, Layout::Mbdb, "9.3.5", false}),
    [](const auto& info) { return info.param.pszName; });

}  // namespace

TEST_P(EncryptedSample, IsOfItsAge) {
  const TemporaryFolder folder;
  std::vector<std::string> arguments = {folder.Path("backup"), "--encrypted", kPassword, "--rounds", "20"};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());

  ASSERT_EQ(0, RunSample(arguments).nExitStatus);

  const bool bFlat = GetParam().layout == Layout::Mbdb;
  EXPECT_EQ(bFlat, Exists(folder.Path("backup/Manifest.mbdb")));
  EXPECT_EQ(!bFlat, Exists(folder.Path("backup/Manifest.db")));
  if (!bFlat) {
    EXPECT_EQ(GetParam().bManifestEncrypted,
              ReadFile(folder.Path("backup/Manifest.db")).substr(0, 6) != "SQLite");
  }
  EXPECT_NE("SQLite", ContactsOf(folder.Path("backup"), GetParam().layout).substr(0, 6));
  for (const char* pszFile : {"backup/Info.plist", "backup/Manifest.plist"})
    EXPECT_THAT(ReadFile(folder.Path(pszFile)), HasSubstr(GetParam().pszVersion)) << pszFile;
  EXPECT_EQ(GetParam().bManifestEncrypted,
            ReadFile(folder.Path("backup/Manifest.plist")).find("ManifestKey") != std::string::npos);
}

TEST_P(EncryptedSample, IsTheSameOnEveryRun) {
  const TemporaryFolder folder;
  for (const char* pszName : {"one", "two"}) {
    std::vector<std::string> arguments = {folder.Path(pszName), "--encrypted", kPassword, "--rounds", "20"};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    ASSERT_EQ(0, RunSample(arguments).nExitStatus);
  }

  const auto contents = [&](const char* pszName) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path(pszName))) {
      if (entry.is_regular_file())
        files[entry.path().string().substr(folder.Path(pszName).size())] = ReadFile(entry.path().string());
    }
    return files;
  };
  EXPECT_TRUE(contents("one") == contents("two"));
}

TEST(EncryptedSampleOptions, AreRefusedWhereTheyDoNotFit) {
  const TemporaryFolder folder;
  const std::vector<std::vector<std::string>> cases = {
      {"--encrypted", ""},
      {"--encrypted", "x", "--rounds", "0"},
      {"--encrypted", "x", "--rounds", "many"},
      {"--encrypted", "x", "--age", "8"},
      {"--encrypted", "x", "--age", "9", "--layout", "db"},
      {"--encrypted", "x", "--age", "10.2", "--layout", "mbdb"},
      {"--rounds", "20"},
      {"--age", "9"},
  };
  for (std::vector<std::string> arguments : cases) {
    arguments.insert(arguments.begin(), folder.Path("backup"));

    const ToolResult result = RunSample(arguments);

    EXPECT_EQ(1, result.nExitStatus) << testing::PrintToString(arguments);
    EXPECT_THAT(result.err, Not(IsEmpty())) << testing::PrintToString(arguments);
    EXPECT_FALSE(Exists(folder.Path("backup")));
  }
}

TEST(BackupKeysOfASeed, DifferForEachFileAndSeed) {
  const BackupKeys one({"x", Encryption::Age::From102, 5, 1}), two({"x", Encryption::Age::From102, 5, 2});

  EXPECT_EQ(one.key("a"), one.key("a"));
  EXPECT_NE(one.key("a"), one.key("b"));
  EXPECT_NE(one.key("a"), two.key("a"));
  EXPECT_EQ(44, one.wrappedKey("a").size());
  EXPECT_EQ(QByteArray("\3\0\0\0", 4), one.wrappedKey("a", 3).left(4));
}

TEST(EncryptedBackup, HasToBeOfAnAgeThatGoesWithItsLayout) {
  const TemporaryFolder folder;
  BackupBuilder flat(QString::fromStdString(folder.Path("a")), Layout::Mbdb);
  BackupBuilder deep(QString::fromStdString(folder.Path("b")), Layout::Db);

  EXPECT_THROW(flat.encrypt({"x", Encryption::Age::From102, 5, 1}), std::invalid_argument);
  EXPECT_THROW(deep.encrypt({"x", Encryption::Age::BeforeIos10, 5, 1}), std::invalid_argument);
}
