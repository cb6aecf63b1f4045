#include <gtest/gtest.h>

#include "backup/manifest.h"
#include "tests/backup/manifest_bytes.h"

using namespace std::string_literals;

namespace {

struct StringCase {
  const char* pszName;
  std::string strData;
  long long nOffset;
  std::string strText;
  std::string strHash;
  long long nOffsetBehind;
};

class ManifestString : public testing::TestWithParam<StringCase> {
 protected:
  /// A copy of exactly the data's size, so that a read behind it is one behind the allocation.
  static std::vector<unsigned char> Copy(const std::string& strData) {
    return {strData.begin(), strData.end()};
  }
};

const unsigned char* Data(const std::string& strData) {
  return reinterpret_cast<const unsigned char*>(strData.data());
}

}  // namespace

TEST_P(ManifestString, IsReadAsTextByItsLength) {
  const std::vector<unsigned char> data = Copy(GetParam().strData);
  long long nOffset = GetParam().nOffset;

  const std::string strText = getstring(data.data(), &nOffset, static_cast<long long>(data.size()));

  EXPECT_EQ(GetParam().strText, strText);
  EXPECT_EQ(GetParam().nOffsetBehind, nOffset);
}

TEST_P(ManifestString, IsReadAsHashByItsLength) {
  const std::vector<unsigned char> data = Copy(GetParam().strData);
  long long nOffset = GetParam().nOffset;

  const std::string strHash = gethash(data.data(), &nOffset, static_cast<long long>(data.size()));

  EXPECT_EQ(GetParam().strHash, strHash);
  EXPECT_EQ(GetParam().nOffsetBehind, nOffset);
}

INSTANTIATE_TEST_SUITE_P(
    Manifest, ManifestString,
    testing::Values(StringCase{"OrdinaryText", "\0\3abc"s, 0, "abc", "616263", 5},
                    StringCase{"TextInTheMiddle", "xx\0\2abyy"s, 2, "ab", "6162", 6},
                    StringCase{"LengthZero", "\0\0ab"s, 0, "", "", 2},
                    StringCase{"EmptyMarkTakesTwoBytes", "\xFF\xFF\0\1a"s, 0, "", "", 2},
                    StringCase{"BytesBelow16GiveOneDigit", "\0\2\x0A\xFF"s, 0, "\x0A\xFF", "aff", 4},
                    StringCase{"ZeroByteIsPartOfTheText", "\0\3a\0b"s, 0, "a\0b"s, "61062", 5},
                    StringCase{"TopBitsStayAsTheyAre", "\0\2\xC3\xA9"s, 0, "\xC3\xA9", "c3a9", 4},
                    StringCase{"FullBytesAreTextBehindALength", "\0\2\xFF\xFF"s, 0, "\xFF\xFF", "ffff", 4},
                    StringCase{"TextOneByteShort", "\0\3ab"s, 0, "", "", 5},
                    StringCase{"LengthCutInTwo", "ab\0"s, 2, "", "", 4},
                    StringCase{"EmptyMarkCutInTwo", "ab\xFF"s, 2, "", "", 4},
                    StringCase{"NothingLeft", "ab", 2, "", "", 3}),
    [](const testing::TestParamInfo<StringCase>& info) { return info.param.pszName; });

TEST(ManifestLongString, LengthFF00IsAnOrdinaryOne) {
  const std::string strText(0xFF00, 'p');
  const std::string strData = manifest_bytes::Text(strText) + "tail";
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_TRUE(strText == strRead) << strRead.size() << " bytes read";
  EXPECT_EQ(65282, nOffset);
}

TEST(ManifestLongString, LengthFFFEIsTheLongest) {
  const std::string strText(0xFFFE, 'p');
  const std::string strData = manifest_bytes::Text(strText);
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_TRUE(strText == strRead) << strRead.size() << " bytes read";
  EXPECT_EQ(65536, nOffset);
}

TEST(ManifestLongString, LengthWithFFInItsLowByteIsAnOrdinaryOne) {
  const std::string strData = manifest_bytes::Text(std::string(0x00FF, 'p'));
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_EQ(std::string(255, 'p'), strRead);
  EXPECT_EQ(257, nOffset);
}

TEST(ManifestStringNull, NullDataGivesAnEmptyTextAndStays) {
  long long nOffset = 3;

  const std::string strText = getstring(nullptr, &nOffset, 8);
  const std::string strHash = gethash(nullptr, &nOffset, 8);

  EXPECT_EQ("", strText);
  EXPECT_EQ("", strHash);
  EXPECT_EQ(3, nOffset);
}

TEST(ManifestStringNull, NullOffsetGivesAnEmptyText) {
  const std::string strData = "\0\3abc"s;

  const std::string strText = getstring(Data(strData), nullptr, 5);
  const std::string strHash = gethash(Data(strData), nullptr, 5);

  EXPECT_EQ("", strText);
  EXPECT_EQ("", strHash);
}
