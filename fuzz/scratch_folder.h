#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvandel {

/// A temporary folder, in memory if possible, for readers that take a path. Removed on destruction, but not
/// after a crash.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Without a trailing "/".
  const std::string& Path() const { return m_strPath; }
  /// Writes a file, replacing an existing one; aborts on failure. @return its full path.
  std::string Write(const char* pszName, const uint8_t* pData, size_t nSize) const;

 private:
  std::string m_strPath;
};

/// Checks an invariant: aborts, which the fuzzer reports as a finding, if it doesn't hold.
/// @param pszWhat what was expected.
void Require(bool bHolds, const char* pszWhat);

}  // namespace orvandel
