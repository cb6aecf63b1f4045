#include "cli/json_text.h"

#include <gtest/gtest.h>

#include <random>

#include "cli/json_stream.h"
#include "common/text.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

/// What the toolkit makes of the same text.
std::string Expected(const std::string& strText) {
  return ToJson(FromNarrow(strText)).toStdString();
}

std::string Found(const std::string& strText) {
  std::string strOut = "before ";
  AppendJsonText(strText, strOut);
  EXPECT_EQ("before ", strOut.substr(0, 7));
  return strOut.substr(7);
}

struct TextCase {
  const char* pszName;
  std::string strText;
};

void PrintTo(const TextCase& text, std::ostream* pStream) {
  *pStream << text.pszName;
}

class JsonTextOf : public testing::TestWithParam<TextCase> {};

std::string EachByte() {
  std::string strText;
  for (int nByte = 0; nByte < 0x80; ++nByte) strText += static_cast<char>(nByte);
  return strText;
}

}  // namespace

TEST_P(JsonTextOf, IsThatOfTheToolkit) {
  EXPECT_EQ(Expected(GetParam().strText), Found(GetParam().strText));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonTextOf,
    testing::Values(TextCase{"Empty", ""}, TextCase{"Ascii", "HomeDomain-Library/SMS/sms.db"},
                    TextCase{"EveryAsciiByte", EachByte()}, TextCase{"Zero", std::string("a\0b", 3)},
                    TextCase{"TwoBytes", "Gr\xC3\xBC\xC3\x9F"}, TextCase{"ThreeBytes", "\xE4\xBA\xAC"},
                    TextCase{"Astral", "\xF0\x9F\x8D\x81"}, TextCase{"Last", "\xF4\x8F\xBF\xBF"},
                    TextCase{"BeyondTheLast", "\xF4\x90\x80\x80"}, TextCase{"Noncharacter", "\xEF\xBF\xBE"},
                    TextCase{"Surrogate", "a\xED\xA0\x80z"}, TextCase{"Overlong", "\xC0\xAF\xE0\x80\xAF"},
                    TextCase{"CutShort", "a\xE4\xBA"}, TextCase{"LoneTail", "\x80"},
                    TextCase{"InvalidAfterEscapes", "\n\"\\\xFF\n"},
                    TextCase{"ByteOrderMark", "\xEF\xBB\xBFname"},
                    TextCase{"ByteOrderMarkWithin", "a\xEF\xBB\xBFname"},
                    TextCase{"ByteOrderMarkTwice", "\xEF\xBB\xBF\xEF\xBB\xBF"},
                    TextCase{"LineSeparator", "\xE2\x80\xA8\xE2\x80\xA9"}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST(JsonText, OfRandomTextsIsThatOfTheToolkit) {
  static constexpr const char* kPieces[] = {"a",
                                            "Media/",
                                            "\"",
                                            "\\",
                                            "\n",
                                            "\x1F",
                                            "\x7F",
                                            "\xC3\xA4",
                                            "\xE4\xBA\xAC",
                                            "\xF0\x9F\x8D\x81",
                                            "\xEF\xBB\xBF",
                                            "\xEF\xBF\xBF"};
  std::mt19937 random(20160501);
  const auto below = [&](size_t nEnd) { return random() % nEnd; };
  for (int nRound = 0; nRound < 20000; ++nRound) {
    std::string strText;
    for (size_t nLeft = below(12); nLeft > 0; --nLeft) {
      // Mostly whole characters, so that many texts are valid.
      if (below(20) == 0)
        strText += static_cast<char>(below(256));
      else
        strText += kPieces[below(std::size(kPieces))];
    }
    ASSERT_EQ(Expected(strText), Found(strText)) << testing::PrintToString(strText);
  }
}

TEST(JsonText, OfRandomBytesIsThatOfTheToolkit) {
  std::mt19937 random(7);
  for (int nRound = 0; nRound < 20000; ++nRound) {
    std::string strText(random() % 6, '\0');
    for (char& nByte : strText) nByte = static_cast<char>(random());
    ASSERT_EQ(Expected(strText), Found(strText)) << testing::PrintToString(strText);
  }
}

TEST(JsonText, IsConvertedFromTheEncodingOfNarrowText) {
  const LocaleCodec codec("ISO-8859-1");

  EXPECT_EQ("\"Gr\xC3\xBC\xC3\x9F\"", Found("Gr\xFC\xDF"));
  EXPECT_EQ("\"\xC3\x83\xC2\xBC\"", Found("\xC3\xBC"));
}
