#include "common/format.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <random>

namespace {

struct SizeCase {
  const char* pszName;
  long long nSize;
  const char* pszText;
};

struct DurationCase {
  const char* pszName;
  long long nSeconds;
  const char* pszText;
};

const SizeCase kSizes[] = {{"Nothing", 0, "0 Bytes"},
                           {"OneByte", 1, "1 Bytes"},
                           {"BelowZero", -5, "-5 Bytes"},
                           {"LastPlainByte", 1023, "1023 Bytes"},
                           {"FirstKilobyte", 1024, "1.00 KB"},
                           {"KilobyteAndAHalf", 1536, "1.50 KB"},
                           {"LastKilobyte", 1048575, "1024.00 KB"},
                           {"FirstMegabyte", 1048576, "1.00 MB"},
                           {"RoundedMegabyte", 1234567, "1.18 MB"},
                           {"LastMegabyte", 1073741823, "1024.00 MB"},
                           {"FirstGigabyte", 1073741824, "1.00 GB"},
                           {"GigabytesBeyond32Bits", 5368709120, "5.00 GB"},
                           {"LastGigabyte", 1099511627775, "1024.00 GB"},
                           {"FirstTerabyte", 1099511627776, "1.00 TB"},
                           {"BeyondTerabytes", 1125899906842624, "1024.00 TB"}};

const DurationCase kDurations[] = {
    {"Nothing", 0, "00:00:00"},          {"OneDigit", 7, "00:00:07"},
    {"LastSecond", 59, "00:00:59"},      {"FirstMinute", 60, "00:01:00"},
    {"MinuteAndSecond", 61, "00:01:01"}, {"LastMinute", 3599, "00:59:59"},
    {"FirstHour", 3600, "01:00:00"},     {"AllThree", 3723, "01:02:03"},
    {"WholeDay", 86399, "23:59:59"},     {"HundredHours", 360000, "100:00:00"},
    {"BelowZero", -5, "00:00:-5"},       {"FarBelowZero", -3600, "00:00:-3600"}};

}  // namespace

TEST(FileSize, IsWrittenWithItsUnit) {
  for (const SizeCase& row : kSizes) {
    SCOPED_TRACE(row.pszName);
    const std::string strText = GetFileSizeString(row.nSize);

    EXPECT_EQ(row.pszText, strText) << row.nSize;
  }
}

TEST(Duration, IsWrittenAsHoursMinutesSeconds) {
  for (const DurationCase& row : kDurations) {
    SCOPED_TRACE(row.pszName);
    const std::string strText = GetTimeStringA(row.nSeconds);

    EXPECT_EQ(row.pszText, strText) << row.nSeconds;
  }
}

TEST(Duration, IsTheSameInRealWideText) {
  for (const DurationCase& row : kDurations) {
    SCOPED_TRACE(row.pszName);
    const std::wstring wstrText = GetTimeString(row.nSeconds);

    const std::string strExpected = row.pszText;
    EXPECT_EQ(std::wstring(strExpected.begin(), strExpected.end()), wstrText) << row.nSeconds;
  }
}

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

namespace {

struct DateCase {
  double dSeconds;
  const char* pszDate;
};

void PrintTo(const DateCase& one, std::ostream* pStream) {
  *pStream << one.dSeconds;
}

class UtcDate : public testing::TestWithParam<DateCase> {};

}  // namespace

TEST_P(UtcDate, IsFormatted) {
  EXPECT_EQ(GetParam().pszDate, orvandel::UtcDateText(GetParam().dSeconds));
}

INSTANTIATE_TEST_SUITE_P(
    All, UtcDate,
    testing::Values(DateCase{0, "1970-01-01 00:00:00"}, DateCase{978307200, "2001-01-01 00:00:00"},
                    DateCase{951782400, "2000-02-29 00:00:00"}, DateCase{1388534399, "2013-12-31 23:59:59"},
                    DateCase{-1, "1969-12-31 23:59:59"}, DateCase{0.9994, "1970-01-01 00:00:00"},
                    DateCase{0.9996, "1970-01-01 00:00:01"}, DateCase{-0.25, "1969-12-31 23:59:59"},
                    DateCase{-62167219200.0, "0000-01-01 00:00:00"}, DateCase{-62167219201.0, ""},
                    DateCase{253402300799.0, "9999-12-31 23:59:59"}, DateCase{253402300800.0, ""},
                    DateCase{1e300, ""}, DateCase{-1e300, ""},
                    DateCase{-std::numeric_limits<double>::infinity(), ""},
                    DateCase{std::numeric_limits<double>::quiet_NaN(), ""}));

TEST(UtcDateAndSqlite, AreEqual) {
  sqlite3* pStore = nullptr;
  sqlite3_stmt* pStatement = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(":memory:", &pStore));
  ASSERT_EQ(SQLITE_OK,
            sqlite3_prepare_v2(pStore, "select datetime(?, 'unixepoch')", -1, &pStatement, nullptr));
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> seconds(-62167219200.0, 253402300799.0);

  for (int i = 0; i < 20000; ++i) {
    const double dSeconds = i % 2 == 0 ? std::floor(seconds(random)) : seconds(random);
    sqlite3_reset(pStatement);
    sqlite3_bind_double(pStatement, 1, dSeconds);
    ASSERT_EQ(SQLITE_ROW, sqlite3_step(pStatement));
    ASSERT_EQ(std::string(reinterpret_cast<const char*>(sqlite3_column_text(pStatement, 0))),
              orvandel::UtcDateText(dSeconds))
        << std::setprecision(17) << dSeconds;
  }
  sqlite3_finalize(pStatement);
  sqlite3_close(pStore);
}
