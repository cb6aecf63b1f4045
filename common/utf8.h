#pragma once
#include <cstddef>

namespace orvandel {

/// Length of a valid character of UTF-8 beyond ASCII, in bytes; 0 for anything else, such as an overlong form
/// or a surrogate.
/// @param nSize bytes from p on, at least 1; no more are read.
inline size_t Utf8Length(const unsigned char* p, size_t nSize) {
  const unsigned char n = p[0];
  const size_t nLength = n >= 0xC2 && n <= 0xDF   ? 2
                         : n >= 0xE0 && n <= 0xEF ? 3
                         : n >= 0xF0 && n <= 0xF4 ? 4
                                                  : 0;
  if (nLength == 0 || nLength > nSize) return 0;
  const unsigned char nLowest = n == 0xE0 ? 0xA0 : n == 0xF0 ? 0x90 : 0x80;
  const unsigned char nHighest = n == 0xED ? 0x9F : n == 0xF4 ? 0x8F : 0xBF;
  if (p[1] < nLowest || p[1] > nHighest) return 0;
  for (size_t k = 2; k < nLength; ++k) {
    if ((p[k] & 0xC0) != 0x80) return 0;
  }
  return nLength;
}

}  // namespace orvandel
