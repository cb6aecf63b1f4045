#pragma once
#include <array>
#include <bitset>
#include <string>
#include <vector>

#include "decrypt/manifest_entry.h"

namespace orvandel {

/// Tells which identifiers have a file in a backup. Reads each of its folders once, when it is first needed,
/// and needs 20 bytes per file. Not thread-safe.
class PresentFiles {
 public:
  /// @param strBackup the backup's folder, narrow. @param bSharded whether files are in folders by the first
  /// two digits of their identifiers. Those that are links aren't followed.
  PresentFiles(const std::string& strBackup, bool bSharded) : m_strBackup(strBackup), m_bSharded(bSharded) {}

  /// @param strId any text. @return true for an entry of any type with this name.
  bool Contains(const std::string& strId);

 private:
  void Read(unsigned char nShard);

  std::string m_strBackup;
  bool m_bSharded;
  std::bitset<256> m_isRead;                                // by the first byte of identifiers
  std::array<std::vector<IdentifierBytes>, 256> m_present;  // each sorted
};

}  // namespace orvandel
