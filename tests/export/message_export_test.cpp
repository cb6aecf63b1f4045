#include <cerrno>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class MessageExport : public RecoveryTest {
 protected:
  void Recover(const std::vector<__MESSAGE_INFO__>& messages) {
    const MessageMap map = {{kHandle, messages}};
    m_recovery.RecoveryMsg(&messages.front(), map);
  }

  /// Path of a document of the person that messages have by default.
  std::string Document(const std::string& strEnd) const {
    return Out() + "/Message/Ann Lee-" + Stamp() + "/Ann Lee(+49301)" + strEnd;
  }
};

struct PartyCase {
  const char* pszName;  ///< of the case
  const char* pszContact;
  const char* pszSender;
  const char* pszInText;
  const char* pszInPage;
  const char* pszLabel;
  const char* pszStem;
};

void PrintTo(const PartyCase& party, std::ostream* pStream) {
  *pStream << '"' << party.pszContact << "\", \"" << party.pszSender << '"';
}

class MessageParty : public MessageExport, public testing::WithParamInterface<PartyCase> {};

struct RowCase {
  const char* pszName;
  Direction direction;
  int nDeleted;
  const char* pszRow;
};

void PrintTo(const RowCase& row, std::ostream* pStream) {
  *pStream << row.pszName;
}

class MessageRow : public MessageExport, public testing::WithParamInterface<RowCase> {};

struct PathCase {
  const char* pszName;
  const char* pszPath;  ///< below the folder of the test, or from the root
  int nStatus;
};

void PrintTo(const PathCase& path, std::ostream* pStream) {
  *pStream << path.pszPath;
}

class MessageStatus : public MessageExport, public testing::WithParamInterface<PathCase> {
 protected:
  std::u16string Path() const {
    const std::string strPath = GetParam().pszPath;
    return Ansi2Unicode((strPath[0] == '/' ? strPath : m_folder.Path(strPath)).c_str());
  }
};

}  // namespace

TEST_F(MessageExport, TextFileHasThreeLinesForEachMessageInTheGivenOrder) {
  Begin();
  __MESSAGE_INFO__ later = Message(kSent, "see you");
  later.strDate = "2014-01-02 10:20:30";

  Recover({later, Message(kReceived, "hello")});

  EXPECT_EQ(
      "        To: Ann Lee(+49301)\n"
      "      Data: 2014-01-02 10:20:30\n"
      "   Content: see you\n"
      "\n"
      "      From: Ann Lee(+49301)\n"
      "      Data: 2014-01-01 00:00:00\n"
      "   Content: hello\n"
      "\n",
      ReadFile(Document(".txt")));
}

TEST_F(MessageExport, PageHasARowOfTheDateAndARowOfTheTextForEachMessage) {
  WriteTemplate("Sms", "{|title|}\r\n{|person|}\r\n{|content|}<end>{|title|}\n");
  Begin();

  Recover({Message(kSent, "later"), Message(kReceived, "hello")});

  EXPECT_EQ(
      "iPhone's Messages of Ann's phone\r\n"
      "Name: Ann Lee, Phone: +49301\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Me:</div>\r\n"
      "<div class=\"send_msg\">later</div>\r\n"
      "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
      "<div class=\"recv_msg\">hello</div>\r\n"
      "<end>{|title|}\n",
      ReadFile(Document(".html")));
}

TEST_F(MessageExport, TextFileIsReportedBeforeThePage) {
  Begin();

  Recover({Message(kReceived, "hello")});

  EXPECT_THAT(Written(), ElementsAre(Document(".txt"), Document(".html")));
  EXPECT_THAT(Failed(), IsEmpty());
}

