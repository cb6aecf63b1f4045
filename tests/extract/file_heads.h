#pragma once
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "extract/file_type.h"

// Heads of files, one for each way in which a test of the judge can be passed.

/// One byte of a head put to another value.
struct ByteChange {
  size_t nOffset;
  uint8_t nByte;
};

struct FileHead {
  std::string strName;
  int (*pfnTest)(const void*, uint32_t);
  int nType;
  uint32_t nFigure;      ///< the shortest length that the test looks at
  uint32_t nWholeSize;   ///< the length with which this head passes
  std::string strBytes;  ///< zeros follow up to 512 bytes
  std::vector<std::pair<size_t, size_t>>
      signature;  ///< first offsets and sizes of bytes that may not differ at all
  std::vector<ByteChange> failing = {};
  std::vector<ByteChange> passing = {};
  const char* pszExtension =
      nullptr;  ///< of a file that begins so; null where no row of the table leads to the test
};

inline void PrintTo(const FileHead& head, std::ostream* pStream) {
  *pStream << head.strName;
}

/// The head of 512 bytes.
std::string Whole(const FileHead& head);

/// Heads of the tests that the table uses, and of those that it doesn't.
const std::vector<FileHead>& WiredHeads();
const std::vector<FileHead>& UnwiredHeads();
