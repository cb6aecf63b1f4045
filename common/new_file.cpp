#include "common/new_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

NewFile::NewFile(const std::string& strPath, unsigned int nRights) : m_strPath(strPath) {
#ifdef O_TMPFILE
  const size_t nSlash = strPath.rfind('/');
  const std::string strFolder = nSlash == std::string::npos ? "." : strPath.substr(0, nSlash + 1);
  m_nDescriptor = open(strFolder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, nRights);
  if (m_nDescriptor != -1 && access(DescriptorPath().c_str(), F_OK) == 0) return;
  if (m_nDescriptor != -1) close(m_nDescriptor);
#endif
  m_bNamed = true;
  m_nDescriptor = open(strPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, nRights);
}

NewFile::~NewFile() {
  if (m_nDescriptor == -1) return;
  close(m_nDescriptor);
  if (m_bNamed) unlink(m_strPath.c_str());
}

int NewFile::Finish(bool& bNamed) {
  if (!m_bNamed)
    m_bNamed =
        linkat(AT_FDCWD, DescriptorPath().c_str(), AT_FDCWD, m_strPath.c_str(), AT_SYMLINK_FOLLOW) == 0;
  const int nLinkError = m_bNamed ? 0 : errno;
  bNamed = m_bNamed;
  const int nDescriptor = m_nDescriptor;
  m_nDescriptor = -1;
  const int nCloseError = close(nDescriptor) == 0 ? 0 : errno;
  if (!m_bNamed) return nLinkError;
  if (nCloseError != 0) unlink(m_strPath.c_str());
  return nCloseError;
}

std::string NewFile::DescriptorPath() const {
  return "/proc/self/fd/" + std::to_string(m_nDescriptor);
}
