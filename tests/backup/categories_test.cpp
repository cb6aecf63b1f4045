#include "backup/categories.h"

#include <gmock/gmock.h>

#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

struct CategoryCase {
  CategoryNumber nNumber;
  const char* pszLabel;
  const char* pszFolder;  // null for documents
  size_t nCount;          // of RecordsOfEveryKind()
};

void PrintTo(const CategoryCase& one, std::ostream* pStream) {
  *pStream << static_cast<int>(one.nNumber);
}

class CategoryRow : public testing::TestWithParam<CategoryCase> {};

/// A parser that fills every list and returns configured answers.
class ScriptedParser : public CLocalBuckupRecovery {
 public:
  std::vector<std::string> calls;
  std::map<std::string, int> answers;  // 0 for those that aren't named

  int GetCameraFilePath(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                        std::vector<_IPHONE_CAMERA_INFO_>& photoStream) override {
    camera.resize(1);
    photoStream.resize(2);
    return Answer("camera");
  }
  int GetIPhoneMessageInfo(MessageMap& messages) override {
    return messages[1].resize(9), Answer("messages");
  }
  int GetAttachmentsFilePath(std::vector<_IPHONE_ATTACHMENTS_>& v) override {
    return v.resize(4), Answer("attachments");
  }
  int GetIPhonePersonContent(std::vector<__PERSON_CONTENT__>& v) override {
    return v.resize(5), Answer("contacts");
  }
  int GetIPhoneHistoryCallInfo(std::vector<__CALLHISTORY__>& v) override {
    return v.resize(6), Answer("calls");
  }
  int GetIPhoneNotes(std::vector<__NOTES__>& v) override { return v.resize(7), Answer("notes"); }
  int GetAppFilePath(std::vector<_IPHONE_APP_FILE_INFO_>& v) override {
    v = {{1, "Snap", "a.JPG", u""}, {1, "Snap", "b.MOV", u""}, {1, "Snap", "c.WAV", u""}};
    return Answer("apps");
  }
  int GetWhatsappMessageInfo(WhatsAppMap&) override { return Answer("chats"); }
  int GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& v) override {
    return v.resize(8), Answer("chat attachments");
  }

 private:
  int Answer(const std::string& strCall) {
    calls.push_back(strCall);
    const auto it = answers.find(strCall);
    return it == answers.end() ? 0 : it->second;
  }
};

class CategoryWalk : public testing::Test {
 protected:
  int Walk() {
    return WalkCategories(m_parser, m_records, [&](const Category& category) {
      m_after.push_back(CategoryLabel(category, category.pfnCount(m_records)));
    });
  }

  MessageMap m_messages;
  BackupRecords m_records{m_messages};
  ScriptedParser m_parser;
  std::vector<std::string> m_after;
};

}  // namespace

TEST_P(CategoryRow, HasItsLabelFolderAndCount) {
  MessageMap messages;
  messages[3].resize(10);
  messages[4].resize(10);
  BackupRecords records(messages);
  records.m_vecCamera.resize(11);
  records.m_vecPhotoStream.resize(12);
  records.m_vecAppFile.resize(99);
  records.m_nAppPhotoCount = 13;
  records.m_nAppVideoCount = 14;
  records.m_vecMessageAttachment.resize(15);
  records.m_vecContact.resize(16);
  records.m_vecCall.resize(17);
  records.m_vecNote.resize(18);
  records.m_mapWhatsApp[1].resize(10);
  records.m_vecWhatsAppAttachment.resize(19);

  const Category& category = Categories()[static_cast<size_t>(GetParam().nNumber)];

  EXPECT_EQ(GetParam().nNumber, category.nNumber);
  EXPECT_STREQ(GetParam().pszLabel, category.pszLabel);
  EXPECT_STREQ(GetParam().pszFolder, category.pszFolder);
  EXPECT_EQ(GetParam().nCount, category.pfnCount(records));
  EXPECT_EQ(GetParam().pszLabel + std::string("(0)"), CategoryLabel(category, 0));
  EXPECT_EQ(GetParam().pszLabel + std::string("(1234)"), CategoryLabel(category, 1234));
}