TEST_P(MessageRow, HasItsClassAndParty) {
  Begin();

  Recover({Message(GetParam().direction, "hello", GetParam().nDeleted)});

  EXPECT_EQ(std::string("<head>\n") + GetParam().pszRow + "hello</div>\r\n<tail>\n",
            ReadFile(Document(".html")));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, MessageRow,
    testing::Values(RowCase{"Received", kReceived, 0,
                            "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
                            "<div class=\"recv_msg\">"},
                    RowCase{"ReceivedAndDeleted", kReceived, 1,
                            "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
                            "<div class=\"del_recv_msg\">"},
                    RowCase{"ReceivedWithAnyMark", kReceived, -2,
                            "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
                            "<div class=\"del_recv_msg\">"},
                    RowCase{"Sent", kSent, 0,
                            "<div class=\"date\">Date: 2014-01-01 00:00:00 Me:</div>\r\n"
                            "<div class=\"send_msg\">"},
                    RowCase{"SentAndDeleted", kSent, 1,
                            "<div class=\"date\">Date: 2014-01-01 00:00:00 Me:</div>\r\n"
                            "<div class=\"del_send_msg\">"}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_P(MessageParty, IsNamedByEachDocumentInItsOwnWay) {
  WriteTemplate("Sms", "{|person|}\n{|content|}");
  Begin();
  const PartyCase& party = GetParam();
  const std::string strStem = Out() + "/Message/" + party.pszLabel + "-" + Stamp() + "/" + party.pszStem;

  Recover({Message(kReceived, "hello", 0, party.pszContact, party.pszSender)});

  EXPECT_THAT(Written(), ElementsAre(strStem + ".txt", strStem + ".html"));
  EXPECT_EQ(std::string("      From: ") + party.pszInText +
                "\n      Data: 2014-01-01 00:00:00\n   Content: hello\n\n",
            ReadFile(strStem + ".txt"));
  EXPECT_EQ(std::string("Name: ") + party.pszLabel + ", Phone: " + party.pszSender +
                "\n<div class=\"date\">Date: 2014-01-01 00:00:00 " + party.pszInPage +
                ":</div>\r\n<div class=\"recv_msg\">hello</div>\r\n",
            ReadFile(strStem + ".html"));
}

INSTANTIATE_TEST_SUITE_P(
    People, MessageParty,
    testing::Values(PartyCase{"NameAndSender", "Ann", "+49", "Ann(+49)", "Ann", "Ann", "Ann(+49)"},
                    PartyCase{"SenderAlone", "", "+49", "+49", "+49", "Unknown", "Unknown(+49)"},
                    PartyCase{"CalledUnknown", "Unknown", "+49", "+49", "+49", "Unknown", "Unknown(+49)"},
                    PartyCase{"CalledUnknownInLowerCase", "unknown", "+49", "unknown(+49)", "unknown",
                              "unknown", "unknown(+49)"},
                    PartyCase{"NameAlone", "Ann", "", "Ann()", "Ann", "Ann", "Ann"},
                    PartyCase{"Nobody", "", "", "", "", "Unknown", "Unknown"},
                    PartyCase{"MailAddress", "Ann", "a.b@example.net", "Ann(a.b@example.net)", "Ann", "Ann",
                              "Ann(a.b@example.net)"},
                    PartyCase{"Colon", "A:B", "+49", "A:B(+49)", "A:B", "A:B", "A:B(+49)"},
                    PartyCase{"BeyondAscii", "Änne 🌷", "+49", "Änne 🌷(+49)", "Änne 🌷", "Änne 🌷",
                              "Änne 🌷(+49)"}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(MessageExport, TextGoesIntoBothDocumentsAsItIs) {
  Begin();
  const std::string strText = "<b>&amp;\"%s%n\r\nsecond {|content|} {|person|}\tÄ\xFF";

  Recover({Message(kReceived, strText)});

  EXPECT_EQ("      From: Ann Lee(+49301)\n      Data: 2014-01-01 00:00:00\n   Content: " + strText + "\n\n",
            ReadFile(Document(".txt")));
  EXPECT_EQ(
      "<head>\n<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n<div class=\"recv_msg\">" +
          strText + "</div>\r\n<tail>\n",
      ReadFile(Document(".html")));
}

TEST_F(MessageExport, SameConversationAgainGetsNumbersInFrontOfTheExtensions) {
  Begin();
  for (int i = 0; i < 3; ++i) Recover({Message(kReceived, "hello")});

  EXPECT_THAT(Written(), ElementsAre(Document(".txt"), Document(".html"), Document("(1).txt"),
                                     Document("(1).html"), Document("(2).txt"), Document("(2).html")));
  EXPECT_EQ(ReadFile(Document(".txt")), ReadFile(Document("(2).txt")));
  EXPECT_EQ(ReadFile(Document(".html")), ReadFile(Document("(1).html")));
}

TEST_F(MessageExport, TwoRunsWithinASecondShareTheFolder) {
  CRecovery second(FromNarrow(m_folder.Path("program")));
  BeginTwice(m_recovery, second);
  const MessageMap other = {{kHandle, {Message(kReceived, "of the second")}}};
  Recover({Message(kReceived, "of the first")});
  const std::string strFirst = ReadFile(Document(".txt"));

  second.RecoveryMsg(&other.at(kHandle).front(), other);

  EXPECT_THAT(NamesIn(Out() + "/Message"), ElementsAre("Ann Lee-" + Stamp()));
  EXPECT_THAT(NamesIn(Out() + "/Message/Ann Lee-" + Stamp()),
              ElementsAre("Ann Lee(+49301)(1).html", "Ann Lee(+49301)(1).txt", "Ann Lee(+49301).html",
                          "Ann Lee(+49301).txt"));
  EXPECT_EQ(strFirst, ReadFile(Document(".txt")));
  EXPECT_THAT(ReadFile(Document("(1).txt")), HasSubstr("of the second"));
}

TEST_F(MessageExport, HandlesOfOnePersonShareAFolderAndNoRows) {
  Begin();
  __MESSAGE_INFO__ mail = Message(kReceived, "by mail", 0, "Ann Lee", "a@example.net");
  mail.nHandleId = 8;
  const MessageMap map = {{kHandle, {Message(kReceived, "by number")}}, {8, {mail}}};

  for (const auto& [nKey, messages] : map) m_recovery.RecoveryMsg(&messages.front(), map);

  EXPECT_THAT(NamesIn(Out() + "/Message/Ann Lee-" + Stamp()),
              ElementsAre("Ann Lee(+49301).html", "Ann Lee(+49301).txt", "Ann Lee(a@example.net).html",
                          "Ann Lee(a@example.net).txt"));
  EXPECT_EQ(
      "<head>\n<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n"
      "<div class=\"recv_msg\">by mail</div>\r\n<tail>\n",
      ReadFile(Out() + "/Message/Ann Lee-" + Stamp() + "/Ann Lee(a@example.net).html"));
}

TEST_F(MessageExport, PeopleWithoutANameShareAFolder) {
  Begin();

  Recover({Message(kReceived, "one", 0, "", "+1")});
  Recover({Message(kReceived, "two", 0, "", "+2")});

  EXPECT_THAT(NamesIn(Out() + "/Message"), ElementsAre("Unknown-" + Stamp()));
  EXPECT_THAT(NamesIn(Out() + "/Message/Unknown-" + Stamp()),
              ElementsAre("Unknown(+1).html", "Unknown(+1).txt", "Unknown(+2).html", "Unknown(+2).txt"));
}

TEST_F(MessageExport, ConversationThatTheMapLacksHasAnEmptyTextAndAPageOfHeadAndTail) {
  Begin();
  const __MESSAGE_INFO__ message = Message(kReceived, "hello");

  m_recovery.RecoveryMsg(&message, {{kHandle + 1, {message}}});

  EXPECT_EQ("", ReadFile(Document(".txt")));
  EXPECT_EQ("<head>\n<tail>\n", ReadFile(Document(".html")));
  EXPECT_THAT(Failed(), IsEmpty());
}

TEST_F(MessageExport, BigConversationIsWhole) {
  Begin();
  constexpr int kCount = 30000;
  std::vector<__MESSAGE_INFO__> messages;
  std::string strText, strPage = "<head>\n";
  for (int i = 0; i < kCount; ++i) {
    const std::string strContent = "message " + std::to_string(i) + std::string(50, 'x');
    messages.push_back(Message(kReceived, strContent));
    strText +=
        "      From: Ann Lee(+49301)\n      Data: 2014-01-01 00:00:00\n   Content: " + strContent + "\n\n";
    strPage += "<div class=\"date\">Date: 2014-01-01 00:00:00 Ann Lee:</div>\r\n<div class=\"recv_msg\">" +
               strContent + "</div>\r\n";
  }

  Recover(messages);

  EXPECT_TRUE(strText == ReadFile(Document(".txt")));
  EXPECT_TRUE(strPage + "<tail>\n" == ReadFile(Document(".html")));
}

TEST_F(MessageExport, LongTextIsWhole) {
  Begin();
  const std::string strText(3000000, 'x');

  Recover({Message(kReceived, strText)});

  EXPECT_TRUE(ReadFile(Document(".txt")) ==
              "      From: Ann Lee(+49301)\n      Data: 2014-01-01 00:00:00\n   Content: " + strText +
                  "\n\n");
}

TEST_F(MessageExport, FoldersOfAnEarlierRunStay) {
  const std::string strOld = m_folder.Write("out/Message/Ann Lee-20130101000000/Ann Lee(+49301).txt", "old");
  Begin();

  Recover({Message(kReceived, "hello")});

  EXPECT_EQ("old", ReadFile(strOld));
  EXPECT_EQ(2u, NamesIn(Out() + "/Message").size());
}

TEST_F(MessageExport, WorksWithoutACallback) {
  Begin();
  m_recovery.SetWrittenFileHandler({});

  Recover({Message(kReceived, "hello")});

  EXPECT_TRUE(Exists(Document(".html")));
  EXPECT_THAT(m_told, IsEmpty());
}

TEST_P(MessageStatus, OfBothWritersIsTheSystemsErrorNumber) {
  if (GetParam().nStatus == ENOSPC && !Exists("/dev/full")) GTEST_SKIP() << "no full device here";
  Begin();
  m_folder.Write("file", "mine");
  const MessageMap map = {{kHandle, {Message(kReceived, "hello")}}};

  const int nText = m_recovery.SaveSMSMessageTxt(kHandle, Path().c_str(), map);
  const int nPage = m_recovery.SaveSMSMessage(kHandle, Path().c_str(), map);

  EXPECT_EQ(GetParam().nStatus, nText);
  EXPECT_EQ(GetParam().nStatus, nPage);
}

INSTANTIATE_TEST_SUITE_P(Paths, MessageStatus,
                         testing::Values(PathCase{"Free", "free.txt", 0}, PathCase{"Taken", "file", 0},
                                         PathCase{"NoFolder", "missing/a.txt", ENOENT},
                                         PathCase{"BelowAFile", "file/a.txt", ENOTDIR},
                                         PathCase{"Folder", "backup", EISDIR},
                                         PathCase{"FullDevice", "/dev/full", ENOSPC}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(MessageExport, WritersTruncateAFileThatIsThere) {
  Begin();
  const std::string strPath = m_folder.Write("file", std::string(1000, 'x'));

  const int nText = m_recovery.SaveSMSMessageTxt(1, Ansi2Unicode(strPath.c_str()).c_str(), {});
  const std::string strText = ReadFile(strPath);
  const int nPage = m_recovery.SaveSMSMessage(1, Ansi2Unicode(strPath.c_str()).c_str(), {});

  EXPECT_EQ(0, nText);
  EXPECT_EQ("", strText);
  EXPECT_EQ(0, nPage);
  EXPECT_EQ("<tail>\n", ReadFile(strPath)) << "no head, since no conversation has set the person";
}
