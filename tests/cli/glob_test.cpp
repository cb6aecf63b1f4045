#include "cli/glob.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>

using namespace orvandel;

namespace {

struct GlobCase {
  const char* pszPattern;
  const char* pszName;
  bool bMatches;
  bool bFolder = false;
};

void PrintTo(const GlobCase& row, std::ostream* pStream) {
  *pStream << row.pszPattern << " and " << row.pszName << (row.bFolder ? "/" : "");
}

class GlobTable : public testing::TestWithParam<GlobCase> {};

std::string Repeated(const std::string& strText, int nTimes) {
  std::string strResult;
  for (int i = 0; i < nTimes; ++i) strResult += strText;
  return strResult;
}

}  // namespace

TEST_P(GlobTable, MatchesAsDocumented) {
  const Glob glob(GetParam().pszPattern);

  EXPECT_EQ(GetParam().bMatches, glob.Matches(GetParam().pszName, GetParam().bFolder));
}

INSTANTIATE_TEST_SUITE_P(
    WithoutSlash, GlobTable,
    testing::Values(GlobCase{"a.txt", "Home/x/a.txt", true}, GlobCase{"a.txt", "a.txt", true},
                    GlobCase{"a.txt", "Home/x/b/a.txt", true}, GlobCase{"a.txt", "Home/a.txt/b", false},
                    GlobCase{"a.txt", "Home/aa.txt", false}, GlobCase{"*.HEIC", "Home/DCIM/IMG_1.HEIC", true},
                    GlobCase{"*.HEIC", "Home/DCIM/IMG_1.heic", false}, GlobCase{"*", "Home", true},
                    GlobCase{"*", "Home/.hidden", true}, GlobCase{"**", "Home/a/b", true},
                    GlobCase{"a**b", "Home/axxb", true}, GlobCase{"a**b", "Home/ax/xb", false},
                    GlobCase{"Home", "Home/a", false}, GlobCase{"Home", "Home", true, true}));

INSTANTIATE_TEST_SUITE_P(
    WithSlash, GlobTable,
    testing::Values(GlobCase{"/a.txt", "a.txt", true}, GlobCase{"/a.txt", "Home/a.txt", false},
                    GlobCase{"Home/a", "Home/a", true}, GlobCase{"/Home/a", "Home/a", true},
                    GlobCase{"Home/a", "x/Home/a", false}, GlobCase{"Home/a", "Home/a/b", false},
                    GlobCase{"Home/*", "Home/a", true}, GlobCase{"Home/*", "Home/a/b", false},
                    GlobCase{"Home/*", "Home", false}, GlobCase{"*/a", "Home/a", true},
                    GlobCase{"*/a", "Home/x/a", false}, GlobCase{"Home//a", "Home//a", true},
                    GlobCase{"Home//a", "Home/a", false}, GlobCase{"/", "Home", false, true},
                    GlobCase{"/*", "Home", true}, GlobCase{"/*", "Home/a", false}));

INSTANTIATE_TEST_SUITE_P(
    AnyDepth, GlobTable,
    testing::Values(GlobCase{"**/*.HEIC", "Home/DCIM/100/IMG_1.HEIC", true}, GlobCase{"**/a", "a", true},
                    GlobCase{"**/a", "x/y/a", true}, GlobCase{"**/a/b", "x/a/a/b", true},
                    GlobCase{"**/a/b", "x/a/c/b", false}, GlobCase{"Home/**", "Home/a", true},
                    GlobCase{"Home/**", "Home/a/b", true}, GlobCase{"Home/**", "Home", false, true},
                    GlobCase{"Home/**", "HomeX/a", false}, GlobCase{"Home/**/b", "Home/b", true},
                    GlobCase{"Home/**/b", "Home/x/y/b", true}, GlobCase{"Home/**/b", "Home/x/y/bb", false},
                    GlobCase{"Home/**/**/b", "Home/b", true}, GlobCase{"**/x/**/y", "a/x/b/x/c/y", true},
                    GlobCase{"**/x/**/y", "a/y/x", false}, GlobCase{"/**", "Home/a", true},
                    GlobCase{"/**/", "Home/a", false}, GlobCase{"/**/", "Home/a", true, true},
                    GlobCase{"Home/a**/b", "Home/ax/b", true}, GlobCase{"Home/a**/b", "Home/ax/y/b", false}));

INSTANTIATE_TEST_SUITE_P(FoldersOnly, GlobTable,
                         testing::Values(GlobCase{"DCIM/", "Home/DCIM", true, true},
                                         GlobCase{"DCIM/", "Home/DCIM", false},
                                         GlobCase{"DCIM/", "Home/DCIM/a", false, true},
                                         GlobCase{"/Home/*/", "Home/a", true, true},
                                         GlobCase{"DCIM", "Home/DCIM", true, true}));

