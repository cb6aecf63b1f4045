// What the manifest of an encrypted backup says of a file: a property list of the keyed archiver.
#include <algorithm>
#include <memory>

#include "decrypt/property_list.h"
#include "fuzz/scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  // A copy of the exact length, so that one byte too far is found.
  const auto pExact = std::make_unique<uint8_t[]>(nSize);
  std::copy_n(pData, nSize, pExact.get());

  const ArchivedFile file = ReadArchivedFile(pExact.get(), nSize);

  Require(file.wrappedKey.size() <= nSize, "a key isn't longer than the record it stands in");
  Require(file.bWhole || file.wrappedKey.empty(), "a damaged record gives no key");
  return 0;
}
