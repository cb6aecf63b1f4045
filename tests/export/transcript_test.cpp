#include <cerrno>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

/// Records the calls of a callback; answers depend on the call's number (the first is 0).
struct TranscriptLog {
  std::vector<int> percentages;
  std::vector<int> statuses;
  std::vector<std::u16string> paths;
  size_t nStopAt = SIZE_MAX;
  int nAnswer = 0;

  static int Receive(void* pContext, int nProgress, int nErrorCode, char16_t* pPath) {
    auto* pLog = static_cast<TranscriptLog*>(pContext);
    pLog->percentages.push_back(nProgress);
    pLog->statuses.push_back(nErrorCode);
    pLog->paths.emplace_back(pPath);
    return pLog->percentages.size() - 1 == pLog->nStopAt ? pLog->nAnswer : 0;
  }
};

class Transcript : public testing::Test {
 protected:
  Transcript() : m_wstrPath(Ansi2Unicode(m_folder.Path("chat.txt").c_str())) {}

  int Write(std::vector<__WHATSAPP_MESSAGE__> messages, RecoveryCallback pfnCallback = nullptr) {
    WhatsAppMap chats = {{kHandle, std::move(messages)}};
    m_session.GetWhatsappMessageInfo(chats);
    return m_session.RecoveryWhatsAppMessage(kHandle, m_wstrPath.c_str(), pfnCallback, &m_log);
  }

  std::string Text() const { return ReadFile(m_folder.Path("chat.txt")); }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
  std::u16string m_wstrPath;
  TranscriptLog m_log;
};

struct PercentCase {
  int nMessages;
  std::vector<int> percentages;
};

void PrintTo(const PercentCase& percent, std::ostream* pStream) {
  *pStream << percent.nMessages << " messages";
}

class TranscriptPercentage : public Transcript, public testing::WithParamInterface<PercentCase> {};

struct AnswerCase {
  const char* pszName;
  int nAnswer;
  std::vector<int> percentages, statuses;
};

void PrintTo(const AnswerCase& answer, std::ostream* pStream) {
  *pStream << "answer " << answer.nAnswer;
}

class TranscriptAnswer : public Transcript, public testing::WithParamInterface<AnswerCase> {};

}  // namespace

TEST_F(Transcript, HasALineOfDateAndPartyAndTheIndentedText) {
  const int nStatus = Write({ChatMessage(kReceived, "hello"), ChatMessage(kSent, "two\nlines %s")});

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(
      "2014-01-01 00:00:00 Ann Lee:\n"
      "    hello\n"
      "\n"
      "2014-01-01 00:00:00 M:\n"
      "    two\nlines %s\n"
      "\n",
      Text());
}

TEST_F(Transcript, PartyWithoutANameIsItsNumber) {
  Write({ChatMessage(kReceived, "1", 0, "", "+1"), ChatMessage(kReceived, "2", 0, "Unknown", "+2"),
         ChatMessage(kReceived, "3", 0, "", "")});

  EXPECT_EQ(
      "2014-01-01 00:00:00 +1:\n    1\n\n2014-01-01 00:00:00 +2:\n    2\n\n"
      "2014-01-01 00:00:00 :\n    3\n\n",
      Text());
}

TEST_F(Transcript, ReplacesAFileThatIsThere) {
  m_folder.Write("chat.txt", std::string(1000, 'x'));

  Write({ChatMessage(kReceived, "hello")});

  EXPECT_EQ("2014-01-01 00:00:00 Ann Lee:\n    hello\n\n", Text());
}

TEST_P(TranscriptPercentage, IsHundredTimesTheNumberOfTheMessageByTheirCount) {
  const auto nCount = static_cast<size_t>(GetParam().nMessages);

  const int nStatus =
      Write(std::vector<__WHATSAPP_MESSAGE__>(nCount, ChatMessage(kSent, "a")), &TranscriptLog::Receive);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_log.percentages, ElementsAreArray(GetParam().percentages));
  EXPECT_EQ(std::vector<int>(nCount, 0), m_log.statuses);
  EXPECT_EQ(std::vector<std::u16string>(nCount, m_wstrPath), m_log.paths);
}

