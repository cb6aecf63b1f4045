#include "export/replace.h"

#include <gtest/gtest.h>

using namespace orvandel;

namespace {

struct ReplaceCase {
  const char* pszName;
  const char* pszText;
  const char* pszFrom;
  const char* pszTo;
  const char* pszExpected;
};

void PrintTo(const ReplaceCase& replacement, std::ostream* pStream) {
  *pStream << '"' << replacement.pszText << "\", " << replacement.pszFrom << " to " << replacement.pszTo;
}

class Replacement : public testing::TestWithParam<ReplaceCase> {};

}  // namespace

TEST_P(Replacement, GoesOnBehindWhatWasPutIn) {
  std::string strText = GetParam().pszText;

  ReplaceEvery(strText, GetParam().pszFrom, GetParam().pszTo);

  EXPECT_EQ(GetParam().pszExpected, strText);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Replacement,
    testing::Values(ReplaceCase{"NoHit", "plain", "{|t|}", "x", "plain"},
                    ReplaceCase{"EmptyText", "", "{|t|}", "x", ""},
                    ReplaceCase{"WholeText", "{|t|}", "{|t|}", "x", "x"},
                    ReplaceCase{"BothEnds", "{|t|}-{|t|}", "{|t|}", "long text", "long text-long text"},
                    ReplaceCase{"SideBySide", "{|t|}{|t|}", "{|t|}", "x", "xx"},
                    ReplaceCase{"ByNothing", "a{|t|}b{|t|}", "{|t|}", "", "ab"},
                    ReplaceCase{"ByItself", "a{|t|}b", "{|t|}", "{|t|}", "a{|t|}b"},
                    ReplaceCase{"ByATextWithTheToken", "{|t|}{|t|}", "{|t|}", "<{|t|}>", "<{|t|}><{|t|}>"},
                    ReplaceCase{"TokenThatArisesInFront", "{{|t|}|t|}", "{|t|}", "", "{|t|}"},
                    ReplaceCase{"Overlapping", "aaa", "aa", "b", "ba"},
                    ReplaceCase{"LineFeeds", "1\n2\n\n3", "\n", "<br />", "1<br />2<br /><br />3"},
                    ReplaceCase{"OtherCase", "{|T|}", "{|t|}", "x", "{|T|}"}),
    [](const auto& info) { return std::string(info.param.pszName); });
