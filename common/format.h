#pragma once
#include <string>

/// Formats a size in bytes: "1023 Bytes", "1.50 KB", up to " TB", in units of 1024.
std::string GetFileSizeString(long long nSize);

/// Formats a duration in seconds as "hh:mm:ss"; hours may have more than two digits.
std::string GetTimeStringA(long long nSeconds);

/// Same as above, with one character per wchar_t (not UTF-16).
std::wstring GetTimeString(long long nSeconds);

namespace orvandel {

/// Formats a time as "YYYY-MM-DD HH:MM:SS" in UTC, like SQLite's datetime: rounded to milliseconds first.
/// @param dSeconds since 1970. @return empty for a time that isn't in the years 0 to 9999.
std::string UtcDateText(double dSeconds);

}  // namespace orvandel

/// vswprintf into a string of at most 4095 characters; a longer result gives an empty string.
/// @param pFormat one character per wchar_t. @return the number of characters, or -1.
int rsb_wsprintf(std::wstring& wstrBuffer, const wchar_t* pFormat, ...);