INSTANTIATE_TEST_SUITE_P(Counts, TranscriptPercentage,
                         testing::Values(PercentCase{1, {100}}, PercentCase{2, {50, 100}},
                                         PercentCase{3, {33, 66, 100}},
                                         PercentCase{7, {14, 28, 42, 57, 71, 85, 100}}),
                         [](const auto& info) { return "Of" + std::to_string(info.param.nMessages); });

TEST_P(TranscriptAnswer, OtherThanGoOnEndsTheTranscriptAndIsItsStatus) {
  m_log.nStopAt = 1;
  m_log.nAnswer = GetParam().nAnswer;

  const int nStatus = Write(
      {ChatMessage(kSent, "1"), ChatMessage(kSent, "2"), ChatMessage(kSent, "3"), ChatMessage(kSent, "4")},
      &TranscriptLog::Receive);

  EXPECT_EQ(GetParam().nAnswer, nStatus);
  EXPECT_THAT(m_log.percentages, ElementsAreArray(GetParam().percentages));
  EXPECT_THAT(m_log.statuses, ElementsAreArray(GetParam().statuses));
  EXPECT_EQ("2014-01-01 00:00:00 M:\n    1\n\n2014-01-01 00:00:00 M:\n    2\n\n", Text());
}

INSTANTIATE_TEST_SUITE_P(Answers, TranscriptAnswer,
                         testing::Values(AnswerCase{"PositiveIsToldOnceMore", 5, {25, 50, 100}, {0, 0, 5}},
                                         AnswerCase{"NegativeIsNot", -5, {25, 50}, {0, 0}}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(Transcript, StopAtTheLastMessageIsAStopToo) {
  m_log.nStopAt = 1;
  m_log.nAnswer = 1;

  const int nStatus = Write({ChatMessage(kSent, "1"), ChatMessage(kSent, "2")}, &TranscriptLog::Receive);

  EXPECT_EQ(1, nStatus);
  EXPECT_THAT(m_log.percentages, ElementsAre(50, 100, 100));
  EXPECT_THAT(m_log.statuses, ElementsAre(0, 0, 1));
}

TEST_F(Transcript, TextOfAMessageIsInTheFileWhenItsCallComes) {
  struct Reader {
    std::string strPath, strSeen;
    static int Receive(void* pContext, int, int, char16_t*) {
      auto* pReader = static_cast<Reader*>(pContext);
      pReader->strSeen = ReadFile(pReader->strPath);
      return 0;
    }
  } reader{m_folder.Path("chat.txt"), {}};
  WhatsAppMap chats = {{kHandle, {ChatMessage(kSent, "hello")}}};
  m_session.GetWhatsappMessageInfo(chats);

  m_session.RecoveryWhatsAppMessage(kHandle, m_wstrPath.c_str(), &Reader::Receive, &reader);

  EXPECT_EQ("2014-01-01 00:00:00 M:\n    hello\n\n", reader.strSeen);
}

TEST_F(Transcript, OfAnUnknownChatIsAnEmptyFileWithoutACall) {
  const int nStatus =
      m_session.RecoveryWhatsAppMessage(99, m_wstrPath.c_str(), &TranscriptLog::Receive, &m_log);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("", Text());
  EXPECT_THAT(m_log.percentages, IsEmpty());
}

TEST_F(Transcript, OfAChatWithoutMessagesIsAnEmptyFileWithoutACall) {
  const int nStatus = Write({}, &TranscriptLog::Receive);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("", Text());
  EXPECT_THAT(m_log.percentages, IsEmpty());
}

TEST_F(Transcript, ThatCanNotBeOpenedIsReportedOnceWithItsStatus) {
  m_wstrPath = Ansi2Unicode(m_folder.Path("missing/chat.txt").c_str());

  const int nStatus = Write({ChatMessage(kSent, "hello")}, &TranscriptLog::Receive);

  EXPECT_EQ(ENOENT, nStatus);
  EXPECT_THAT(m_log.percentages, ElementsAre(100));
  EXPECT_THAT(m_log.statuses, ElementsAre(ENOENT));
  EXPECT_THAT(m_log.paths, ElementsAre(m_wstrPath));
}

TEST_F(Transcript, ThatCanNotBeOpenedNeedsNoCallback) {
  m_wstrPath = Ansi2Unicode(m_folder.Path().c_str());

  const int nStatus = Write({ChatMessage(kSent, "hello")});

  EXPECT_EQ(EISDIR, nStatus);
}
