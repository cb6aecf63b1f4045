#include "export/document_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "common/file.h"
#include "common/text.h"

namespace {

constexpr unsigned int kRights = 0666;  // less the process's mask, as any program writes documents

/// Takes away a file that could not be written whole: under its name, people would take it for the whole.
/// What is not a regular file stays: a device or a pipe of the user's.
void RemoveFragment(const std::string& strPath) {
  struct stat info;
  if (lstat(strPath.c_str(), &info) == 0 && S_ISREG(info.st_mode)) unlink(strPath.c_str());
}

}  // namespace

int WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts) {
  TextFile file(Ansi2Unicode(strPath.c_str()).c_str());
  for (const std::string* pPart : parts) file.Write(*pPart);
  return file.Close();
}

TextFile::TextFile(const char16_t* pPath) : m_strPath(Unicode2Ansi(pPath)) {
  if (EntryExists(m_strPath)) {
    m_pFile = _wfopen(pPath, L"w+,ccs=UTF-8");
  } else {
    m_pNewFile = std::make_unique<NewFile>(m_strPath, kRights);
    // A descriptor of its own, since closing the stream closes it.
    if (m_pNewFile->Descriptor() != -1)
      m_pFile = fdopen(fcntl(m_pNewFile->Descriptor(), F_DUPFD_CLOEXEC, 0), "w");
  }
  Keep(!m_pFile);
}

TextFile::~TextFile() {
  if (!m_pFile) return;
  // Nobody has finished it: an exception has passed, and what there is isn't the whole.
  Keep(true);
  Close();
}

void TextFile::Write(const std::string& strText) {
  if (m_pFile) Keep(fwrite(strText.data(), 1, strText.size(), m_pFile) != strText.size());
}

void TextFile::Flush() {
  if (m_pFile) Keep(fflush(m_pFile) != 0);
}

int TextFile::Close() {
  if (!m_pFile) return m_nError;
  Keep(fclose(m_pFile) != 0);
  m_pFile = nullptr;
  bool bNamed = false;
  if (m_pNewFile && m_nError == 0) m_nError = m_pNewFile->Finish(bNamed);
  if (!m_pNewFile && m_nError != 0) RemoveFragment(m_strPath);
  m_pNewFile.reset();
  return m_nError;
}

void TextFile::Keep(bool bFailed) {
  if (bFailed && m_nError == 0) m_nError = errno != 0 ? errno : EIO;
}
