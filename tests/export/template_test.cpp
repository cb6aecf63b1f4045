#include <QDateTime>
#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// A kind of page: its template, its title without the phone's name, and a function that writes one without
/// rows.
struct PageKind {
  const char* pszTemplate;
  const char* pszTitle;
  void (*pfnWrite)(CRecovery& recovery);
};

void PrintTo(const PageKind& page, std::ostream* pStream) {
  *pStream << page.pszTemplate;
}

const PageKind kCallPage = {"CallHistory", "iPhone's Call History of ",
                            [](CRecovery& recovery) { recovery.SaveCallHistory(); }};
const PageKind kNotesPage = {"Notes", "iPhone's Notes of ",
                             [](CRecovery& recovery) { recovery.SaveNotes(); }};
const PageKind kContactsPage = {"contacts", "iPhone's Contacts of ",
                                [](CRecovery& recovery) { recovery.SaveContacts(); }};
const PageKind kMessagePage = {"Sms", "iPhone's Messages of ", [](CRecovery& recovery) {
                                 const __MESSAGE_INFO__ message = Message(kReceived, "");
                                 recovery.RecoveryMsg(&message, {});
                               }};
const PageKind kChatPage = {"WhatsApp", "iPhone's WhatsApp Messages of ", [](CRecovery& recovery) {
                              const __WHATSAPP_MESSAGE__ message = ChatMessage(kReceived, "");
                              recovery.RecoveryWhatsAppMsg(&message, {});
                            }};

std::string NameOfPage(const testing::TestParamInfo<PageKind>& info) {
  return info.param.pszTemplate;
}

class TemplateOf : public RecoveryTest, public testing::WithParamInterface<PageKind> {
 protected:
  /// Content of a page without rows, the last of the documents of its kind.
  std::string Page(const PageKind& page) {
    page.pfnWrite(m_recovery);
    return m_told.empty() ? "nothing was written" : ReadFile(ToNarrow(m_told.back().qstrPath));
  }
  std::string Page() { return Page(GetParam()); }
};

class TemplateOfTable : public TemplateOf {};
class TemplateOfConversation : public TemplateOf {};
class TemplatesOfARecovery : public RecoveryTest {};

}  // namespace

TEST_P(TemplateOf, GetsTheTitleWithTheNameOfThePhone) {
  WriteTemplate(GetParam().pszTemplate, "<h1>{|title|}</h1>\r\n{|content|}\r\n<end>");

  Begin();

  EXPECT_EQ(std::string("<h1>") + GetParam().pszTitle + "Ann's phone</h1>\r\n\r\n<end>", Page());
}

TEST_P(TemplateOf, TitleOfAPhoneWithoutANameEndsInOf) {
  UseBackup(m_folder.Path("backup"), "");
  WriteTemplate(GetParam().pszTemplate, "[{|title|}]{|content|}");

  Begin();

  EXPECT_EQ(std::string("[") + GetParam().pszTitle + "]", Page());
}

TEST_P(TemplateOf, EveryTitleInFrontOfTheContentIsReplacedAndNoneBehind) {
  WriteTemplate(GetParam().pszTemplate, "{|title|},{|title|};{|content|};{|title|}");
  const std::string strTitle = GetParam().pszTitle + std::string("Ann's phone");

  Begin();

  EXPECT_EQ(strTitle + "," + strTitle + ";;{|title|}", Page());
}

TEST_P(TemplateOf, TitleThatHoldsTheTokensIsNotReplacedAgain) {
  UseBackup(m_folder.Path("backup"), "{|title|} and {|content|}");
  WriteTemplate(GetParam().pszTemplate, "{|title|}.{|title|}.{|content|}end");
  const std::string strTitle = GetParam().pszTitle + std::string("{|title|} and {|content|}");

  Begin();

  EXPECT_EQ(strTitle + "." + strTitle + ".end", Page());
}

TEST_P(TemplateOf, FirstContentTokenAloneCounts) {
  WriteTemplate(GetParam().pszTemplate, "a{|content|}b{|content|}c");

  Begin();

  EXPECT_EQ("ab{|content|}c", Page());
}

