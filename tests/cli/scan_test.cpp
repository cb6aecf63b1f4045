#include <gmock/gmock.h>

#include "sample/demo_backup.h"
#include "sample/stores.h"
#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Layout = BackupBuilder::Layout;

class ScanCommand : public testing::TestWithParam<Layout> {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }

  TemporaryFolder m_folder;
};

std::string NameOf(const testing::TestParamInfo<Layout>& info) {
  return info.param == Layout::Db ? "Db" : "Mbdb";
}

/// A file of the small backup in JSON.
std::string FileJson(const SmallBackup::File& file) {
  const std::string strName = file.strTarget.substr(file.strTarget.rfind('/') + 1);
  return R"({"name":")" + strName + R"(","path":")" + file.strSource + R"(","size":)" +
         std::to_string(file.strBytes.size()) + "}";
}

int FilesOfApps(const QJsonObject& apps) {
  int nFiles = 0;
  for (const QJsonValue& files : apps) nFiles += files.toArray().size();
  return nFiles;
}

}  // namespace

TEST_P(ScanCommand, CountsTheElevenCategoriesInOrder) {
  WriteSmallBackup(Backup(), GetParam());

  const CommandResult result = RunCommand({"scan", Backup()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(),
              ElementsAre("Camera Roll(2)", "Photo Stream(1)", "App Photos(1)", "App Videos(1)", "Message(1)",
                          "Messages Attachments(1)", "Contacts(1)", "Call History(1)", "Notes(1)",
                          "WhatsApp(0)", "WhatsApp Attachments(1)"));
  EXPECT_THAT(result.strErr, IsEmpty());
}

TEST_P(ScanCommand, JsonDescribesTheBackupAndItsManifest) {
  WriteSmallBackup(Backup(), GetParam());

  const QJsonObject json = RunCommand({"scan", Backup(), "--json"}).Object();

  EXPECT_EQ(
      R"({"displayName":"Sample Phone","encrypted":false,"lastBackupDate":"2016-05-01 09:12:33","path":")" +
          Backup() +
          R"(","phoneNumber":"+49 30 901820","productVersionAbove11":false,"serialNumber":"F2LSAMPLE001"})",
      JsonText(json["backup"]));
  EXPECT_EQ("0", JsonText(json["manifestStatus"]));
  EXPECT_EQ("12", JsonText(json["manifestEntries"]));
  EXPECT_EQ(R"({"App Photos":1,"App Videos":1,"Call History":1,"Camera Roll":2,"Contacts":1,"Message":1,)"
            R"("Messages Attachments":1,"Notes":1,"Photo Stream":1,"WhatsApp":0,"WhatsApp Attachments":1})",
            JsonText(json["counts"]));
}

TEST_P(ScanCommand, JsonListsEachFile) {
  const SmallBackup small = WriteSmallBackup(Backup(), GetParam());

  const QJsonObject json = RunCommand({"scan", Backup(), "--json"}).Object();

  EXPECT_EQ("[" + FileJson(small.files[0]) + "," + FileJson(small.files[1]) + "]",
            JsonText(json["cameraRoll"]));
  EXPECT_EQ("[" + FileJson(small.files[2]) + "]", JsonText(json["photoStream"]));
  EXPECT_EQ(R"({"example.Snap":[)" + FileJson(small.files[3]) + "]}", JsonText(json["appPhotos"]));
  EXPECT_EQ(R"({"example.Radio":[)" + FileJson(small.files[4]) + "]}", JsonText(json["appVideos"]));
  EXPECT_EQ("[" + FileJson(small.files[5]) + "]", JsonText(json["whatsappAttachments"]));
  EXPECT_EQ("[" + FileJson(small.files[6]) + "]", JsonText(json["messageAttachments"]));
}

TEST_P(ScanCommand, JsonListsEachRecordOfTheStores) {
  WriteSmallBackup(Backup(), GetParam());
  // Names of calls are found only in the columns of the newer layout.
  const std::string strCaller = GetParam() == Layout::Db ? "ÄnneBerger" : "";

  const QJsonObject json = RunCommand({"scan", Backup(), "--json"}).Object();

  EXPECT_EQ(R"([{"handle":1,"messages":[)"
            R"({"contact":"ÄnneBerger","date":"2016-05-01 09:13:33","fromMe":true,"rowId":2,)"
            R"("sender":"+493023125001","text":"Hallo"},)"
            R"({"contact":"ÄnneBerger","date":"2016-05-01 09:12:33","fromMe":false,"rowId":1,)"
            R"("sender":"+493023125001","text":"Grüß dich"}]}])",
            JsonText(json["messages"]));
  EXPECT_EQ(R"([{"company":"Gärtnerei","email":"aenne@example.net","name":"ÄnneBerger",)"
            R"("phone":"+493023125001","url":"example.net"}])",
            JsonText(json["contacts"]));
  EXPECT_EQ(
      R"([{"address":"+493023125001","answered":1,"date":"2016-05-01 09:12:33","duration":61,"name":")" +
          strCaller + R"("}])",
      JsonText(json["calls"]));
  EXPECT_EQ("[]", JsonText(json["whatsapp"]));
}

