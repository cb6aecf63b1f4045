#include "cli/present_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

namespace orvandel {

namespace {

struct CloseFolder {
  void operator()(DIR* pFolder) const { closedir(pFolder); }
};

}  // namespace

bool PresentFiles::Contains(const std::string& strId) {
  IdentifierBytes id;
  if (!ParseIdentifier(strId, id)) return false;
  if (!m_isRead[id[0]]) Read(id[0]);
  return std::binary_search(m_present[id[0]].begin(), m_present[id[0]].end(), id);
}

void PresentFiles::Read(unsigned char nShard) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string strFolder = m_strBackup;
  if (m_bSharded) {
    strFolder += std::string("/") + kHex[nShard >> 4] + kHex[nShard & 0xF];
    m_isRead.set(nShard);
  } else {
    m_isRead.set();
  }
  // The backup's own folder may be a link.
  const int nFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (m_bSharded ? O_NOFOLLOW : 0);
  const int nFolder = open(strFolder.c_str(), nFlags);
  if (nFolder == -1) return;
  const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(nFolder));
  if (!folder) {
    close(nFolder);
    return;
  }
  while (const dirent* pEntry = readdir(folder.get())) {
    IdentifierBytes id;
    if (!ParseIdentifier(pEntry->d_name, id)) continue;
    if (!m_bSharded || id[0] == nShard) m_present[id[0]].push_back(id);
  }
  for (std::vector<IdentifierBytes>& ids : m_present) {
    if (m_bSharded && &ids != &m_present[nShard]) continue;
    std::sort(ids.begin(), ids.end());
    ids.shrink_to_fit();
  }
}

}  // namespace orvandel
