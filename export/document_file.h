#pragma once
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string>

#include "common/new_file.h"

namespace orvandel {

/// Writes a page, replacing an existing one. On failure the incomplete file is removed.
/// @param strPath narrow.
Problem WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts);

/// A text file written piece by piece. If it can't be opened, Write does nothing; on failure the incomplete
/// file is removed.
class TextFile {
 public:
  /// @param pPath UTF-16; an existing file is truncated.
  explicit TextFile(const char16_t* pPath);
  ~TextFile();
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  bool IsOpen() const { return m_pFile != nullptr; }
  /// Narrow text only: a stdio stream is either narrow or wide.
  void Write(const std::string& strText);
  void Flush();
  /// Closes the file. @return the first problem, including one of opening it.
  Problem Close();

 private:
  /// Records the first problem. @param bFailed true on failure, with errno set.
  void Keep(Problem::Step step, bool bFailed);

  std::string m_strPath;
  std::optional<NewFile> m_newFile;  // not set for an existing file
  FILE* m_pFile = nullptr;
  Problem m_problem;
};

}  // namespace orvandel