TEST_P(TemplateOf, NothingButTheTokenGivesAnEmptyPage) {
  WriteTemplate(GetParam().pszTemplate, "{|content|}");

  Begin();

  EXPECT_EQ("", Page());
}

TEST_P(TemplateOf, BytesAreKeptAsTheyAre) {
  const std::string strHead("\xEF\xBB\xBF\0\xE4\r\n\n\xFF", 9);
  const std::string strTail("\0\r\xC3", 3);
  WriteTemplate(GetParam().pszTemplate, strHead + "{|content|}" + strTail);

  Begin();

  EXPECT_EQ(strHead + strTail, Page());
}

TEST_P(TemplateOf, ThatIsMissingLeavesThePageEmptyAndIsNamed) {
  const ProblemRecorder recorder;
  std::filesystem::remove(TemplatePath(GetParam().pszTemplate));

  Begin();

  EXPECT_EQ("", Page());
  ASSERT_THAT(recorder.Problems(), SizeIs(1));
  EXPECT_EQ(TemplatePath(GetParam().pszTemplate), recorder.Problems()[0].strFile);
  EXPECT_THAT(recorder.Problems()[0].strReason, HasSubstr("No such file"));
}

TEST_P(TemplateOf, ThatLacksTheContentTokenThrowsWithItsName) {
  for (const char* pszBytes : {"", "<html>", "{|title|}", "{|content|", "{content}", "{|CONTENT|}"}) {
    WriteTemplate(GetParam().pszTemplate, pszBytes);
    CRecovery recovery(FromNarrow(m_folder.Path("program")));
    std::string strMessage = "nothing was thrown";

    try {
      Begin(recovery, Out());
    } catch (const std::out_of_range& error) {
      strMessage = error.what();
    }

    EXPECT_THAT(strMessage, HasSubstr(TemplatePath(GetParam().pszTemplate))) << '"' << pszBytes << '"';
  }
}

TEST_P(TemplateOf, ThatIsLoadedIsNotReadAgain) {
  WriteTemplate(GetParam().pszTemplate, "old{|content|}");
  Begin();
  WriteTemplate(GetParam().pszTemplate, "new{|content|}");

  const int nStatus =
      m_recovery.LoadTemplateFile(("/template/" + std::string(GetParam().pszTemplate) + ".html").c_str());

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("old", Page());
}

INSTANTIATE_TEST_SUITE_P(Pages, TemplateOf,
                         testing::Values(kCallPage, kNotesPage, kContactsPage, kMessagePage, kChatPage),
                         NameOfPage);

TEST_P(TemplateOfTable, KeepsThePersonToken) {
  WriteTemplate(GetParam().pszTemplate, "{|person|}{|content|}");

  Begin();

  EXPECT_EQ("{|person|}", Page());
}

INSTANTIATE_TEST_SUITE_P(Pages, TemplateOfTable, testing::Values(kCallPage, kNotesPage, kContactsPage),
                         NameOfPage);

TEST_P(TemplateOfConversation, GetsThePersonInFrontOfTheContentAlone) {
  WriteTemplate(GetParam().pszTemplate, "{|person|},{|person|};{|content|}{|person|}");
  const std::string strPerson = GetParam().pszTemplate == std::string("Sms") ? "Name: Ann Lee, Phone: +49301"
                                                                             : "Name: Ann, Phone: +49302";

  Begin();

  EXPECT_EQ(strPerson + "," + strPerson + ";{|person|}", Page());
}

TEST_P(TemplateOfConversation, GetsThePersonOfEachPageAnew) {
  WriteTemplate(GetParam().pszTemplate, "{|person|}{|content|}");
  Begin();

  const std::string strFirst = Page();
  const std::string strSecond = Page();

  EXPECT_EQ(strFirst, strSecond);
  EXPECT_THAT(strFirst, HasSubstr("Name: "));
}

INSTANTIATE_TEST_SUITE_P(Pages, TemplateOfConversation, testing::Values(kMessagePage, kChatPage), NameOfPage);

