#include "export/document_file.h"

#include <cerrno>
#include <fstream>

#include "common/file.h"

int WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts) {
  errno = 0;
  std::ofstream file(strPath, std::ios::binary | std::ios::trunc);
  if (!file) return errno;
  for (const std::string* pPart : parts)
    file.write(pPart->data(), static_cast<std::streamsize>(pPart->size()));
  file.close();
  if (file) return 0;
  return errno != 0 ? errno : EIO;
}

TextFile::TextFile(const char16_t* pPath) : m_pFile(_wfopen(pPath, L"w+,ccs=UTF-8")) {
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
  if (m_pFile) Keep(fclose(m_pFile) != 0);
  m_pFile = nullptr;
  return m_nError;
}

void TextFile::Keep(bool bFailed) {
  if (bFailed && m_nError == 0) m_nError = errno != 0 ? errno : EIO;
}
