#include <cerrno>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class ChatExport : public RecoveryTest {
 protected:
  void Recover(const std::vector<__WHATSAPP_MESSAGE__>& messages) {
    const WhatsAppMap map = {{kHandle, messages}};
    m_recovery.RecoveryWhatsAppMsg(&messages.front(), map);
  }

  /// Path of a document of the chat that messages have by default.
  std::string Document(const std::string& strEnd) const {
    return Out() + "/WhatsApp Message/Ann(+49302)-" + Stamp() + "/Ann(+49302)" + strEnd;
  }
};

struct LabelCase {
  const char* pszName;  ///< of the case
  const char* pszChatName;
  const char* pszChatPhone;
  const char* pszChatTitle;
  const char* pszLabel;
};

void PrintTo(const LabelCase& label, std::ostream* pStream) {
  *pStream << '"' << label.pszChatName << "\", \"" << label.pszChatPhone << "\", \"" << label.pszChatTitle
           << '"';
}

class ChatLabel : public ChatExport, public testing::WithParamInterface<LabelCase> {};

struct WriterCase {
  const char* pszName;
  const char* pszWriter;
  const char* pszPhone;
  const char* pszInText;
  const char* pszInPage;
};

void PrintTo(const WriterCase& writer, std::ostream* pStream) {
  *pStream << '"' << writer.pszWriter << "\", \"" << writer.pszPhone << '"';
}

class ChatWriter : public ChatExport, public testing::WithParamInterface<WriterCase> {};

struct PathCase {
  const char* pszName;
  const char* pszPath;  ///< below the folder of the test, or from the root
  int nStatus;
};

void PrintTo(const PathCase& path, std::ostream* pStream) {
  *pStream << path.pszPath;
}

class ChatStatus : public ChatExport, public testing::WithParamInterface<PathCase> {};

}  // namespace

TEST_F(ChatExport, TextFileHasThreeLinesForEachMessage) {
  Begin();

  Recover({ChatMessage(kSent, "later"), ChatMessage(kReceived, "hello")});

  EXPECT_EQ(
      "        To: Ann Lee(+49301)\n"
      "      Data: 2014-01-01 00:00:00\n"
      "   Content: later\n"
      "\n"
      "      From: Ann Lee(+49301)\n"
      "      Data: 2014-01-01 00:00:00\n"
      "   Content: hello\n"
      "\n",
      ReadFile(Document(".txt")));
}

TEST_F(ChatExport, CsvHasAHeaderAndALineForEachMessage) {
  Begin();

  Recover({ChatMessage(kSent, "later"), ChatMessage(kReceived, "hello", 1)});

  EXPECT_EQ(
      "Chats,Name/Phone,Date,Type,Content\n"
      "Ann Lee,+49301,2014-01-01 00:00:00,Send,later\n"
      "Ann Lee,+49301,2014-01-01 00:00:00,Received,hello\n",
      ReadFile(Document(".csv")));
}

TEST_F(ChatExport, CsvQuotesNothing) {
  Begin();

  Recover({ChatMessage(kReceived, "a,\"b\"\nc %s;\xFF", 0, "Lee, Ann", "")});

  EXPECT_EQ(
      "Chats,Name/Phone,Date,Type,Content\n"
      "Lee, Ann,,2014-01-01 00:00:00,Received,a,\"b\"\nc %s;\xFF\n",
      ReadFile(Document(".csv")));
}

TEST_F(ChatExport, CsvKeepsTheNameUnknown) {
  Begin();

  Recover({ChatMessage(kReceived, "hello", 0, "Unknown", "+1")});

  EXPECT_EQ("Chats,Name/Phone,Date,Type,Content\nUnknown,+1,2014-01-01 00:00:00,Received,hello\n",
            ReadFile(Document(".csv")));
}

