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

long long OffsetOf(const void* pHit, const std::string& strData) {
  return pHit ? static_cast<const char*>(pHit) - strData.data() : kNowhere;
}

const SearchCase kSearches[] = {{"OneHit", "abcdef", "cd", 2, 2},
                                {"TwoHits", "abcabc", "bc", 1, 4},
                                {"HitAtTheFront", "abcdef", "abc", 0, 0},
                                {"HitAtTheEnd", "abcdef", "ef", 4, 4},
                                {"HitsThatOverlap", "aaaa", "aa", 0, 2},
                                {"AllOfIt", "abc", "abc", 0, 0},
                                {"HalfAHitBeforeTheHit", "ababac", "abac", 2, 2},
                                {"NoHit", "abcdef", "xy", kNowhere, kNowhere},
                                {"PatternLongerThanTheData", "ab", "abc", kNowhere, kNowhere},
                                {"EmptyPattern", "abc", "", kNowhere, 3},
                                {"EmptyData", "", "a", kNowhere, kNowhere}};

}  // namespace

TEST(MemorySearch, ForwardFindsTheFirstHit) {
  for (const SearchCase& row : kSearches) {
    SCOPED_TRACE(row.pszName);
    const std::string strData = row.pszData;
    const std::string strPattern = row.pszPattern;

    const void* pHit =
        memory_search::memmem(strData.data(), strData.size(), strPattern.data(), strPattern.size());

    EXPECT_EQ(row.nFirst, OffsetOf(pHit, strData));
  }
}

TEST(MemorySearch, BackwardFindsTheLastHit) {
  for (const SearchCase& row : kSearches) {
    SCOPED_TRACE(row.pszName);
    const std::string strData = row.pszData;
    const std::string strPattern = row.pszPattern;

    const void* pHit =
        memory_search::memrmem(strData.data(), strData.size(), strPattern.data(), strPattern.size());

    EXPECT_EQ(row.nLast, OffsetOf(pHit, strData));
  }
}

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
