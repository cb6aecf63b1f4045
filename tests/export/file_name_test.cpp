#include "export/file_name.h"

#include <gtest/gtest.h>

using namespace orvandel;

namespace {

constexpr char kPair[] = "\xF0\x9F\x98\x80";  // a character of four bytes, two units of UTF-16
constexpr size_t kPairBytes = 4;

std::string Repeated(const std::string& strText, size_t nTimes) {
  std::string strAll;
  for (size_t i = 0; i < nTimes; ++i) strAll += strText;
  return strAll;
}

/// The leading bytes move the cut through every position within a character.
class LongName : public testing::TestWithParam<size_t> {};

}  // namespace

TEST_P(LongName, IsCutBetweenCharacters) {
  const std::string strStart(GetParam(), 'a');
  const size_t nRoom = kLongestNamePart - GetParam();

  const std::string strSafe = SafeFileName(strStart + Repeated(kPair, kLongestNamePart));

  EXPECT_EQ(strStart + Repeated(kPair, nRoom / kPairBytes), strSafe);
}

TEST_P(LongName, KeepsItsExtensionBehindTheCut) {
  const std::string strStart(GetParam(), 'a');
  const std::string strExtension = ".jpeg";
  const size_t nRoom = kLongestNamePart - GetParam() - strExtension.size();

  const std::string strSafe = SafeFileName(strStart + Repeated(kPair, kLongestNamePart) + strExtension);

  EXPECT_EQ(strStart + Repeated(kPair, nRoom / kPairBytes) + strExtension, strSafe);
}

INSTANTIATE_TEST_SUITE_P(BytesBefore, LongName, testing::Range(size_t{0}, kPairBytes));