TEST_F(ChatExport, PageHasTheRowsAndClassesOfMessages) {
  WriteTemplate("WhatsApp", "{|title|}\r\n{|person|}\r\n{|content|}<end>\n");
  Begin();

  Recover({ChatMessage(kReceived, "1"), ChatMessage(kReceived, "2", 1), ChatMessage(kSent, "3"),
           ChatMessage(kSent, "4", 1)});

  EXPECT_EQ(
      "iPhone's WhatsApp Messages of Ann's phone\r\n"
      "Name: Ann, Phone: +49302\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
      "<div class=\"recv_msg\">1</div>\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
      "<div class=\"del_recv_msg\">2</div>\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Me:</div>\r\n"
      "<div class=\"send_msg\">3</div>\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Me:</div>\r\n"
      "<div class=\"del_send_msg\">4</div>\r\n"
      "<end>\n",
      ReadFile(Document(".html")));
}

TEST_F(ChatExport, DocumentsAreReportedInTheOrderTextCsvPage) {
  Begin();

  Recover({ChatMessage(kReceived, "hello")});

  EXPECT_THAT(Written(), ElementsAre(Document(".txt"), Document(".csv"), Document(".html")));
  EXPECT_THAT(Failed(), IsEmpty());
}

TEST_P(ChatLabel, NamesTheFolderAndItsDocuments) {
  WriteTemplate("WhatsApp", "{|person|}{|content|}");
  Begin();
  __WHATSAPP_MESSAGE__ message = ChatMessage(kReceived, "hello");
  message.strChatName = GetParam().pszChatName;
  message.strChatPhone = GetParam().pszChatPhone;
  message.strChatTitle = GetParam().pszChatTitle;
  const std::string strLabel = GetParam().pszLabel;
  const std::string strStem = Out() + "/WhatsApp Message/" + strLabel + "-" + Stamp() + "/" + strLabel;

  Recover({message});

  EXPECT_THAT(Written(), ElementsAre(strStem + ".txt", strStem + ".csv", strStem + ".html"));
  EXPECT_THAT(ReadFile(strStem + ".html"),
              StartsWith("Name: " + message.strChatName + ", Phone: " + message.strChatPhone + "<div"));
}

