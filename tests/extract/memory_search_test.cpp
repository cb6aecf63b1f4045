#include <gtest/gtest.h>

#include "extract/file_type.h"

using namespace orvandel;

namespace {

constexpr long long kNowhere = -1;

struct SearchCase {
  const char* pszName;
  const char* pszData;
  const char* pszPattern;
  long long nFirst;  // offset of the hit
  long long nLast;
};

void PrintTo(const SearchCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class MemorySearch : public testing::TestWithParam<SearchCase> {};

long long OffsetOf(const void* pHit, const std::string& strData) {
  return pHit ? static_cast<const char*>(pHit) - strData.data() : kNowhere;
}

}  // namespace

TEST_P(MemorySearch, ForwardFindsTheFirstHit) {
  const std::string strData = GetParam().pszData;
  const std::string strPattern = GetParam().pszPattern;

  const void* pHit =
      memory_search::memmem(strData.data(), strData.size(), strPattern.data(), strPattern.size());

  EXPECT_EQ(GetParam().nFirst, OffsetOf(pHit, strData));
}

TEST_P(MemorySearch, BackwardFindsTheLastHit) {
  const std::string strData = GetParam().pszData;
  const std::string strPattern = GetParam().pszPattern;

  const void* pHit =
      memory_search::memrmem(strData.data(), strData.size(), strPattern.data(), strPattern.size());

  EXPECT_EQ(GetParam().nLast, OffsetOf(pHit, strData));
}

INSTANTIATE_TEST_SUITE_P(
    Judge, MemorySearch,
    testing::Values(SearchCase{"OneHit", "abcdef", "cd", 2, 2}, SearchCase{"TwoHits", "abcabc", "bc", 1, 4},
                    SearchCase{"HitAtTheFront", "abcdef", "abc", 0, 0},
                    SearchCase{"HitAtTheEnd", "abcdef", "ef", 4, 4},
                    SearchCase{"HitsThatOverlap", "aaaa", "aa", 0, 2},
                    SearchCase{"AllOfIt", "abc", "abc", 0, 0},
                    SearchCase{"HalfAHitBeforeTheHit", "ababac", "abac", 2, 2},
                    SearchCase{"NoHit", "abcdef", "xy", kNowhere, kNowhere},
                    SearchCase{"PatternLongerThanTheData", "ab", "abc", kNowhere, kNowhere},
                    SearchCase{"EmptyPattern", "abc", "", kNowhere, 3},
                    SearchCase{"EmptyData", "", "a", kNowhere, kNowhere}),
    [](const testing::TestParamInfo<SearchCase>& info) { return info.param.pszName; });

TEST(MemorySearch, ForwardRefusesNull) {
  EXPECT_EQ(nullptr, memory_search::memmem(nullptr, 3, "a", 1));
  EXPECT_EQ(nullptr, memory_search::memmem("abc", 3, nullptr, 1));
}

TEST(MemorySearch, ZeroBytesAreOrdinaryOnes) {
  const char data[] = {'a', 0, 'b', 0, 'b'};
  const char pattern[] = {0, 'b'};

  const void* pFirst = memory_search::memmem(data, 5, pattern, 2);
  const void* pLast = memory_search::memrmem(data, 5, pattern, 2);

  EXPECT_EQ(data + 1, pFirst);
  EXPECT_EQ(data + 3, pLast);
}
