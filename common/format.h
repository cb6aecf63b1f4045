#pragma once
#include <string>

/// A size in bytes for people: "1023 Bytes", "1.50 KB", up to " TB", by factors of 1024.
std::string GetFileSizeString(long long nSize);

/// A duration in seconds as "hh:mm:ss"; hours may take more than two digits.
std::string GetTimeStringA(long long nSeconds);

/// The same as real wide text: one character in each wchar_t, not UTF-16 in disguise.
std::wstring GetTimeString(long long nSeconds);

/// vswprintf into a string of at most 4095 characters; longer text gives an empty one.
/// @param pFormat real wide text. @return the number of characters, or -1.
int rsb_wsprintf(std::wstring& wstrBuffer, const wchar_t* pFormat, ...);
