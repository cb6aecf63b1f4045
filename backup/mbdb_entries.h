#pragma once
#include <cstdint>
#include <functional>
#include <string>

/// One entry of a binary manifest, as stored. The format is documented in docs/manifest-format.md.
struct fileinfo {
  std::string strDomain;
  std::string strPath;
  std::string strLinkTarget;
  std::string strDataHash;  ///< each byte as "%x", without padding
  std::string strEncryptionKey;
  uint16_t nMode = 0;
  uint32_t nInodeHigh = 0;
  uint32_t nInodeLow = 0;
  uint32_t nUserId = 0;
  uint32_t nGroupId = 0;
  uint32_t nModificationTime = 0;
  uint32_t nAccessTime = 0;
  uint32_t nChangeTime = 0;
  uint32_t nFileSizeHigh = 0;
  uint32_t nFileSize = 0;  ///< the low 32 bits
  uint32_t nFlags = 0;
  uint32_t nPropertyCount = 0;
};

namespace orvandel {

/// Calls visit for each entry of a binary manifest, in file order, including directories and links. The
/// record is valid only during the call.
/// @param pPath UTF-16.
/// @return 0, or 87 when the file can't be opened or doesn't begin with the magic. A truncated file gives 0
///         and its complete entries. Problems are reported to the problem handler.
int VisitBinaryManifest(const char16_t* pPath, const std::function<void(const fileinfo&)>& visit);

}  // namespace orvandel
