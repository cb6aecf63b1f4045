#include "backup/digest.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "tests/backup/digest_reference.h"

using namespace orvandel;

namespace {

const unsigned char* Bytes(const std::string& strText) {
  return reinterpret_cast<const unsigned char*>(strText.c_str());
}

/// The digest of a text in a buffer filled with "#", with a given size passed.
std::string Digest(const std::string& strText, int nLength = 40) {
  std::string strOutput(48, '#');
  EXPECT_EQ(strOutput.data(), SHA1(Bytes(strText), strOutput.data(), nLength));
  return strOutput.substr(0, strOutput.find_last_not_of('#') + 1);
}

std::vector<uint32_t> PaddedWords(const std::string& strText) {
  unsigned long long nCount = 0;
  AlignSHA1(Bytes(strText), nullptr, nCount);
  std::vector<uint32_t> words(nCount, 0xDEADBEEF);
  AlignSHA1(Bytes(strText), words.data(), nCount);
  return words;
}

uint32_t Low(unsigned long long nValue) {
  return static_cast<uint32_t>(nValue);
}

struct DigestCase {
  const char* pszName;
  const char* pszText;
  const char* pszDigest;
};

struct RoomCase {
  int nLength;
  size_t nDigits;
};

struct RoundCase {
  int nRound;
  uint32_t nFunction;  // of the words F0F0F0F0, CCCCCCCC and AAAAAAAA
  uint32_t nConstant;
};

const DigestCase kDigests[] = {
    {"EmptyText", "", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
    {"Abc", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
    {"ContactsStore", "HomeDomain-Library/AddressBook/AddressBook.sqlitedb",
     "31bb7ba8914766d4ba40d6dfb6113c8b614be442"},
    {"MessageStore", "HomeDomain-Library/SMS/sms.db", "3d0d7e5fb2ce288813306e4d4636395e047a3d28"},
    {"TopBitAtTheFrontIsStandard", "\xC3", "8bf7b464aaa2c2b536aa1d76a1297c19155f5603"},
    {"TopBitsBehindALetter", "a\xC3\xA9", "03a8af109e3e8e3167986a9db34fe25fdea564e8"},
    {"TopBitsAcrossTwoWords", "caf\xC3\xA9", "8575421cbdc6889cd955ec656555e6a2eb73ee12"}};

const int kLengths[] = {55, 56, 63, 64, 119, 120};

const RoomCase kRooms[] = {{48, 40}, {41, 40}, {40, 40}, {39, 32}, {32, 32}, {20, 16},
                           {16, 16}, {15, 8},  {8, 8},   {7, 0},   {0, 0},   {-1, 0}};

const RoundCase kRounds[] = {
    // F0 is 11110000, CC is 11001100, AA is 10101010: choice gives 11001010, parity 10010110, majority
    // 11101000.
    {0, 0xCACACACA, 0x5A827999},  {19, 0xCACACACA, 0x5A827999}, {20, 0x96969696, 0x6ED9EBA1},
    {39, 0x96969696, 0x6ED9EBA1}, {40, 0xE8E8E8E8, 0x8F1BBCDC}, {59, 0xE8E8E8E8, 0x8F1BBCDC},
    {60, 0x96969696, 0xCA62C1D6}, {79, 0x96969696, 0xCA62C1D6}};

}  // namespace

TEST(KnownDigest, HasItsFixedValue) {
  for (const DigestCase& row : kDigests) {
    SCOPED_TRACE(row.pszName);
    const std::string strDigest = Digest(row.pszText);

    EXPECT_EQ(row.pszDigest, strDigest);
  }
}

TEST(Digest, TopBitsAfterALetterDeviateFromTheStandard) {
  const std::string strText = "a\xC3\xA9";

  const std::string strDigest = Digest(strText);

  EXPECT_EQ("c6324935eb63d2b03c64e9b9e57f98134ef8bea8", StandardSha1(strText));
  EXPECT_NE(StandardSha1(strText), strDigest);
}

TEST(Digest, SecondOfTwoFullBytesChangesNothing) {
  const std::string strDigest = Digest("\xFF\xFF");

  EXPECT_EQ(StandardSha1("\xFF\xFF"), strDigest);
}

TEST(Digest, AsciiOfEveryLengthUpToFourBlocksIsStandard) {
  for (int nLength = 0; nLength <= 256; ++nLength) {
    std::string strText;
    for (int i = 0; i < nLength; ++i) strText += static_cast<char>(1 + (i * 37 + nLength) % 127);

    const std::string strDigest = Digest(strText);

    EXPECT_EQ(StandardSha1(strText), strDigest) << "length " << nLength;
  }
}

TEST(PaddedLength, IsStandardWhereThePaddingMovesOn) {
  for (const int row : kLengths) {
    SCOPED_TRACE(row);
    const std::string strText(row, 'a');

    const std::string strDigest = Digest(strText);

    EXPECT_EQ(StandardSha1(strText), strDigest);
  }
}

TEST(Digest, TopBitSpreadsOverItsWordAtEveryPlace) {
  for (int nPlace = 0; nPlace < 130; ++nPlace) {
    std::string strText(130, 'k');
    strText[nPlace] = '\x80';

    const std::string strDigest = Digest(strText);

    EXPECT_EQ(DigestOf(strText), strDigest) << "byte 80 at " << nPlace;
  }
}

TEST(Digest, LongDevicePathBeyondAsciiSpreadsInEachOfItsWords) {
  const std::string strText =
      "AppDomain-org.example.reader-Documents/\xD0\x9A\xD0\xBD\xD0\xB8\xD0\xB3\xD0\xB8/"
      "\xE6\x9B\xB8\xE7\xB1\x8D.pdf";

  const std::string strDigest = Digest(strText);

  EXPECT_EQ(DigestOf(strText), strDigest);
}

TEST(Digest, EachWordKeepsItsLeadingZeros) {
  for (size_t nWord = 0; nWord < 5; ++nWord) {
    int nNumber = 0;
    while (StandardSha1(std::to_string(nNumber))[nWord * 8] != '0') ++nNumber;

    const std::string strDigest = Digest(std::to_string(nNumber));

    EXPECT_EQ(StandardSha1(std::to_string(nNumber)), strDigest) << "word " << nWord;
    EXPECT_EQ(40u, strDigest.size());
  }
}

TEST(Digest, TextEndsAtItsTerminator) {
  const std::string strDigest = Digest(std::string("abc\0def", 7));

  EXPECT_EQ(StandardSha1("abc"), strDigest);
}

TEST(DigestRoom, TakesWholeWordsAndNoTerminator) {
  for (const RoomCase& row : kRooms) {
    SCOPED_TRACE(row.nLength);
    const std::string strDigest = Digest("abc", row.nLength);

    EXPECT_EQ(StandardSha1("abc").substr(0, row.nDigits), strDigest) << "room " << row.nLength;
  }
}

TEST(Digest, NullTextLeavesTheOutputAlone) {
  std::string strOutput(40, '#');

  char* pszResult = SHA1(nullptr, strOutput.data(), 40);

  EXPECT_EQ(strOutput.data(), pszResult);
  EXPECT_EQ(std::string(40, '#'), strOutput);
}

TEST(Digest, NullOutputIsIgnored) {
  char* pszResult = SHA1(Bytes("abc"), nullptr, 40);

  EXPECT_EQ(nullptr, pszResult);
}

TEST(DigestPadding, WordsComeInWholeBlocks) {
  const std::vector<std::pair<int, unsigned long long>> cases = {
      {0, 16}, {1, 16}, {55, 16}, {56, 32}, {63, 32}, {64, 32}, {119, 32}, {120, 48}, {183, 48}, {184, 64}};
  for (const auto& [nLength, nExpected] : cases) {
    unsigned long long nCount = 0;

    AlignSHA1(Bytes(std::string(nLength, 'a')), nullptr, nCount);

    EXPECT_EQ(nExpected, nCount) << "length " << nLength;
  }
}

TEST(DigestPadding, MarkFollowsTheTextAndTheLengthInBitsEndsTheBlock) {
  const std::vector<uint32_t> words = PaddedWords("abcde");

  std::vector<uint32_t> expected(16, 0);
  expected[0] = 0x61626364;
  expected[1] = 0x65800000;
  expected[15] = 40;
  EXPECT_EQ(expected, words);
}

TEST(DigestPadding, LengthGoesToTheLastWordOfTheLastBlock) {
  const std::vector<uint32_t> words = PaddedWords(std::string(56, 'a'));

  std::vector<uint32_t> expected(32, 0);
  std::fill_n(expected.begin(), 14, 0x61616161);
  expected[14] = 0x80000000;
  expected[31] = 448;
  EXPECT_EQ(expected, words);
}

TEST(DigestPadding, ByteWithTheTopBitFillsItsWordToTheLeft) {
  const std::vector<uint32_t> words = PaddedWords(
      "a\xC3\xA9"
      "bcde\x80");

  EXPECT_EQ(0xFFFFA962, words[0]);  // 61 C3 A9 62
  EXPECT_EQ(0xFFFFFF80, words[1]);  // 63 64 65 80
  EXPECT_EQ(0x80000000, words[2]);  // the end mark itself isn't sign-extended
}

TEST(DigestPadding, MarkFillsNothingToTheLeft) {
  EXPECT_EQ(0x61800000u, PaddedWords("a")[0]);
  EXPECT_EQ(0x61628000u, PaddedWords("ab")[0]);
  EXPECT_EQ(0x61626380u, PaddedWords("abc")[0]);
}

TEST(DigestBlocks, SumCarriesFromOneHalfToTheOther) {
  EXPECT_EQ(0x00010000u, Low(add(0xFFFF, 1)));
  EXPECT_EQ(0u, Low(add(0xFFFFFFFF, 1)));
  EXPECT_EQ(0xFFFFFFFEu, Low(add(0xFFFFFFFF, 0xFFFFFFFF)));
  EXPECT_EQ(0x99999999u, Low(add(0x12345678, 0x87654321)));
}

TEST(DigestBlocks, RightMoveTakesTheLowHalfOnly) {
  EXPECT_EQ(0x0FFFFFFFULL, UnsigedRightMove(0xFFFFFFFFFFFFFFFFULL, 4));
  EXPECT_EQ(0x80000000ULL, UnsigedRightMove(0x1234567880000000ULL, 0));
  EXPECT_EQ(1ULL, UnsigedRightMove(0x80000000ULL, 31));
}

TEST(DigestBlocks, RotationWrapsTheLowHalfWhateverStandsAboveIt) {
  EXPECT_EQ(0x00000003u, Low(rol(0x80000001, 1)));
  EXPECT_EQ(0x00000003u, Low(rol(0xDEADBEEF80000001ULL, 1)));
  EXPECT_EQ(0x2468ACF0u, Low(rol(0x12345678, 1)));
  EXPECT_EQ(0x468ACF02u, Low(rol(0x12345678, 5)));
  EXPECT_EQ(0x048D159Eu, Low(rol(0x12345678, 30)));
}

TEST(DigestRound, HasItsFunctionAndItsConstant) {
  for (const RoundCase& row : kRounds) {
    SCOPED_TRACE(row.nRound);
    const unsigned long long nFunction = ft(row.nRound, 0xF0F0F0F0, 0xCCCCCCCC, 0xAAAAAAAA);
    const unsigned long long nConstant = kt(row.nRound);

    EXPECT_EQ(row.nFunction, Low(nFunction));
    EXPECT_EQ(row.nConstant, Low(nConstant));
  }
}

TEST(DigestDigits, EveryNumberOfDigitsIsFilledUpToEight) {
  const std::vector<std::pair<unsigned long long, std::string>> cases = {
      {0x0, "00000000"},        {0x1, "00000001"},
      {0xAB, "000000ab"},       {0xABC, "00000abc"},
      {0xABCD, "0000abcd"},     {0xABCDE, "000abcde"},
      {0xABCDEF, "00abcdef"},   {0xABCDEF0, "0abcdef0"},
      {0xFEDCBA98, "fedcba98"}, {0x7FFFFFFF00000012ULL, "00000012"}};
  for (const auto& [nValue, strExpected] : cases) {
    std::string strOutput(10, '#');

    char* pszResult = Uint64ToHexStr(nValue, strOutput.data(), 8);

    EXPECT_EQ(strOutput.data(), pszResult);
    EXPECT_EQ(strExpected + "##", strOutput);
  }
}

TEST(DigestDigits, NothingIsWrittenIntoTooLittleRoom) {
  std::string strOutput(8, '#');

  char* pszResult = Uint64ToHexStr(1, strOutput.data(), 7);

  EXPECT_EQ(strOutput.data(), pszResult);
  EXPECT_EQ("########", strOutput);
}

TEST(DigestDigits, NothingIsWrittenToNull) {
  char* pszResult = Uint64ToHexStr(1, nullptr, 8);

  EXPECT_EQ(nullptr, pszResult);
}
