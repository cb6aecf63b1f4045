#include "extract/typed_stream.h"

#include <gmock/gmock.h>

#include "tests/extract/attributed_bytes.h"

using namespace orvandel;
using namespace orvandel::attributed_bytes;

namespace {

/// The result for a copy of the exact length, so that a sanitizer finds reading beyond its end.
std::string TextOf(const std::string& strStream) {
  const std::vector<char> exact(strStream.begin(), strStream.end());
  return std::string(AttributedText({exact.data(), exact.size()}));
}

class AttributedTextOf : public testing::TestWithParam<std::string> {};

struct DamageCase {
  const char* pszName;
  std::string strStream;
};

void PrintTo(const DamageCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class DamagedAttributedText : public testing::TestWithParam<DamageCase> {};

}  // namespace

TEST_P(AttributedTextOf, StringIsReadFromBothKindsOfArchive) {
  EXPECT_EQ(GetParam(), TextOf(Immutable(GetParam())));
  EXPECT_EQ(GetParam(), TextOf(Mutable(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(All, AttributedTextOf,
                         testing::Values(""s, "a"s, "Hello world"s, "Grüße 🏔️ 京都"s,
                                         "\xEF\xBF\xBC"s, "\xEF\xBF\xBCpart\xEF\xBF\xBC"s, "zero\0inside"s,
                                         "+\x84\x01+\x86\x84"s, std::string(127, 'x'), std::string(128, 'x'),
                                         std::string(255, 'y'), std::string(32767, 'z'),
                                         std::string(32768, 'z'), std::string(70000, 'z')));

TEST(AttributedText, LengthsMayBeLongerThanNeeded) {
  EXPECT_EQ("abc", TextOf(kHead + kImmutable + kString + "\x81\x03\x00"s + "abc" + kRest));
  EXPECT_EQ("abc", TextOf(kHead + kImmutable + kString + "\x82\x03\x00\x00\x00"s + "abc" + kRest));
}

TEST(AttributedText, LengthOf16BitsIsNotNegative) {
  const std::string strText(0xFFFE, 'a');

  EXPECT_EQ(strText, TextOf(kHead + kImmutable + kString + "\x81\xFE\xFF"s + strText + kRest));
}

TEST(AttributedText, MayMixMutableAndImmutable) {
  // The base class of the string is the third or the fourth shared object.
  const std::string strMutable = "\x84\x84\x84\x0FNSMutableString\x01\x84\x84\x08NSString\x01\x94\x84\x01+"s;
  const std::string strImmutable = "\x84\x84\x84\x08NSString\x01\x95\x84\x01+"s;

  EXPECT_EQ("abc", TextOf(kHead + kImmutable + strMutable + "\x03" + "abc" + kRest));
  EXPECT_EQ("abc", TextOf(kHead + kMutable + strImmutable + "\x03" + "abc" + kRest));
}

TEST(AttributedText, NeedsNothingBehindTheEndOfTheString) {
  EXPECT_EQ("abc", TextOf(kHead + kImmutable + kString + "\x03" + "abc\x86"));
}

TEST(AttributedText, StreamCutAnywhereBeforeThatIsEmpty) {
  const std::string strWhole = kHead + kImmutable + kString + "\x03" + "abc\x86";

  for (size_t nSize = 0; nSize < strWhole.size(); ++nSize)
    EXPECT_EQ("", TextOf(strWhole.substr(0, nSize))) << nSize << " bytes";
}

TEST_P(DamagedAttributedText, IsEmpty) {
  EXPECT_EQ("", TextOf(GetParam().strStream));
}

INSTANTIATE_TEST_SUITE_P(
    All, DamagedAttributedText,
    testing::Values(
        DamageCase{"another version", "\x04\x0Bstreamtyped\x81\xE9\x03"s + kImmutable + kString +
                                          "\x03"
                                          "abc" +
                                          kRest},
        DamageCase{"another streamer", "\x03\x0Bstreamtyped\x81\xE8\x03"s + kImmutable + kString +
                                           "\x03"
                                           "abc" +
                                           kRest},
        DamageCase{"big-endian", "\x04\x0Btypedstream\x81\x03\xE8"s + kImmutable + kString +
                                     "\x03"
                                     "abc" +
                                     kRest},
        DamageCase{"another outer class",
                   kHead + "\x84\x01@\x84\x84\x84\x07NSArray\x00\x84\x84\x08NSObject\x00\x85\x92"s + kString +
                       "\x03"
                       "abc" +
                       kRest},
        DamageCase{"another inner class", kHead + kImmutable + "\x84\x84\x84\x06NSData\x01\x94\x84\x01+"s +
                                              "\x03"
                                              "abc" +
                                              kRest},
        DamageCase{"no string", kHead + kImmutable + "\x85\x86"},
        DamageCase{"a reference in place of the string", kHead + kImmutable +
                                                             "\x92\x84\x01+\x03"
                                                             "abc" +
                                                             kRest},
        DamageCase{"another type than an object", kHead + "\x84\x01i\x03"s},
        DamageCase{"another type than bytes",
                   kHead + kImmutable + "\x84\x84\x84\x08NSString\x01\x94\x84\x01*\x03"s + "abc" + kRest},
        DamageCase{"a reference to an unknown type", kHead + kImmutable.substr(0, kImmutable.size() - 1) +
                                                         "\x99" + kString +
                                                         "\x03"
                                                         "abc" +
                                                         kRest},
        DamageCase{"a reference to an unknown class",
                   kHead + kImmutable + "\x84\x84\x84\x08NSString\x01\x99\x84\x01+\x03"s + "abc" + kRest},
        DamageCase{"an object in place of a base class",
                   kHead + kImmutable + "\x84\x84\x84\x08NSString\x01\x92\x84\x01+\x03"s + "abc" + kRest},
        DamageCase{"a length beyond the end", kHead + kImmutable + kString +
                                                  "\x7F"
                                                  "abc" +
                                                  kRest.substr(0, 4)},
        DamageCase{"a length of 32 bits beyond the end", kHead + kImmutable + kString +
                                                             "\x82\xFF\xFF\xFF\xFF"
                                                             "abc" +
                                                             kRest},
        DamageCase{"a real number as length",
                   kHead + kImmutable + kString + "\x83\x03\x00\x00\x00"s + "abc" + kRest},
        DamageCase{"a length shorter than the text", kHead + kImmutable + kString +
                                                         "\x02"
                                                         "abc" +
                                                         kRest},
        DamageCase{"a length longer than the text", kHead + kImmutable + kString +
                                                        "\x04"
                                                        "abc" +
                                                        kRest},
        DamageCase{"a negative class version",
                   kHead + kImmutable + "\x84\x84\x84\x08NSString\xFF\x94\x84\x01+\x03"s + "abc" + kRest},
        DamageCase{"a class without a name", kHead + "\x84\x01@\x84\x84\x84\x00\x00\x85\x92"s + kString +
                                                 "\x03"
                                                 "abc" +
                                                 kRest},
        DamageCase{"text without an archive",
                   "84 01 2B 03 abc +\x03"
                   "abc\x86"}));

TEST(AttributedText, EndlessChainOfClassesIsEmpty) {
  std::string strStream = kHead + "\x84\x01@\x84"s;
  for (int i = 0; i < 100000; ++i)
    strStream +=
        "\x84\x84\x01"
        "A\x00"s;

  EXPECT_EQ("", TextOf(strStream));
}