INSTANTIATE_TEST_SUITE_P(
    Table, CategoryRow,
    testing::Values(CategoryCase{kCameraRoll, "Camera Roll", "/Camera Roll/", 11},
                    CategoryCase{kPhotoStream, "Photo Stream", "/Photo Stream/", 12},
                    CategoryCase{kAppPhotos, "App Photos", "/App Photos/", 13},
                    CategoryCase{kAppVideos, "App Videos", "/App Video/", 14},
                    CategoryCase{kMessages, "Message", nullptr, 2},
                    CategoryCase{kMessageAttachments, "Messages Attachments", "/Message Attachments/", 15},
                    CategoryCase{kContacts, "Contacts", nullptr, 16},
                    CategoryCase{kCallHistory, "Call History", nullptr, 17},
                    CategoryCase{kNotes, "Notes", nullptr, 18},
                    CategoryCase{kWhatsApp, "WhatsApp", nullptr, 1},
                    CategoryCase{kWhatsAppAttachments, "WhatsApp Attachments", "/WhatsApp Attachments/", 19}),
    [](const auto& info) { return "Number" + std::to_string(info.param.nNumber); });

TEST_F(CategoryWalk, RunsTheStepsInTheFixedOrderAndReportsEachCategory) {
  const int nStatus = Walk();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_parser.calls, ElementsAre("camera", "messages", "attachments", "contacts", "calls", "notes",
                                          "apps", "chats", "chat attachments"));
  EXPECT_THAT(m_after,
              ElementsAre("Camera Roll(1)", "Photo Stream(2)", "Message(1)", "Messages Attachments(4)",
                          "Contacts(5)", "Call History(6)", "Notes(7)", "App Photos(1)", "App Videos(2)",
                          "WhatsApp(0)", "WhatsApp Attachments(8)"));
}

TEST_F(CategoryWalk, WorksWithoutACallback) {
  const int nStatus = WalkCategories(m_parser, m_records, nullptr);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_records.m_vecWhatsAppAttachment, SizeIs(8));
  EXPECT_THAT(m_records.m_mapAppPhotoFiles["Snap"], SizeIs(1));
  EXPECT_THAT(m_records.m_mapAppVideoFiles["Snap"], SizeIs(2));
}

TEST_F(CategoryWalk, AnswerTwoEndsItAndLeavesTheLaterCategories) {
  m_parser.answers = {{"contacts", 2}};

  const int nStatus = Walk();

  EXPECT_EQ(2, nStatus);
  EXPECT_THAT(m_parser.calls, ElementsAre("camera", "messages", "attachments", "contacts"));
  EXPECT_THAT(m_after, SizeIs(4));
  EXPECT_THAT(m_records.m_vecCall, IsEmpty());
}

TEST_F(CategoryWalk, AnswerTwoOfTheAppFilesLeavesThemUngrouped) {
  m_parser.answers = {{"apps", 2}};

  const int nStatus = Walk();

  EXPECT_EQ(2, nStatus);
  EXPECT_EQ(0, m_records.m_nAppPhotoCount);
  EXPECT_THAT(m_records.m_mapAppPhotoFiles, IsEmpty());
}

TEST_F(CategoryWalk, AppFilesAreGroupedAfterACancelToo) {
  m_parser.answers = {{"apps", 1}};

  Walk();

  EXPECT_EQ(1, m_records.m_nAppPhotoCount);
  EXPECT_THAT(m_records.m_mapAppPhotoFiles, SizeIs(1));
}

TEST_F(CategoryWalk, OtherAnswersDoNotEndIt) {
  for (const char* pszCall : {"camera", "messages", "attachments", "contacts"}) m_parser.answers[pszCall] = 1;
  m_parser.answers["notes"] = 87;
  m_parser.answers["chats"] = -1;

  const int nStatus = Walk();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_after, SizeIs(11));
}

TEST_F(CategoryWalk, ResultIsTheLastStepsAnswer) {
  m_parser.answers = {{"camera", 87}, {"chat attachments", 1}};

  const int nStatus = Walk();

  EXPECT_EQ(1, nStatus);
  EXPECT_THAT(m_after, SizeIs(11));
}
