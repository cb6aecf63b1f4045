#include "common/format.h"

#include <gtest/gtest.h>

namespace {

struct SizeCase {
  const char* pszName;
  long long nSize;
  const char* pszText;
};

void PrintTo(const SizeCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class FileSize : public testing::TestWithParam<SizeCase> {};

struct DurationCase {
  const char* pszName;
  long long nSeconds;
  const char* pszText;
};

void PrintTo(const DurationCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class Duration : public testing::TestWithParam<DurationCase> {};

template <typename Case>
std::string NameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.pszName;
}

}  // namespace

TEST_P(FileSize, IsWrittenWithItsUnit) {
  const SizeCase& row = GetParam();

  const std::string strText = GetFileSizeString(row.nSize);

  EXPECT_EQ(row.pszText, strText) << row.nSize;
}

INSTANTIATE_TEST_SUITE_P(Format, FileSize,
                         testing::Values(SizeCase{"Nothing", 0, "0 Bytes"}, SizeCase{"OneByte", 1, "1 Bytes"},
                                         SizeCase{"BelowZero", -5, "-5 Bytes"},
                                         SizeCase{"LastPlainByte", 1023, "1023 Bytes"},
                                         SizeCase{"FirstKilobyte", 1024, "1.00 KB"},
                                         SizeCase{"KilobyteAndAHalf", 1536, "1.50 KB"},
                                         SizeCase{"LastKilobyte", 1048575, "1024.00 KB"},
                                         SizeCase{"FirstMegabyte", 1048576, "1.00 MB"},
                                         SizeCase{"RoundedMegabyte", 1234567, "1.18 MB"},
                                         SizeCase{"LastMegabyte", 1073741823, "1024.00 MB"},
                                         SizeCase{"FirstGigabyte", 1073741824, "1.00 GB"},
                                         SizeCase{"GigabytesBeyond32Bits", 5368709120, "5.00 GB"},
                                         SizeCase{"LastGigabyte", 1099511627775, "1024.00 GB"},
                                         SizeCase{"FirstTerabyte", 1099511627776, "1.00 TB"},
                                         SizeCase{"BeyondTerabytes", 1125899906842624, "1024.00 TB"}),
                         NameOf<SizeCase>);

TEST_P(Duration, IsWrittenAsHoursMinutesSeconds) {
  const DurationCase& row = GetParam();

  const std::string strText = GetTimeStringA(row.nSeconds);

  EXPECT_EQ(row.pszText, strText) << row.nSeconds;
}

TEST_P(Duration, IsTheSameInRealWideText) {
  const DurationCase& row = GetParam();

  const std::wstring wstrText = GetTimeString(row.nSeconds);

  const std::string strExpected = row.pszText;
  EXPECT_EQ(std::wstring(strExpected.begin(), strExpected.end()), wstrText) << row.nSeconds;
}

INSTANTIATE_TEST_SUITE_P(
    Format, Duration,
    testing::Values(DurationCase{"Nothing", 0, "00:00:00"}, DurationCase{"OneDigit", 7, "00:00:07"},
                    DurationCase{"LastSecond", 59, "00:00:59"}, DurationCase{"FirstMinute", 60, "00:01:00"},
                    DurationCase{"MinuteAndSecond", 61, "00:01:01"},
                    DurationCase{"LastMinute", 3599, "00:59:59"}, DurationCase{"FirstHour", 3600, "01:00:00"},
                    DurationCase{"AllThree", 3723, "01:02:03"}, DurationCase{"WholeDay", 86399, "23:59:59"},
                    DurationCase{"HundredHours", 360000, "100:00:00"},
                    DurationCase{"BelowZero", -5, "00:00:-5"},
                    DurationCase{"FarBelowZero", -3600, "00:00:-3600"}),
    NameOf<DurationCase>);

// The page of the call history shows only this digit.
TEST(WideDuration, ReadAsNarrowTextItEndsBehindItsFirstDigit) {
  const std::wstring wstrShort = GetTimeString(75);
  const std::wstring wstrLong = GetTimeString(360000);

  const std::string strShort = reinterpret_cast<const char*>(wstrShort.c_str());
  const std::string strLong = reinterpret_cast<const char*>(wstrLong.c_str());

  EXPECT_EQ("0", strShort);
  EXPECT_EQ("1", strLong);
}

TEST(WidePrint, NumbersAndTextGoIntoTheFormat) {
  std::wstring wstrText = L"what was there before";

  const int nCount = rsb_wsprintf(wstrText, L"%lld.%S (%s)", 4294967296LL, L"jpg", "narrow");

  EXPECT_EQ(L"4294967296.jpg (narrow)", wstrText);
  EXPECT_EQ(23, nCount);
}

TEST(WidePrint, TextOf4095CharactersFits) {
  std::wstring wstrText;

  const int nCount = rsb_wsprintf(wstrText, L"%4095d", 1);

  EXPECT_EQ(4095, nCount);
  EXPECT_EQ(std::wstring(4094, L' ') + L"1", wstrText);
}

TEST(WidePrint, LongerTextGivesNone) {
  std::wstring wstrText = L"what was there before";

  const int nCount = rsb_wsprintf(wstrText, L"%4096d", 1);

  EXPECT_EQ(-1, nCount);
  EXPECT_EQ(L"", wstrText);
}
