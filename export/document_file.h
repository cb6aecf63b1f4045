#pragma once
#include <cstdio>
#include <initializer_list>
#include <string>

/// Writes a page in one go. One that can't be written whole is removed.
/// @param strPath narrow. @return 0, or the system's error number.
int WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts);

/// A text file that is written piece by piece. A stream that can't be opened takes no text, and one that
/// can't be written whole is removed when it is closed.
class TextFile {
 public:
  /// @param pPath UTF-16.
  explicit TextFile(const char16_t* pPath);
  ~TextFile();
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  bool IsOpen() const { return m_pFile != nullptr; }
  /// Narrow text alone: the system's streams refuse one kind of text once they have taken the other.
  void Write(const std::string& strText);
  void Flush();
  /// Closes the file. @return 0, or the error number of the first step that failed, opening included.
  int Close();

 private:
  void Keep(bool bFailed);

  std::string m_strPath;
  FILE* m_pFile;
  int m_nError = 0;
};
