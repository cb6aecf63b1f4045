// Chats and texts designed to take unbounded time or memory.

#include <QElapsedTimer>

#include "tests/ui/chat_view_hostile.h"

using namespace orvandel;

namespace {

constexpr int kMostSeconds = 20;  // timeout for texts designed to hang

std::string Repeated(const std::string& strPart, int nTimes) {
  std::string strText;
  for (int i = 0; i < nTimes; ++i) strText += strPart;
  return strText;
}

struct CostlyText {
  const char* pszName;
  std::string strText;
};

void PrintTo(const CostlyText& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ChatCost : public ChatHostileTest, public testing::WithParamInterface<CostlyText> {};

TEST_P(ChatCost, OfMarkupIsBounded) {
  const Deadline deadline(kMostSeconds);

  SelectHostile(GetParam().strText);

  EXPECT_EQ(nullptr, Messages()->Engine());
  EXPECT_EQ(nullptr, Chats()->Engine());
  Records().m_mapWhatsApp.clear();
  Table("m_pMessageTable")->selectRow(1);
  EXPECT_EQ(std::vector<std::string>({Sent("Me<br>normal")}), BubblesOf(Messages()));
}

/// Nested SVG references, ten at each level.
std::string Multiplied(int nLevels) {
  std::string strText = "<svg><defs><g id='g0'><rect width='1' height='1'/></g>";
  for (int i = 1; i <= nLevels; ++i)
    strText += "<g id='g" + std::to_string(i) + "'>" +
               Repeated("<use xlink:href='#g" + std::to_string(i - 1) + "'/>", 10) + "</g>";
  return strText + "</defs><use xlink:href='#g" + std::to_string(nLevels) + "'/></svg>";
}

INSTANTIATE_TEST_SUITE_P(
    Of, ChatCost,
    testing::ValuesIn(std::vector<CostlyText>{
        {"Depth", Repeated("<b>", 100000)},
        {"DepthOfBlocks", Repeated("<div><table><td>", 3000)},
        {"Drawings", Multiplied(7)},
        {"Boxes", Repeated("<div style='display:-webkit-flex;-webkit-flex-direction:column'>", 40) + "x"},
    }),
    NameOf<CostlyText>);

class ChatLength : public PreviewTest {
 protected:
  /// Seconds that a call takes.
  template <typename Call>
  static double Seconds(Call call) {
    QElapsedTimer timer;
    timer.start();
    call();
    return static_cast<double>(timer.elapsed()) / 1000;
  }
};

TEST_F(ChatLength, AConversationOf100000MessagesIsShownInPart) {
  OpenDataScreen();
  Records().m_mapMessage[1].assign(100000, Message(0, "a message of the usual length, more or less"));
  Records().m_mapMessage[2] = {Message(0, "next")};

  EXPECT_LT(Seconds([&] { SelectNode(4); }), 30);

  const size_t nBubbles = BubblesOf(Messages()).size();
  EXPECT_GT(nBubbles, 1000u);
  EXPECT_LE(static_cast<qint64>(nBubbles), ChatView::kMostContent / ChatView::kBubbleCost);
  Table("m_pMessageTable")->selectRow(1);
  EXPECT_EQ(std::vector<std::string>({Received("<br>next")}), BubblesOf(Messages()))
      << "cleared, it takes more";
}

TEST_F(ChatLength, AChatOf20000MessagesIsShownInPart) {
  OpenDataScreen();
  for (int i = 0; i < 20000; ++i)
    Records().m_mapWhatsApp[1].push_back(ChatMessage(0, "message " + std::to_string(i) + " "));

  EXPECT_LT(Seconds([&] { SelectNode(9); }), 30);

  const std::vector<std::string> bubbles = BubblesOf(Chats());
  ASSERT_GT(bubbles.size(), 1000u);
  EXPECT_EQ(Received("message 0 message 1 "), bubbles[1]);
  size_t nSize = 0;
  for (const std::string& strBubble : bubbles) nSize += strBubble.size();
  EXPECT_LE(static_cast<qint64>(nSize), ChatView::kMostContent);
}

TEST_F(ChatLength, LargeTextsCountByTheirLength) {
  OpenDataScreen();
  Records().m_mapMessage[1].assign(100, Message(1, std::string(1024 * 1024, 'x')));

  EXPECT_LT(Seconds([&] { SelectNode(4); }), 30);

  // Besides its text, each counts its name, the line break and the bubble's cost: 31 fit and 32 don't.
  EXPECT_EQ(31u, BubblesOf(Messages()).size());
}

TEST_F(ChatLength, AViewThatIsFullTakesNoMoreUntilItIsCleared) {
  ChatView view("style.html");
  const QString qstrText(1024 * 1024 - static_cast<int>(ChatView::kBubbleCost), 'x');
  for (int i = 0; i < 32; ++i) ASSERT_TRUE(view.AddBubble(true, qstrText)) << i;
  EXPECT_EQ(32u, BubblesOf(&view).size()) << "filled to the last character";

  EXPECT_FALSE(view.AddBubble(true, ""));
  EXPECT_FALSE(view.AddBubble(false, "x"));
  EXPECT_EQ(32u, BubblesOf(&view).size());
  view.Clear();
  EXPECT_EQ(0u, BubblesOf(&view).size());
  EXPECT_TRUE(view.AddBubble(false, "x"));
  EXPECT_EQ(std::vector<std::string>({Sent("x")}), BubblesOf(&view));
}

}  // namespace
