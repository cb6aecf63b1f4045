#pragma once
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "extract/file_type.h"

// Heads of files, one for each way to match a signature.

namespace orvandel {

/// A change of one byte of a head.
struct ByteChange {
  size_t nOffset;
  uint8_t nByte;
};

struct FileHead {
  std::string strName;
  int (*pfnTest)(const void*, uint32_t);
  int nType;
  uint32_t nFigure;      ///< minimum length that the signature checks
  uint32_t nWholeSize;   ///< length with which this head matches
  std::string strBytes;  ///< zero-padded to 512 bytes
  std::vector<std::pair<size_t, size_t>>
      signature;  ///< first offsets and sizes of bytes that may not differ at all
  std::vector<ByteChange> failing = {};
  std::vector<ByteChange> passing = {};
  const char* pszExtension =
      nullptr;  ///< of a file with this head; null if no row of the table uses the signature
};

inline void PrintTo(const FileHead& head, std::ostream* pStream) {
  *pStream << head.strName;
}

/// The head of 512 bytes.
std::string Whole(const FileHead& head);

/// Heads of the signatures that the table uses, and of the others.
const std::vector<FileHead>& WiredHeads();
const std::vector<FileHead>& UnwiredHeads();

}  // namespace orvandel
