// orvandel-cli on encrypted backups that are damaged.
#include <gmock/gmock.h>

#include <filesystem>

#include "common/layout.h"
#include "tests/cli/encrypted_pair.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

/// A way to damage a photo of an encrypted backup.
struct Damage {
  const char* pszName;
  const char* pszReason;  ///< part of it
  bool bOnlyManifestDb;
  void (*pfnDamage)(const EncryptedPair& pair, const std::string& strId);
};

const Damage kDamages[] = {
    {"FlippedByteOfTheKey", "key", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       std::string strKey = pair.KeyOf(strId);
       strKey[20] = static_cast<char>(~strKey[20]);
       pair.ReplaceKey(strId, strKey);
     }},
    {"ClassWithoutAKey", "no key for its class 12", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       pair.ReplaceKey(strId, pair.KeyOf(strId, 12));
     }},
    {"ClassThatDoesNotExist", "no key for its class 4294967295", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       pair.ReplaceKey(strId, "\xFF\xFF\xFF\xFF" + pair.KeyOf(strId).substr(4));
     }},
    {"KeyOf43Bytes", "key", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       pair.ReplaceKey(strId, pair.KeyOf(strId).substr(0, 43));
     }},
    {"KeyOfAnotherFile", "its padding is invalid", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       pair.ReplaceKey(strId, pair.KeyOf(kMessageStore));
     }},
    {"GarbageForARecord", "its record in the manifest is damaged", true,
     [](const EncryptedPair& pair, const std::string& strId) { pair.DestroyRecord(strId); }},
    {"CutWithinABlock", "is cut short: it doesn't end on a whole block", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       fs::resize_file(pair.PathOf(strId), fs::file_size(pair.PathOf(strId)) - 1);
     }},
    {"CutBetweenBlocks", "is cut short: ", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       fs::resize_file(pair.PathOf(strId), fs::file_size(pair.PathOf(strId)) - 32);
     }},
    {"Emptied", "is cut short: 0 of ", false,
     [](const EncryptedPair& pair, const std::string& strId) { fs::resize_file(pair.PathOf(strId), 0); }},
    {"ReplacedByALink", "is a symbolic link", false,
     [](const EncryptedPair& pair, const std::string& strId) {
       fs::rename(pair.PathOf(strId), pair.Path("elsewhere"));
       fs::create_symlink(pair.Path("elsewhere"), pair.PathOf(strId));
     }},
};

void PrintTo(const Damage& damage, std::ostream* pStream) {
  *pStream << damage.pszName;
}

class DamagedPhoto : public testing::TestWithParam<std::tuple<BackupAge, Damage>> {
 protected:
  void SetUp() override {
    if (Kind().bOnlyManifestDb && m_pair.Age().layout != BackupBuilder::Layout::Db)
      GTEST_SKIP() << "has no records";
    m_photo = m_pair.SomePhoto();
    Kind().pfnDamage(m_pair, m_photo.strId);
  }
  const Damage& Kind() const { return std::get<1>(GetParam()); }

  EncryptedPair m_pair{std::get<0>(GetParam()), 12};
  EncryptedPair::Photo m_photo;
};

INSTANTIATE_TEST_SUITE_P(Ages, DamagedPhoto,
                         testing::Combine(testing::Values(kBackupAges.front(), kBackupAges.back()),
                                          testing::ValuesIn(kDamages)),
                         [](const auto& info) {
                           return std::string(std::get<0>(info.param).pszName) +
                                  std::get<1>(info.param).pszName;
                         });

}  // namespace

TEST_P(DamagedPhoto, FailsByNameInAScan) {
  const CommandResult result = m_pair.Run({"scan", m_pair.Backup()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, AllOf(HasSubstr(m_photo.strDeviceName + ": "), HasSubstr(Kind().pszReason)));
  EXPECT_THAT(result.strErr, Not(HasSubstr("/var/tmp")));
}

TEST_P(DamagedPhoto, IsTheOnlyFileThatIsNotRecovered) {
  ASSERT_TRUE(fs::remove(m_pair.PathIn(m_pair.Plain(), m_photo.strId)));
  const CommandResult plain =
      RunCommand({"recover", m_pair.Plain(), m_pair.Path("plain-out"), "--no-index", "-q"});
  ASSERT_EQ(0, plain.nExitStatus) << plain.strErr;

  const CommandResult result = m_pair.Run({"recover", m_pair.Backup(), m_pair.Path("out"), "--no-index"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.LastLine(), HasSubstr(" recovered, 1 failed, "));
  std::vector<std::string> failed;
  for (const std::string& strLine : result.Lines())
    if (strLine.rfind("Failed\t", 0) == 0) failed.push_back(strLine);
  EXPECT_THAT(failed, testing::ElementsAre(AllOf(StartsWith("Failed\t" + m_photo.strDeviceName + "\t"),
                                                 HasSubstr(Kind().pszReason))));
  ExpectSameTree(RecoveredTree(m_pair.Path("plain-out")), RecoveredTree(m_pair.Path("out")));
}

TEST_P(DamagedPhoto, IsNotMentionedIfItIsNotWanted) {
  const CommandResult result =
      m_pair.Run({"recover", m_pair.Backup(), m_pair.Path("out"), "--no-index", "--only", "Notes"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  EXPECT_THAT(result.strOut, Not(HasSubstr(m_photo.strName)));
  EXPECT_THAT(result.LastLine(), HasSubstr(" 0 failed, "));
  EXPECT_THAT(result.LastLine(), Not(StartsWith("0 recovered")));
}

namespace {

class MissingPhoto : public testing::TestWithParam<BackupAge> {};

INSTANTIATE_TEST_SUITE_P(Ages, MissingPhoto, testing::ValuesIn(kBackupAges), NameOfAge);

}  // namespace

TEST_P(MissingPhoto, IsPassedOverAsInAPlainBackup) {
  const EncryptedPair pair(GetParam());
  const EncryptedPair::Photo photo = pair.SomePhoto();
  ASSERT_TRUE(fs::remove(pair.PathOf(photo.strId)));
  ASSERT_TRUE(fs::remove(pair.PathIn(pair.Plain(), photo.strId)));
  const CommandResult plain = RunCommand({"recover", pair.Plain(), pair.Path("plain-out"), "--no-index"});

  const CommandResult result = pair.Run({"recover", pair.Backup(), pair.Path("out"), "--no-index"});

  EXPECT_EQ(plain.nExitStatus, result.nExitStatus);
  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(plain.strErr, result.strErr);
  EXPECT_EQ(plain.Lines().size(), result.Lines().size());
  ExpectSameTree(RecoveredTree(pair.Path("plain-out")), RecoveredTree(pair.Path("out")));
}

TEST_P(MissingPhoto, WithADamagedKeyIsPassedOver) {
  const EncryptedPair pair(GetParam());
  const EncryptedPair::Photo photo = pair.SomePhoto();
  ASSERT_TRUE(fs::remove(pair.PathOf(photo.strId)));
  pair.ReplaceKey(photo.strId, pair.KeyOf(photo.strId, 12));

  const CommandResult result = pair.Run({"scan", pair.Backup()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("orvandel-cli: not in the categories: 1 JPG: see orvandel-cli files\n", result.strErr);
}