TEST_P(ScanCommand, JsonListsTheManifestOnDemand) {
  const SmallBackup small = WriteSmallBackup(Backup(), GetParam());

  const QJsonObject without = RunCommand({"scan", Backup(), "--json"}).Object();
  const QJsonObject with = RunCommand({"scan", Backup(), "--json", "--manifest"}).Object();

  EXPECT_FALSE(without.contains("manifest"));
  const QJsonArray manifest = with["manifest"].toArray();
  ASSERT_EQ(12, manifest.size());
  EXPECT_THAT(JsonText(manifest),
              HasSubstr(R"({"id":")" + small.files[0].strSource.substr(small.files[0].strSource.size() - 40) +
                        R"(","name":"CameraRollDomain-Media/DCIM/100APPLE/IMG_0001.PNG"})"));
}

TEST_P(ScanCommand, CountsOfADemoBackupAgreeWithItsLists) {
  DemoOptions options;
  options.layout = GetParam();
  writeDemoBackup(QString::fromStdString(Backup()), options);

  const QJsonObject json = RunCommand({"scan", Backup(), "--json"}).Object();
  const CommandResult text = RunCommand({"scan", Backup()});

  const auto size = [&](const char* pszKey) { return json[pszKey].toArray().size(); };
  const std::vector<std::pair<std::string, int>> counts = {
      {"Camera Roll", size("cameraRoll")},
      {"Photo Stream", size("photoStream")},
      {"App Photos", FilesOfApps(json["appPhotos"].toObject())},
      {"App Videos", FilesOfApps(json["appVideos"].toObject())},
      {"Message", size("messages")},
      {"Messages Attachments", size("messageAttachments")},
      {"Contacts", size("contacts")},
      {"Call History", size("calls")},
      {"Notes", size("notes")},
      {"WhatsApp", size("whatsapp")},
      {"WhatsApp Attachments", size("whatsappAttachments")}};
  std::vector<std::string> lines;
  for (const auto& [strLabel, nCount] : counts) {
    lines.push_back(strLabel + "(" + std::to_string(nCount) + ")");
    EXPECT_EQ(nCount, json["counts"].toObject()[QString::fromStdString(strLabel)].toInt(-1)) << strLabel;
    if (strLabel != "WhatsApp") {
      EXPECT_GT(nCount, 0) << strLabel;
    }
  }
  EXPECT_THAT(text.Lines(), ElementsAreArray(lines));
}

TEST_P(ScanCommand, LeavesTheBackupUnchanged) {
  DemoOptions options;
  options.layout = GetParam();
  writeDemoBackup(QString::fromStdString(Backup()), options);
  const auto before = TreeOf(Backup());

  const CommandResult result = RunCommand({"scan", Backup(), "--json", "--manifest"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_TRUE(before == TreeOf(Backup()));
}

INSTANTIATE_TEST_SUITE_P(Layouts, ScanCommand, testing::Values(Layout::Mbdb, Layout::Db), NameOf);

TEST(ScanJson, ContainsTheNote) {
  TemporaryFolder folder;
  WriteSmallBackup(folder.Path("backup"), Layout::Db);

  const QJsonObject json = RunCommand({"scan", folder.Path("backup"), "--json"}).Object();

  EXPECT_EQ(R"([{"content":"Brötchen","date":"2016-05-01 09:12:33","title":"Einkauf"}])",
            JsonText(json["notes"]));
}

TEST(ScanText, StaysUtf8InALocaleWithoutEncoding) {
  TemporaryFolder folder;
  WriteSmallBackup(folder.Path("backup"), Layout::Db);
  const CommandResult expected = RunCommand({"scan", folder.Path("backup"), "--json"});

  const CommandResult result = RunCommand({"scan", folder.Path("backup"), "--json"}, {"LANG=C", "LC_ALL=C"});

  EXPECT_THAT(result.strOut, HasSubstr("Grüß dich"));
  EXPECT_EQ(expected.strOut, result.strOut);
}

TEST(ScanCommandAlone, EncryptedBackupExitsWithThree) {
  TemporaryFolder folder;
  const std::string strBackup = folder.Path("backup");
  WriteSmallBackup(strBackup, Layout::Db);
  WriteFile(StorePathIn(strBackup, Layout::Db, store_places::contacts()), "cipher text");

  const CommandResult result = RunCommand({"scan", strBackup});

  EXPECT_EQ(3, result.nExitStatus);
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr(strBackup + ": the backup is encrypted"));
}
