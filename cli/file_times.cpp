#include "cli/file_times.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "cli/output.h"
#include "cli/stop_signal.h"
#include "common/text.h"
#include "decrypt/backup_reader.h"

namespace orvandel {

namespace {

constexpr int64_t kUnseen = -2;  // the entry of a file isn't read yet

/// The identifier of a file. @return false for a path that doesn't end in one.
bool IdentifierOf(const std::u16string& wstrPath, IdentifierBytes& id) {
  const std::u16string wstrName = wstrPath.substr(wstrPath.rfind(u'/') + 1);
  const bool bAscii = std::all_of(wstrName.begin(), wstrName.end(), [](char16_t n) { return n < 0x80; });
  return bAscii && ParseIdentifier(std::string(wstrName.begin(), wstrName.end()), id);
}

}  // namespace

void FileTimes::Add(const std::u16string& wstrPath) {
  IdentifierBytes id;
  if (IdentifierOf(wstrPath, id)) m_ids.push_back(id);
}

void FileTimes::Read(const OpenBackup& backup) {
  std::sort(m_ids.begin(), m_ids.end());
  m_ids.erase(std::unique(m_ids.begin(), m_ids.end()), m_ids.end());
  m_ids.shrink_to_fit();
  m_times.assign(m_ids.size(), kUnseen);
  size_t nUnseen = m_ids.size();
  if (m_ids.empty()) return;
  try {
    std::optional<BackupReader> plain;
    const BackupReader* pReader = backup.encrypted.Reader();
    if (!pReader) {
      const std::string strFolder = ToNarrow(backup.qstrPath);
      plain.emplace(strFolder).OpenManifest(strFolder, strFolder);
      pReader = &*plain;
    }
    pReader->Visit(BackupReader::Detail::Keys, [&](ManifestEntry&& entry) {
      IdentifierBytes id;
      const size_t nFile = ParseIdentifier(entry.strId, id) ? Find(id) : m_ids.size();
      if (nFile != m_ids.size() && m_times[nFile] == kUnseen) {
        m_times[nFile] = TimeOfCopy(entry);
        --nUnseen;
      }
      return nUnseen > 0 && StopSignal() == 0;
    });
  } catch (const std::runtime_error& error) {
    PrintError(FromNarrow(error.what()) + "; some copies have the time of copying");
  }
}

int64_t FileTimes::Of(const std::u16string& wstrPath) const {
  IdentifierBytes id;
  const size_t nFile = IdentifierOf(wstrPath, id) ? Find(id) : m_ids.size();
  return nFile < m_times.size() ? std::max<int64_t>(m_times[nFile], -1) : -1;
}

size_t FileTimes::Find(const IdentifierBytes& id) const {
  const auto it = std::lower_bound(m_ids.begin(), m_ids.end(), id);
  return it != m_ids.end() && *it == id ? static_cast<size_t>(it - m_ids.begin()) : m_ids.size();
}

}  // namespace orvandel
