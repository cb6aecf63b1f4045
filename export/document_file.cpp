#include "export/document_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "common/file.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr unsigned int kRights = 0666;  // the umask applies, as for any document

/// Removes a partly written file, which could be mistaken for a complete one. Anything but a regular file
/// stays, such as a device or a pipe.
void RemoveFragment(const std::string& strPath) {
  struct stat info;
  if (lstat(strPath.c_str(), &info) == 0 && S_ISREG(info.st_mode)) unlink(strPath.c_str());
}

}  // namespace

Problem WritePage(const std::string& strPath, std::initializer_list<const std::string*> parts) {
  TextFile file(Ansi2Unicode(strPath.c_str()).c_str());
  for (const std::string* pPart : parts) file.Write(*pPart);
  return file.Close();
}

TextFile::TextFile(const char16_t* pPath) : m_strPath(Unicode2Ansi(pPath)) {
  if (EntryExists(m_strPath)) {
    m_pFile = _wfopen(pPath, L"w+,ccs=UTF-8");
  } else {
    Result<NewFile> newFile = NewFile::Create(m_strPath, kRights);
    if (!newFile) {
      m_problem = newFile.Error();
      return;
    }
    m_newFile.emplace(std::move(*newFile));
    // A duplicate, since closing the stream closes its descriptor.
    m_pFile = fdopen(fcntl(m_newFile->Get(), F_DUPFD_CLOEXEC, 0), "w");
  }
  Keep(Problem::Step::Create, !m_pFile);
}

TextFile::~TextFile() {
  if (!m_pFile) return;
  // Not closed, because of an exception: the file is incomplete.
  Keep(Problem::Step::Write, true);
  Close();
}

void TextFile::Write(const std::string& strText) {
  if (m_pFile)
    Keep(Problem::Step::Write, fwrite(strText.data(), 1, strText.size(), m_pFile) != strText.size());
}

void TextFile::Flush() {
  if (m_pFile) Keep(Problem::Step::Write, fflush(m_pFile) != 0);
}

Problem TextFile::Close() {
  if (!m_pFile) return m_problem;
  Keep(Problem::Step::Write, fclose(m_pFile) != 0);
  m_pFile = nullptr;
  if (m_newFile && !m_problem) m_problem = m_newFile->Finish();
  if (!m_newFile && m_problem) RemoveFragment(m_strPath);
  m_newFile.reset();
  return m_problem;
}

void TextFile::Keep(Problem::Step step, bool bFailed) {
  if (bFailed && !m_problem) m_problem = SystemProblem(step, m_strPath, errno != 0 ? errno : EIO);
}

}  // namespace orvandel