INSTANTIATE_TEST_SUITE_P(Characters, GlobTable,
                         testing::Values(GlobCase{"?", "Home/a", true}, GlobCase{"?", "Home/ab", false},
                                         GlobCase{"?", "Home/", false}, GlobCase{"a?c", "a/c", false},
                                         GlobCase{"a?c",
                                                  "a\xC3\xBC"
                                                  "c",
                                                  true},
                                         GlobCase{"a?c",
                                                  "a\xE6\x96\x87"
                                                  "c",
                                                  true},
                                         GlobCase{"a?c",
                                                  "a\xF0\x9F\x98\x80"
                                                  "c",
                                                  true},
                                         GlobCase{"a??c",
                                                  "a\xC3\xBC"
                                                  "c",
                                                  false},
                                         GlobCase{"a?c",
                                                  "a\xFF"
                                                  "c",
                                                  true},
                                         GlobCase{"a??c",
                                                  "a\xC3\xC3"
                                                  "c",
                                                  true},
                                         GlobCase{"*?", "\xC3\xBC", true}, GlobCase{"*??", "\xC3\xBC", false},
                                         GlobCase{"*\xC3\xBC*",
                                                  "a\xC3\xBC"
                                                  "b",
                                                  true},
                                         GlobCase{"a*b*c", "aXbYbZc", true},
                                         GlobCase{"a*b*c", "aXbYbZd", false}, GlobCase{"*a", "aaa", true},
                                         GlobCase{"*ab", "aab", true}, GlobCase{"a*", "a", true}));

INSTANTIATE_TEST_SUITE_P(
    Sets, GlobTable,
    testing::Values(GlobCase{"[abc]", "b", true}, GlobCase{"[abc]", "d", false},
                    GlobCase{"[a-c]x", "bx", true}, GlobCase{"[a-c]x", "dx", false},
                    GlobCase{"[!a-c]x", "dx", true}, GlobCase{"[!a-c]x", "bx", false},
                    GlobCase{"[^a]", "b", true}, GlobCase{"[^a]", "a", false}, GlobCase{"[]]", "]", true},
                    GlobCase{"[]a]", "a", true}, GlobCase{"[!]]", "]", false}, GlobCase{"[a-]", "-", true},
                    GlobCase{"[a-]", "b", false}, GlobCase{"[-a]", "-", true}, GlobCase{"[\\]]", "]", true},
                    GlobCase{"[a\\-c]", "b", false}, GlobCase{"[a\\-c]", "-", true},
                    GlobCase{"[c-a]", "b", false}, GlobCase{"[\xC3\xA4-\xC3\xBC]", "\xC3\xB6", true},
                    GlobCase{"[\xC3\xA4-\xC3\xBC]", "a", false}, GlobCase{"[!a]", "\xE6\x96\x87", true},
                    GlobCase{"[*?]", "*", true}, GlobCase{"[*?]", "a", false}, GlobCase{"[!x]", "", false},
                    GlobCase{"a[", "a[", true}, GlobCase{"[a", "[a", true}, GlobCase{"[a", "a", false},
                    GlobCase{"[!", "[!", true}, GlobCase{"x[ab]*[0-9]", "xb_1", true}));

INSTANTIATE_TEST_SUITE_P(Escapes, GlobTable,
                         testing::Values(GlobCase{"\\*", "*", true}, GlobCase{"\\*", "a", false},
                                         GlobCase{"\\?", "?", true}, GlobCase{"\\?", "a", false},
                                         GlobCase{"\\[a]", "[a]", true}, GlobCase{"\\[a]", "a", false},
                                         GlobCase{"\\\\", "\\", true}, GlobCase{"a\\", "a\\", true},
                                         GlobCase{"\\a", "a", true}, GlobCase{"Home/\\**", "Home/*x", true},
                                         GlobCase{"Home/\\**", "Home/x", false}, GlobCase{"!a", "!a", true},
                                         GlobCase{"#a", "#a", true}));

TEST(GlobTime, OfManyStarsGrowsOnlyWithTheProductOfTheLengths) {
  const Glob glob(Repeated("a*", 1000) + Repeated("a", 1000) + "b");
  const std::string strName = Repeated("a", 20000);
  const auto start = std::chrono::steady_clock::now();

  const bool bMatches = glob.Matches(strName, false);

  EXPECT_FALSE(bMatches);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(GlobTime, OfManyDepthsGrowsOnlyWithTheProductOfTheLengths) {
  const Glob glob(Repeated("**/a/", 500) + Repeated("a/", 500) + "b");
  const std::string strName = Repeated("a/", 10000) + "c";
  const auto start = std::chrono::steady_clock::now();

  const bool bMatches = glob.Matches(strName, false);

  EXPECT_FALSE(bMatches);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}
