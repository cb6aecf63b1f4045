// What "scan" and "recover" say of the content that is in no category.
#include <gmock/gmock.h>

#include "sample/pictures.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr qint64 kDate = 483786753;  // 2016-05-01T09:12:33Z, in seconds from 2001-01-01
constexpr char kFilesLine[] =
    "orvandel-cli: not in the categories: 3 HEIC, 1 DNG, 1 WEBM: see orvandel-cli files";
constexpr char kRest[] = "; 2 messages without a sender";
constexpr char kNote[] = "; 1 note of which only the beginning is read";

class LeftOutOfAnyAge : public testing::TestWithParam<AnyAge> {
 protected:
  void SetUp() override {
    const QByteArray unknown(2000, 'x');
    BackupBuilder backup(QString::fromStdString(Backup()), GetParam().age.layout);
    if (GetParam().bEncrypted) backup.encrypt({kPassword, GetParam().age.age, 20, 1});
    backup.writeInfo({});
    backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.HEIC", unknown);
    backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0002.JPG", sample_media::jpeg(1, 64, 48));
    backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0003.AAE", unknown);
    backup.addFile("MediaDomain", "Media/PhotoStreamsData/1/IMG_0004.DNG", unknown);
    backup.addFile("MediaDomain", "Library/SMS/Attachments/0a/10/a.heic", unknown);
    backup.addFile("AppDomain-com.example.Snap", "Documents/Attachments/b.heic", unknown);
    backup.addFile("AppDomain-net.whatsapp.WhatsApp", "Library/Media/c.webm", unknown);
    backup.addEntry("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0009.HEIC");
    AddStores(backup);
    backup.finish();
  }

  void AddStores(BackupBuilder& backup) const {
    const auto reserve = [&](const StorePlace& place) {
      return backup.reserveFile(place.domain, place.relativePath);
    };
    MessageStore messages(reserve(store_places::messages()));
    const qint64 nChat = messages.addChat("chat1");
    messages.addMessage(messages.addHandle("+493023125001"), "read", kDate, false, {nChat});
    messages.addMessage(0, "mine", kDate, true, {nChat});
    messages.addMessage(0, "mine too", kDate, true, {nChat});
    messages.close();
    NotesCloudStore notes(reserve(store_places::notesCloud()));
    notes.add(kDate, "Shopping", "Milk");
    notes.run("update ZICNOTEDATA set ZDATA = ?", {QByteArray("body")});
    notes.close();
  }

  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }
  CommandResult Run(const std::vector<std::string>& arguments) const {
    return RunWithPassword(m_folder.Path(), arguments);
  }
  CommandResult RecoverOnly(const std::string& strLabels) const {
    return Run({"recover", Backup(), Out(), "--only", strLabels});
  }

  TemporaryFolder m_folder;
};

INSTANTIATE_TEST_SUITE_P(Ages, LeftOutOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);

}  // namespace

TEST_P(LeftOutOfAnyAge, IsOneLineOfAScan) {
  const CommandResult result = Run({"scan", Backup(), "--quiet"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(ErrorLines(result), ElementsAre(std::string(kFilesLine) + kRest + kNote));
  EXPECT_THAT(result.strOut, Not(HasSubstr("HEIC")));
}

TEST_P(LeftOutOfAnyAge, IsAMemberOfTheJsonOfAScan) {
  const CommandResult result = Run({"scan", Backup(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(R"({"files":{"DNG":1,"HEIC":3,"WEBM":1},"messagesWithoutSender":2,"notesWithSnippetOnly":1})",
            JsonText(result.Object()["leftOut"]));
}

TEST_P(LeftOutOfAnyAge, IsTheLastLineAndInTheTotalsOfARecovery) {
  const CommandResult result = Run({"recover", Backup(), Out(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(ErrorLines(result), ElementsAre(std::string(kFilesLine) + kRest + kNote));
  EXPECT_THAT(result.LastLine(),
              HasSubstr(R"("leftOut":{"files":{"DNG":1,"HEIC":3,"WEBM":1},"messagesWithoutSender":2,)"
                        R"("notesWithSnippetOnly":1})"));
}

TEST_P(LeftOutOfAnyAge, IsThatOfTheWantedCategories) {
  const std::string strStart = "orvandel-cli: not in the categories: ";
  const std::string strEnd = ": see orvandel-cli files";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Camera Roll", strStart + "1 HEIC" + strEnd},
      {"Photo Stream", strStart + "1 DNG" + strEnd},
      {"App Photos", strStart + "1 HEIC" + strEnd},
      {"Messages Attachments", strStart + "2 HEIC" + strEnd},  // one of them is an app's too
      {"App Photos,Messages Attachments", strStart + "2 HEIC" + strEnd},
      {"WhatsApp Attachments", strStart + "1 WEBM" + strEnd},
      {"Message", strStart + "2 messages without a sender"},
      {"Notes", strStart + "1 note of which only the beginning is read"}};
  for (const auto& [strLabels, strLine] : cases)
    EXPECT_THAT(ErrorLines(RecoverOnly(strLabels)), ElementsAre(strLine)) << strLabels;
  EXPECT_THAT(RecoverOnly("App Videos,Contacts,Call History,WhatsApp").strErr, IsEmpty());
}

TEST(LeftOut, IsAbsentIfEverythingIsInACategory) {
  for (const BackupBuilder::Layout layout : {BackupBuilder::Layout::Mbdb, BackupBuilder::Layout::Db}) {
    TemporaryFolder folder;
    WriteSmallBackup(folder.Path("backup"), layout);

    const CommandResult scan = RunCommand({"scan", folder.Path("backup"), "--json"});
    const CommandResult recovery =
        RunCommand({"recover", folder.Path("backup"), folder.Path("out"), "--json"});

    EXPECT_THAT(scan.strErr + recovery.strErr, IsEmpty());
    EXPECT_THAT(scan.strOut + recovery.strOut, Not(HasSubstr("leftOut")));
  }
}

TEST(LeftOut, OfNotesIsNothingIfTheOlderStoreWasRead) {
  TemporaryFolder folder;
  BackupBuilder backup(QString::fromStdString(folder.Path("backup")), BackupBuilder::Layout::Mbdb);
  backup.writeInfo({});
  NotesStore notes(backup.reserveFile(store_places::notes().domain, store_places::notes().relativePath));
  notes.add(kDate, "Shopping", "Milk");
  notes.close();
  NotesCloudStore cloud(
      backup.reserveFile(store_places::notesCloud().domain, store_places::notesCloud().relativePath));
  cloud.add(kDate, "Shopping", "Milk");
  cloud.run("update ZICNOTEDATA set ZDATA = ?", {QByteArray("body")});
  cloud.close();
  backup.finish();

  EXPECT_THAT(RunCommand({"scan", folder.Path("backup")}).strErr, IsEmpty());
}
