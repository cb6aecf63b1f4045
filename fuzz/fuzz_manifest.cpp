// The binary manifest: the input as a file, and as a buffer from which strings are read at any offset.
#include <algorithm>
#include <memory>
#include <random>

#include "backup/manifest.h"
#include "common/text.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

namespace {

constexpr size_t kIdentifierSize = 40;
constexpr int kOffsets = 16;

void ReadFile(const uint8_t* pData, size_t nSize) {
  static const ScratchFolder folder;
  const std::u16string wstrPath = Ansi2Unicode(folder.Write("Manifest.mbdb", pData, nSize).c_str());
  Catalogue entries(1);

  const int nStatus = process_mbdb_file(wstrPath.c_str(), entries);

  Require(nStatus == 0 || (nStatus == 87 && entries.size() == 1), "a rejected file adds no entry");
  for (size_t i = 1; i < entries.size(); ++i) {
    Require(entries[i].strFileId.size() == kIdentifierSize, "an identifier has 40 digits");
    Require(entries[i].strFileName.size() >= 3, "a name contains a domain, \"-\" and a path");
  }
}

/// Reads one string at an offset. @return the offset after it.
template <typename Read>
long long ReadString(Read read, const uint8_t* pData, long long nOffset, long long nSize,
                     size_t nMostPerByte) {
  const long long nStart = nOffset;
  const std::string strText = read(pData, &nOffset, nSize);
  Require(nOffset >= nStart && nOffset <= nSize + 1, "the offset moves forward, at most one beyond the end");
  const auto nRead = static_cast<size_t>(nOffset - nStart);
  Require(strText.size() <= nRead * nMostPerByte, "a text isn't longer than its input");
  Require(nOffset <= nSize || strText.empty(), "an incomplete string is empty");
  return nOffset;
}

void ReadStrings(const uint8_t* pData, size_t nSize) {
  // A copy of the exact length, so that reading beyond its end is detected.
  const auto pExact = std::make_unique<uint8_t[]>(nSize);
  std::copy_n(pData, nSize, pExact.get());
  const auto nEnd = static_cast<long long>(nSize);
  std::minstd_rand random(static_cast<unsigned>(nSize) + (nSize > 0 ? pData[nSize / 2] : 0));
  for (int i = 0; i < kOffsets; ++i) {
    // Up to nSize + 1, the offset after an incomplete string.
    const auto nOffset = static_cast<long long>(random() % (nSize + 2));
    ReadString(getstring, pExact.get(), nOffset, nEnd, 1);
    ReadString(gethash, pExact.get(), nOffset, nEnd, 2);
  }
  for (long long nOffset = 0; nOffset < nEnd;)
    nOffset = ReadString(getstring, pExact.get(), nOffset, nEnd, 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  ReadFile(pData, nSize);
  ReadStrings(pData, nSize);
  return 0;
}