TEST_F(TemplatesOfARecovery, StatusOfATemplateIsTheSystemsErrorNumber) {
  Begin();
  std::filesystem::remove(TemplatePath("Notes"));

  EXPECT_EQ(ENOENT, m_recovery.LoadTemplateFile("/template/Notes.html"));
  EXPECT_EQ(ENOENT, m_recovery.LoadTemplateFile("/template/Other.html"));
  EXPECT_EQ(0, m_recovery.LoadTemplateFile("/template/Sms.html"));
}

TEST_F(TemplatesOfARecovery, AnotherNameDoesNothing) {
  Begin();
  WriteTemplate("Contacts", "no token at all");
  WriteTemplate("Other", "no token at all");

  EXPECT_EQ(0, m_recovery.LoadTemplateFile("/template/Contacts.html"));
  EXPECT_EQ(0, m_recovery.LoadTemplateFile("/template/Other.html"));
  EXPECT_EQ(0, m_recovery.SaveContacts());
  EXPECT_EQ("<head>\n<tail>\n", ReadFile(Written().back()));
}

TEST_F(TemplatesOfARecovery, StatusOfAllIsThatOfTheLast) {
  Begin();
  std::filesystem::remove(TemplatePath("Sms"));
  const int nWithoutMessages = m_recovery.LoadAllTemplateFile();
  std::filesystem::remove(TemplatePath("WhatsApp"));

  const int nWithoutChats = m_recovery.LoadAllTemplateFile();

  EXPECT_EQ(0, nWithoutMessages);
  EXPECT_EQ(ENOENT, nWithoutChats);
}

TEST_F(TemplatesOfARecovery, AreReadInAFixedOrder) {
  const ProblemRecorder recorder;
  std::filesystem::remove_all(m_folder.Path("program/template"));

  Begin();

  std::vector<std::string> files;
  for (const ProblemRecorder::Problem& problem : recorder.Problems()) files.push_back(problem.strFile);
  EXPECT_THAT(files, ElementsAre(TemplatePath("CallHistory"), TemplatePath("Notes"), TemplatePath("contacts"),
                                 TemplatePath("Sms"), TemplatePath("WhatsApp")));
}

TEST_F(TemplatesOfARecovery, WithoutAnyThePagesHaveRowsAlone) {
  std::filesystem::remove_all(m_folder.Path("program/template"));
  Begin();
  const __NOTES__ note = Note("Milk", "two");

  m_recovery.RecoveryNotes(&note);
  m_recovery.SaveNotes();

  EXPECT_EQ("\t<tr><td>Milk</td><td>2014-01-01 00:00:00</td><td>two</td></tr>\r\n",
            ReadFile(Out() + "/Notes/Notes_" + Stamp() + ".html"));
}

TEST_F(TemplatesOfARecovery, ThePersonMayStandInTheNameOfThePhone) {
  UseBackup(m_folder.Path("backup"), "{|person|}");
  WriteTemplate("Sms", "{|title|}{|content|}");
  Begin();
  const __MESSAGE_INFO__ message = Message(kReceived, "", 0, "{|person|}");

  m_recovery.RecoveryMsg(&message, {});

  EXPECT_EQ("iPhone's Messages of Name: {|person|}, Phone: +49301", ReadFile(Written().back()));
}

TEST_F(TemplatesOfARecovery, StampIsTheLocalTimeOfTheBeginning) {
  const QString qstrBefore = QDateTime::currentDateTime().toString("yyyyMMddhhmmss");

  Begin();

  const QString qstrAfter = QDateTime::currentDateTime().toString("yyyyMMddhhmmss");
  EXPECT_EQ(14u, Stamp().size());
  EXPECT_LE(ToNarrow(qstrBefore), Stamp());
  EXPECT_LE(Stamp(), ToNarrow(qstrAfter));
}

TEST_F(TemplatesOfARecovery, BeginningWritesNothing) {
  Begin();

  EXPECT_FALSE(Exists(Out()));
  EXPECT_THAT(m_told, IsEmpty());
}
