#pragma once
#include <string>
#include <unordered_map>

/// Splits a "/" path. The drive is always empty; the folder ends in "/"; the extension begins with its ".".
/// The path is always taken to hold a file name: "/a/b/" has the folder "/a/b/" and an empty name.
/// A null path gives four empty texts.
void _splitpath(const char* pszPath, std::string& strDrive, std::string& strFolder, std::string& strName,
                std::string& strExtension);

/// The text behind the last "." of a name.
/// @return 0, or 87 for a null argument or a name without a ".", with strExtension left alone.
int GetExtendName(const char* pszName, std::string& strExtension);

/// A path under which no file exists yet: the path itself, or with "(1)", "(2)" and so on in front of its
/// extension. There is no lock between the test and the creation: the caller is the only writer of the
/// folder.
/// @param pszPath narrow. @return UTF-16.
std::u16string GetRealFileName(const char* pszPath);

/// The same for many files. Remembers the number that each path came to, so that a thousand files of one name
/// don't try a thousand names each. Lives as long as one recovery, on one thread.
class FreeNames {
 public:
  /// @param strPath narrow. @return narrow.
  std::string Take(const std::string& strPath);

 private:
  std::unordered_map<std::string, unsigned int> m_lastNumbers;  // those below are taken
};

/// True for a path with a step "..".
bool HasParentStep(const std::string& strPath);
