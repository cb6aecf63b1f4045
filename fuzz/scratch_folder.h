#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

/// A folder of this process in memory where the system has such a place, gone when the process ends by
/// itself. For readers that only take a path.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Without a trailing "/".
  const std::string& Path() const { return m_strPath; }
  /// Writes a file anew; ends the process when that fails. @return its full path.
  std::string Write(const char* pszName, const uint8_t* pData, size_t nSize) const;

 private:
  std::string m_strPath;
};

/// Ends the process as a finding of the fuzzer unless something that always has to hold does so.
/// @param pszWhat what was expected.
void Require(bool bHolds, const char* pszWhat);
