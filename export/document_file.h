#pragma once
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string>

#include "common/new_file.h"

/// Writes a page in one go, over one that exists. One that can't be written whole isn't there at all.
/// @param strPath narrow.
Problem WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts);

/// A text file that is written piece by piece. A stream that can't be opened takes no text, and a file that
/// can't be written whole isn't there at all.
class TextFile {
 public:
  /// @param pPath UTF-16. An existing file is truncated.
  explicit TextFile(const char16_t* pPath);
  ~TextFile();
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  bool IsOpen() const { return m_pFile != nullptr; }
  /// Narrow text alone: the system's streams refuse one kind of text once they have taken the other.
  void Write(const std::string& strText);
  void Flush();
  /// Closes the file. @return the first problem that there was, opening included.
  Problem Close();

 private:
  /// Keeps the first problem. @param bFailed whether there is one, with errno set.
  void Keep(Problem::Step step, bool bFailed);

  std::string m_strPath;
  std::optional<NewFile> m_newFile;  // none for a file that exists
  FILE* m_pFile = nullptr;
  Problem m_problem;
};
