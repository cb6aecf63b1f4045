// `orvandel-sample --ios`: usage, reproducible bytes, and scans of what it writes.
#include <gmock/gmock.h>

#include "backup/categories.h"
#include "tests/backup/tree_state.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/sample/written_sample.h"
#include "tests/scan_support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

ToolResult RunSample(const std::vector<std::string>& arguments) {
  const std::string strTool = ToolPath();
  return RunProgram(strTool.substr(0, strTool.rfind('/')) + "/orvandel-sample", arguments);
}

class EachVersion : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Versions, EachVersion,
                         testing::Values(5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));

class ChosenVersion : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Versions, ChosenVersion, testing::Values(5, 9, 10, 13, 17, 18));

bool IsHeic(const std::string& strName) {
  return strName.size() > 5 && strName.substr(strName.size() - 5) == ".HEIC";
}

}  // namespace

TEST_P(ChosenVersion, IsTheSameOnEveryRun) {
  const TemporaryFolder folder;
  const std::string strIos = std::to_string(GetParam());
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
           {}, {"--encrypted", "secret", "--rounds", "20"}, {"--omit-files"}}) {
    const std::string strName = "backup" + std::to_string(more.size());
    for (const char* pszRun : {"one/", "two/"}) {
      std::vector<std::string> arguments = {
          folder.Path(pszRun + strName), "--ios", strIos, "--photos", "12", "--messages", "200"};
      arguments.insert(arguments.end(), more.begin(), more.end());
      ASSERT_EQ(0, RunSample(arguments).nExitStatus);
    }

    auto one = TreeState(folder.Path("one/" + strName)), two = TreeState(folder.Path("two/" + strName));
    EXPECT_GT(one.size(), 100u);
    // Folders have the time of the run.
    for (auto* pTree : {&one, &two})
      for (auto& [strPath, strState] : *pTree)
        if (strState.rfind("16877 ", 0) == 0) strState = "folder";
    EXPECT_TRUE(one == two);
  }
}

TEST_P(EachVersion, IsScannedWithTheExpectedCounts) {
  const WrittenSample sample(GetParam());
  const bool bNew = GetParam() >= 10;
  CIphoneBackupFile session;
  BackupRecords records(session.GetMessageMap());
  const __BACK_FILE_INFO__ info = InfoOf(sample.Path());
  session.Init(&info);
  const std::unique_ptr<IPhoneRecoveryParse> pParser(
      CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&session, RECOVERY_TYPE_LOCAL_BACKUP));

  ASSERT_EQ(0, pParser->Scan(QString()));
  ASSERT_EQ(0, WalkCategories(*pParser, records, nullptr));

  size_t nPhotos = 0;
  for (const std::string& strName : FileNames(records.m_vecCamera)) nPhotos += !IsHeic(strName);
  // Files with non-ASCII names have other identifiers in a flat backup.
  EXPECT_EQ(12u + (bNew ? 2 : 0), nPhotos);
  EXPECT_THAT(records.m_vecPhotoStream, SizeIs(8));
  EXPECT_EQ(bNew ? 11u : 10u, records.m_vecMessageAttachment.size());
  EXPECT_THAT(records.m_vecContact, SizeIs(38));
  EXPECT_THAT(records.m_vecCall, SizeIs(54));
  EXPECT_THAT(records.m_vecNote, SizeIs(15));
  // Conversations are those of handles; own messages in groups have none.
  const Rows found = sample.Messages(
      "select count(*), count(distinct handle_id) from message where handle_id <> 0 and text <> ''");
  size_t nMessages = 0;
  for (const auto& [nHandle, messages] : records.m_mapMessage)
    for (const __MESSAGE_INFO__& message : messages) nMessages += nHandle != 0 && !message.strText.empty();
  EXPECT_GE(nMessages, static_cast<size_t>(std::stoi(found[0][0])) - (GetParam() < 14 ? 0 : 5));
  EXPECT_GE(records.m_mapMessage.size(), static_cast<size_t>(std::stoi(found[0][1])));
  EXPECT_GT(sample.Summary().messages, sample.Options().messages);
}

TEST(IosOption, IsRefusedWhereItContradicts) {
  struct Case {
    std::vector<std::string> arguments;
    const char* pszMessage;
  };
  const Case cases[] = {
      {{"--ios", "4"}, "--ios takes a version from 5 to 18"},
      {{"--ios", "19"}, "--ios takes a version from 5 to 18"},
      {{"--ios", "9.3"}, "--ios takes a version from 5 to 18"},
      {{"--ios", ""}, "--ios takes a version from 5 to 18"},
      {{"--ios", "9", "--layout", "db"}, "--ios 9 doesn't match --layout db"},
      {{"--ios", "10", "--layout", "mbdb"}, "--ios 10 doesn't match --layout mbdb"},
      {{"--ios", "9", "--encrypted", "x", "--age", "10.2"}, "--age 10.2 doesn't match --ios 9"},
      {{"--ios", "11", "--encrypted", "x", "--age", "10.0"}, "--age 10.0 doesn't match --ios 11"},
      {{"--ios", "17", "--encrypted", "x", "--age", "9"}, "--age 9 doesn't match --ios 17"},
  };
  for (const Case& c : cases) {
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {folder.Path("backup")};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());

    const ToolResult result = RunSample(arguments);

    EXPECT_EQ(1, result.nExitStatus) << testing::PrintToString(c.arguments);
    ASSERT_THAT(result.err, Not(IsEmpty()));
    EXPECT_THAT(result.err[0], HasSubstr(c.pszMessage));
    EXPECT_FALSE(Exists(folder.Path("backup")));
  }
}

TEST(IosOption, GoesWithTheAgesOfItsVersion) {
  const TemporaryFolder folder;
  const std::vector<std::string> encrypted = {"--encrypted", "x", "--rounds", "20"};
  struct Case {
    std::vector<std::string> arguments;
    const char* pszVersion;
  };
  const Case cases[] = {{{"--ios", "10", "--age", "10.0", "--layout", "db"}, "10.1.1"},
                        {{"--ios", "10", "--age", "10.2"}, "10.3.3"},
                        {{"--ios", "6", "--age", "9", "--layout", "mbdb"}, "6.1.3"},
                        {{"--ios", "18"}, "18.5"}};
  int nNumber = 0;
  for (const Case& c : cases) {
    const std::string strBackup = folder.Path(std::to_string(++nNumber));
    std::vector<std::string> arguments = {strBackup};
    arguments.insert(arguments.end(), encrypted.begin(), encrypted.end());
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());

    ASSERT_EQ(0, RunSample(arguments).nExitStatus);

    const PlistPtr list = ParseBinaryList(ReadFile(strBackup + "/Manifest.plist"));
    EXPECT_EQ(c.pszVersion, Value(plist_dict_get_item(list.get(), "Lockdown"), "ProductVersion"));
  }
}
