// The record of a file in the manifest of an encrypted backup: a property list of the keyed archiver.
#include <algorithm>
#include <memory>

#include "decrypt/archived_file.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  // A copy of the exact length, so that reading beyond its end is detected.
  const auto pExact = std::make_unique<uint8_t[]>(nSize);
  std::copy_n(pData, nSize, pExact.get());

  const ArchivedFile file = ReadArchivedFile(pExact.get(), nSize);

  Require(file.wrappedKey.size() <= nSize, "a key isn't longer than its record");
  Require(file.bWhole || file.wrappedKey.empty(), "a damaged record has no key");
  return 0;
}
