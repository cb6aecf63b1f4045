#include "common/new_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace orvandel {

namespace {

std::string PathOf(const Descriptor& file) {
  return "/proc/self/fd/" + std::to_string(file.Get());
}

}  // namespace

NewFile::NewFile(const std::string& strPath, Descriptor file, bool bNamed)
    : m_strPath(strPath), m_file(std::move(file)), m_bNamed(bNamed) {}

Result<NewFile> NewFile::Create(const std::string& strPath, unsigned int nRights) {
#ifdef O_TMPFILE
  const size_t nSlash = strPath.rfind('/');
  const std::string strFolder = nSlash == std::string::npos ? "." : strPath.substr(0, nSlash + 1);
  Descriptor unnamed(open(strFolder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, nRights));
  if (unnamed.Get() != -1 && access(PathOf(unnamed).c_str(), F_OK) == 0)
    return NewFile(strPath, std::move(unnamed), false);
#endif
  Descriptor named(open(strPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, nRights));
  if (named.Get() == -1) return SystemProblem(Problem::Step::Create, strPath, errno);
  return NewFile(strPath, std::move(named), true);
}

NewFile::~NewFile() {
  if (m_file.Get() == -1) return;
  m_file.Close();
  if (m_bNamed) unlink(m_strPath.c_str());
}

Problem NewFile::Finish() {
  if (!m_bNamed)
    m_bNamed = linkat(AT_FDCWD, PathOf(m_file).c_str(), AT_FDCWD, m_strPath.c_str(), AT_SYMLINK_FOLLOW) == 0;
  const int nLinkError = m_bNamed ? 0 : errno;
  const int nCloseError = m_file.Close() ? 0 : errno;
  if (!m_bNamed) return SystemProblem(Problem::Step::Create, m_strPath, nLinkError);
  if (nCloseError == 0) return {};
  unlink(m_strPath.c_str());
  return SystemProblem(Problem::Step::Write, m_strPath, nCloseError);
}

}  // namespace orvandel