INSTANTIATE_TEST_SUITE_P(Chats, ChatLabel,
                         testing::Values(LabelCase{"NameAndNumber", "Ann", "+49", "Title", "Ann(+49)"},
                                         LabelCase{"NumberAlone", "", "+49", "Title", "+49"},
                                         LabelCase{"NameAlone", "Ann", "", "", "Ann()"},
                                         LabelCase{"Neither", "", "", "Title", "Unknown"},
                                         LabelCase{"Group", "Ann,Bob", "+49", "Hikers", "Hikers"},
                                         LabelCase{"GroupWithoutTitle", "Ann,Bob", "+49", "", "Unknown"},
                                         LabelCase{"CommaAlone", ",", "", "Hikers", "Hikers"},
                                         LabelCase{"CommaInTheNumberAlone", "Ann", "+4,9", "Hikers",
                                                   "Ann(+4,9)"},
                                         LabelCase{"CommaInTheTitle", "Ann,Bob", "", "A, B", "A, B"}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_P(ChatWriter, IsNamedByEachDocumentInItsOwnWay) {
  Begin();

  Recover({ChatMessage(kReceived, "hello", 0, GetParam().pszWriter, GetParam().pszPhone)});

  EXPECT_THAT(ReadFile(Document(".txt")),
              StartsWith(std::string("      From: ") + GetParam().pszInText + "\n"));
  EXPECT_THAT(ReadFile(Document(".html")),
              HasSubstr(std::string("Date: 2014-01-01 00:00:00 ") + GetParam().pszInPage + ":</div>"));
  EXPECT_THAT(ReadFile(Document(".csv")),
              HasSubstr(std::string("\n") + GetParam().pszWriter + "," + GetParam().pszPhone + ","));
}

INSTANTIATE_TEST_SUITE_P(Writers, ChatWriter,
                         testing::Values(WriterCase{"NameAndNumber", "Bob", "+1", "Bob(+1)", "Bob"},
                                         WriterCase{"NumberAlone", "", "+1", "+1", "+1"},
                                         WriterCase{"CalledUnknown", "Unknown", "+1", "+1", "+1"},
                                         WriterCase{"NameAlone", "Bob", "", "Bob()", "Bob"},
                                         WriterCase{"Nobody", "", "", "", ""}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(ChatExport, ChatThatTheMapLacksHasAnEmptyTextAHeaderAndAPageOfHeadAndTail) {
  Begin();
  const __WHATSAPP_MESSAGE__ message = ChatMessage(kReceived, "hello");

  m_recovery.RecoveryWhatsAppMsg(&message, {{kHandle + 1, {message}}});

  EXPECT_EQ("", ReadFile(Document(".txt")));
  EXPECT_EQ("Chats,Name/Phone,Date,Type,Content\n", ReadFile(Document(".csv")));
  EXPECT_EQ("<head>\n<tail>\n", ReadFile(Document(".html")));
}

TEST_F(ChatExport, SameChatAgainGetsNumbersInFrontOfTheExtensions) {
  Begin();
  for (int i = 0; i < 2; ++i) Recover({ChatMessage(kReceived, "hello")});

  EXPECT_THAT(Written(), ElementsAre(Document(".txt"), Document(".csv"), Document(".html"),
                                     Document("(1).txt"), Document("(1).csv"), Document("(1).html")));
  EXPECT_EQ(ReadFile(Document(".html")), ReadFile(Document("(1).html")));
}

TEST_F(ChatExport, TwoRunsWithinASecondShareTheFolder) {
  CRecovery second(FromNarrow(m_folder.Path("program")));
  BeginTwice(m_recovery, second);
  const WhatsAppMap map = {{kHandle, {ChatMessage(kReceived, "hello")}}};

  m_recovery.RecoveryWhatsAppMsg(&map.at(kHandle).front(), map);
  second.RecoveryWhatsAppMsg(&map.at(kHandle).front(), map);

  EXPECT_THAT(NamesIn(Out() + "/WhatsApp Message"), ElementsAre("Ann(+49302)-" + Stamp()));
  EXPECT_EQ(6u, NamesIn(Out() + "/WhatsApp Message/Ann(+49302)-" + Stamp()).size());
}

TEST_F(ChatExport, RowsOfOneChatDoNotReachTheNext) {
  Begin();

  Recover({ChatMessage(kReceived, "first")});
  Recover({ChatMessage(kReceived, "second")});

  EXPECT_EQ(
      "<head>\n<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
      "<div class=\"recv_msg\">second</div>\r\n<tail>\n",
      ReadFile(Document("(1).html")));
}

TEST_F(ChatExport, MessagesKeepTheirPersonBesideChats) {
  WriteTemplate("Sms", "{|person|}{|content|}");
  Begin();
  const __MESSAGE_INFO__ message = Message(kReceived, "");

  Recover({ChatMessage(kReceived, "hello")});
  m_recovery.RecoveryMsg(&message, {});

  EXPECT_EQ("Name: Ann Lee, Phone: +49301", ReadFile(Written().back()));
}

TEST_P(ChatStatus, OfAllWritersIsTheSystemsErrorNumber) {
  if (GetParam().nStatus == ENOSPC && !Exists("/dev/full")) GTEST_SKIP() << "no full device here";
  Begin();
  m_folder.Write("file", "mine");
  const std::string strPath = GetParam().pszPath;
  const std::u16string wstrPath =
      Ansi2Unicode((strPath[0] == '/' ? strPath : m_folder.Path(strPath)).c_str());
  const WhatsAppMap map = {{kHandle, {ChatMessage(kReceived, "hello")}}};

  const int nText = m_recovery.SaveWhatsAppTxt(kHandle, wstrPath.c_str(), map);
  const int nCsv = m_recovery.SaveWhatsAppCsv(kHandle, wstrPath.c_str(), map);
  const int nPage = m_recovery.SaveWhatsApp(kHandle, wstrPath.c_str(), map);

  EXPECT_EQ(GetParam().nStatus, nText);
  EXPECT_EQ(GetParam().nStatus, nCsv);
  EXPECT_EQ(GetParam().nStatus, nPage);
}

INSTANTIATE_TEST_SUITE_P(Paths, ChatStatus,
                         testing::Values(PathCase{"Free", "free.txt", 0}, PathCase{"Taken", "file", 0},
                                         PathCase{"NoFolder", "missing/a.txt", ENOENT},
                                         PathCase{"BelowAFile", "file/a.txt", ENOTDIR},
                                         PathCase{"Folder", "backup", EISDIR},
                                         PathCase{"FullDevice", "/dev/full", ENOSPC}),
                         [](const auto& info) { return std::string(info.param.pszName); });
