#include "common/format.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <cwchar>

namespace {

struct SizeUnit {
  long long nBelow;  // the first unit whose limit exceeds the size is used
  double dDivisor;
  const char* pszUnit;
};

constexpr SizeUnit kSizeUnits[] = {
    {1LL << 20, 1024.0, " KB"},
    {1LL << 30, 1048576.0, " MB"},
    {1LL << 40, 1073741824.0, " GB"},
};
constexpr SizeUnit kLargestUnit = {0, 1099511627776.0, " TB"};

struct Duration {
  long long nHours, nMinutes, nSeconds;
};

Duration SplitDuration(long long nSeconds) {
  if (nSeconds < 60) return {0, 0, nSeconds};  // negative values too
  return {nSeconds / 3600, nSeconds % 3600 / 60, nSeconds % 60};
}

}  // namespace

std::string GetFileSizeString(long long nSize) {
  char szText[64];
  if (nSize < 1024) {
    snprintf(szText, sizeof szText, "%lld Bytes", nSize);
    return szText;
  }
  SizeUnit unit = kLargestUnit;
  for (const SizeUnit& candidate : kSizeUnits) {
    if (nSize < candidate.nBelow) {
      unit = candidate;
      break;
    }
  }
  snprintf(szText, sizeof szText, "%.2f%s", static_cast<double>(nSize) / unit.dDivisor, unit.pszUnit);
  return szText;
}

std::string GetTimeStringA(long long nSeconds) {
  const Duration duration = SplitDuration(nSeconds);
  char szText[64];
  snprintf(szText, sizeof szText, "%02lld:%02lld:%02lld", duration.nHours, duration.nMinutes,
           duration.nSeconds);
  return szText;
}

std::wstring GetTimeString(long long nSeconds) {
  const Duration duration = SplitDuration(nSeconds);
  std::wstring wstrText;
  rsb_wsprintf(wstrText, L"%02lld:%02lld:%02lld", duration.nHours, duration.nMinutes, duration.nSeconds);
  return wstrText;
}

int rsb_wsprintf(std::wstring& wstrBuffer, const wchar_t* pFormat, ...) {
  static constexpr size_t kLimit = 4096;
  wchar_t szText[kLimit];
  va_list arguments;
  va_start(arguments, pFormat);
  const int nLength = vswprintf(szText, kLimit, pFormat, arguments);
  va_end(arguments);
  wstrBuffer.assign(szText, nLength > 0 ? static_cast<size_t>(nLength) : 0);
  return nLength;
}

namespace orvandel {

std::string UtcDateText(double dSeconds) {
  static constexpr double kFirst = -62167219200000.0, kEnd = 253402300800000.0;  // milliseconds since 1970
  const double dMilliseconds = std::floor(dSeconds * 1000 + 0.5);
  if (!(dMilliseconds >= kFirst && dMilliseconds < kEnd)) return {};
  const auto nTime = static_cast<time_t>(std::floor(dMilliseconds / 1000));
  tm parts{};
  gmtime_r(&nTime, &parts);
  std::string strDate = "0000-00-00 00:00:00";
  const auto put = [&](size_t nPlace, int nDigits, int nValue) {
    for (; nDigits > 0; nValue /= 10)
      strDate[nPlace + static_cast<size_t>(--nDigits)] = static_cast<char>('0' + nValue % 10);
  };
  put(0, 4, parts.tm_year + 1900);
  put(5, 2, parts.tm_mon + 1);
  put(8, 2, parts.tm_mday);
  put(11, 2, parts.tm_hour);
  put(14, 2, parts.tm_min);
  put(17, 2, parts.tm_sec);
  return strDate;
}

}  // namespace orvandel
