#include "common/text.h"

#include <gtest/gtest.h>

#include "tests/support.h"

using namespace orvandel;

namespace {

const char kUmlaut[] =
    "Gr\xC3\xBC\xC3\x9F"
    "e";                                     // with a u umlaut and a sharp s
const char kWhale[] = "a\xF0\x9F\x90\xB3z";  // with a character of two UTF-16 units
const iconv_t kNoHandle = reinterpret_cast<iconv_t>(-1);

class UnicodeMap : public testing::Test {
 protected:
  void TearDown() override {
    for (iconv_t* pHandle : {&sz2uni_handle, &uni2sz_handle}) {
      if (*pHandle != kNoHandle) iconv_close(*pHandle);
      *pHandle = kNoHandle;
    }
  }
};

/// Converts a whole text with a handle.
std::string Convert(iconv_t handle, std::string strInput) {
  char szOutput[64] = {};
  char* pInput = strInput.data();
  char* pOutput = szOutput;
  size_t nInput = strInput.size();
  size_t nOutput = sizeof szOutput;
  EXPECT_EQ(0u, iconv(handle, &pInput, &nInput, &pOutput, &nOutput));
  return std::string(szOutput, pOutput);
}

}  // namespace

TEST(Text, NarrowTextIsInTheEncodingOfTheLocale) {
  const QString qstrText = QString::fromUtf8(kUmlaut);

  const std::string strUtf8 = ToNarrow(qstrText);
  LocaleCodec codec("ISO-8859-1");
  const std::string strLatin1 = ToNarrow(qstrText);

  EXPECT_EQ(kUmlaut, strUtf8);
  EXPECT_EQ(
      "Gr\xFC\xDF"
      "e",
      strLatin1);
}

TEST(Text, NarrowTextIsReadInTheEncodingOfTheLocale) {
  LocaleCodec codec("ISO-8859-1");

  const QString qstrFromString = FromNarrow(std::string("\xE9"));
  const QString qstrFromPointer = FromNarrow("\xE9");

  EXPECT_EQ(QString(QChar(0xE9)), qstrFromString);
  EXPECT_EQ(QString(QChar(0xE9)), qstrFromPointer);
}

TEST(Text, WhatTheLocaleLacksIsReplacedAndTheRestKept) {
  LocaleCodec codec("ISO-8859-1");

  const std::string strNarrow = ToNarrow(QString::fromUtf8("1 \xE2\x82\xAC net"));

  EXPECT_EQ("1 ? net", strNarrow);
}

TEST(Text, WideTextSurvivesARoundTrip) {
  const QString qstrText = QString::fromUtf8(kWhale);

  const std::u16string wstrText = ToWide(qstrText);

  EXPECT_EQ(u"a\U0001F433z", wstrText);
  EXPECT_EQ(4u, wstrText.size());
  EXPECT_EQ(qstrText, FromWide(wstrText));
}

TEST(Text, LoneSurrogateSurvivesTheWideForm) {
  const QString qstrText = QString(QChar(0xD83D)) + "x";

  const QString qstrBack = FromWide(ToWide(qstrText));

  EXPECT_EQ(qstrText, qstrBack);
}

TEST(Text, WideBecomesNarrowThroughTheLocale) {
  const std::u16string wstrText = u"caf\u00E9";

  const std::string strUtf8 = Unicode2Ansi(wstrText.c_str());
  LocaleCodec codec("ISO-8859-1");
  const std::string strLatin1 = Unicode2Ansi(wstrText.c_str());

  EXPECT_EQ("caf\xC3\xA9", strUtf8);
  EXPECT_EQ("caf\xE9", strLatin1);
}

TEST(Text, NarrowBecomesWideThroughTheLocale) {
  const std::u16string wstrUtf8 = Ansi2Unicode(kWhale);
  LocaleCodec codec("ISO-8859-1");
  const std::u16string wstrLatin1 = Ansi2Unicode("caf\xE9");

  EXPECT_EQ(u"a\U0001F433z", wstrUtf8);
  EXPECT_EQ(u"caf\u00E9", wstrLatin1);
}

TEST(Text, ConversionsReadUpToTheTerminator) {
  const char16_t wszText[] = u"ab\0cd";
  const char szText[] = "ab\0cd";

  std::string strLatin1;
  const int nLength = inner_uni2str(strLatin1, wszText);

  EXPECT_EQ("ab", Unicode2Ansi(wszText));
  EXPECT_EQ(u"ab", Ansi2Unicode(szText));
  EXPECT_EQ("ab", strLatin1);
  EXPECT_EQ(2, nLength);
}

TEST(Text, NullAndEmptyTextGiveEmptyText) {
  const std::string strNarrowOfNull = Unicode2Ansi(nullptr);
  const std::u16string wstrWideOfNull = Ansi2Unicode(nullptr);

  EXPECT_EQ("", strNarrowOfNull);
  EXPECT_EQ(u"", wstrWideOfNull);
  EXPECT_EQ("", Unicode2Ansi(u""));
  EXPECT_EQ(u"", Ansi2Unicode(""));
}

TEST(Text, LatinOneConversionIgnoresTheLocale) {
  std::string strText = "what was there before";

  const int nLength = inner_uni2str(strText, u"caf\u00E9");

  EXPECT_EQ("caf\xE9", strText);
  EXPECT_EQ(4, nLength);
}

TEST(Text, LatinOneConversionReplacesOtherCharactersByAQuestionMark) {
  std::string strText;

  const int nLength = inner_uni2str(strText, u"1 \u20AC net");

  EXPECT_EQ("1 ? net", strText);
  EXPECT_EQ(7, nLength);
}

TEST_F(UnicodeMap, HandlesConvertBothWaysBetweenTheEncodingAndUtf16) {
  const int nStatus = inner_initUnicodeMap("UTF-8");

  ASSERT_EQ(0, nStatus);
  EXPECT_EQ("UTF-8", g_language);
  EXPECT_EQ(std::string("A\0\xE9\0", 4), Convert(sz2uni_handle, "A\xC3\xA9"));
  EXPECT_EQ("A\xC3\xA9", Convert(uni2sz_handle, std::string("A\0\xE9\0", 4)));
}

TEST_F(UnicodeMap, UnknownEncodingFailsAndLeavesNoHandleOpen) {
  const int nStatus = inner_initUnicodeMap("no-such-encoding");

  EXPECT_EQ(-1, nStatus);
  EXPECT_EQ("no-such-encoding", g_language);
  EXPECT_EQ(kNoHandle, sz2uni_handle);
}

TEST(LowerCase, OnlyTheLettersAToZAreLowered) {
  for (int nByte = 1; nByte < 256; ++nByte) {
    char szText[] = {static_cast<char>(nByte), '\0'};
    const bool bCapital = nByte >= 'A' && nByte <= 'Z';

    GetCharLowerA(szText);

    EXPECT_EQ(bCapital ? nByte + 32 : nByte, static_cast<unsigned char>(szText[0])) << "byte " << nByte;
  }
}

TEST(LowerCase, TextIsChangedInPlaceUpToItsTerminator) {
  char szText[] = "IMG_0001.JPG\0TAIL";

  char* pszResult = GetCharLowerA(szText);

  EXPECT_EQ(szText, pszResult);
  EXPECT_STREQ("img_0001.jpg", szText);
  EXPECT_STREQ("TAIL", szText + 13);
}

TEST(LowerCase, BytesAboveAsciiStayAlone) {
  char szText[] = "\xC3\x84Z\xC4";

  GetCharLowerA(szText);

  EXPECT_STREQ("\xC3\x84z\xC4", szText);
}
