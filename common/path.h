#pragma once
#include <string>
#include <unordered_map>

/// Splits a path at "/". The drive is always empty; the folder ends with "/"; the extension includes its ".".
/// "/a/b/" has the folder "/a/b/" and an empty name. A null path gives four empty strings.
void _splitpath(const char* pszPath, std::string& strDrive, std::string& strFolder, std::string& strName,
                std::string& strExtension);

/// Gets the text after the last "." of a name.
/// @return 0, or 87 for a null argument or a name without a ".", with strExtension unchanged.
int GetExtendName(const char* pszName, std::string& strExtension);

/// Finds a path that doesn't exist yet: the path itself, or with "(1)", "(2)" and so on inserted before the
/// extension. Nothing is created or locked, so the caller must be the only writer of the folder.
/// @param pszPath narrow. @return UTF-16.
std::u16string GetRealFileName(const char* pszPath);

namespace orvandel {

/// Same as above for many files. Remembers the last number used for each path, so a thousand files of one
/// name don't try a thousand names each. One object per recovery. Not thread-safe.
class FreeNames {
 public:
  /// @param strPath narrow. @return narrow.
  std::string Take(const std::string& strPath);

 private:
  std::unordered_map<std::string, unsigned int> m_lastNumbers;  // per path; lower ones are taken
};

/// True when a component of the path is "..".
bool HasParentStep(const std::string& strPath);

}  // namespace orvandel
