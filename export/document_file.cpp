#include "export/document_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "common/file.h"
#include "common/text.h"

namespace {

/// Takes away a file that could not be written whole: under its name, people would take it for the whole.
/// What is not a regular file stays: a device or a pipe of the user's.
void RemoveFragment(const std::string& strPath) {
  struct stat info;
  if (lstat(strPath.c_str(), &info) == 0 && S_ISREG(info.st_mode)) unlink(strPath.c_str());
}

}  // namespace

int WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts) {
  errno = 0;
  std::ofstream file(strPath, std::ios::binary | std::ios::trunc);
  if (!file) return errno;
  for (const std::string* pPart : parts)
    file.write(pPart->data(), static_cast<std::streamsize>(pPart->size()));
  file.close();
  if (file) return 0;
  const int nError = errno != 0 ? errno : EIO;
  RemoveFragment(strPath);
  return nError;
}

TextFile::TextFile(const char16_t* pPath)
    : m_strPath(Unicode2Ansi(pPath)), m_pFile(_wfopen(pPath, L"w+,ccs=UTF-8")) {
  Keep(!m_pFile);
}

TextFile::~TextFile() {
  Close();
}

void TextFile::Write(const std::string& strText) {
  if (m_pFile) Keep(fwrite(strText.data(), 1, strText.size(), m_pFile) != strText.size());
}

void TextFile::Flush() {
  if (m_pFile) Keep(fflush(m_pFile) != 0);
}

int TextFile::Close() {
  const bool bWasOpen = m_pFile != nullptr;
  if (m_pFile) Keep(fclose(m_pFile) != 0);
  m_pFile = nullptr;
  if (bWasOpen && m_nError != 0) RemoveFragment(m_strPath);
  return m_nError;
}

void TextFile::Keep(bool bFailed) {
  if (bFailed && m_nError == 0) m_nError = errno != 0 ? errno : EIO;
}
