#include <cstring>

#include "extract/file_type.h"

namespace orvandel::memory_search {

const void* memmem(const void* pData, size_t nLength, const void* pPattern, size_t nPatternLength) {
  if (!pData || !pPattern || nPatternLength == 0 || nPatternLength > nLength) return nullptr;
  const char* const pBytes = static_cast<const char*>(pData);
  for (size_t i = 0; i <= nLength - nPatternLength; ++i) {
    if (memcmp(pBytes + i, pPattern, nPatternLength) == 0) return pBytes + i;
  }
  return nullptr;
}

const void* memrmem(const void* pData, size_t nLength, const void* pPattern, size_t nPatternLength) {
  if (!pData || !pPattern || nPatternLength > nLength) return nullptr;
  const char* const pBytes = static_cast<const char*>(pData);
  for (size_t i = nLength - nPatternLength + 1; i-- > 0;) {
    if (memcmp(pBytes + i, pPattern, nPatternLength) == 0) return pBytes + i;
  }
  return nullptr;
}

}  // namespace orvandel::memory_search
