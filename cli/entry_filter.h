#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/glob.h"
#include "cli/present_files.h"
#include "decrypt/manifest_entry.h"

namespace orvandel {

/// Which entries of a manifest a command is about. All conditions must hold.
struct EntryConditions {
  std::vector<std::string> patterns;  ///< any of these; without one, all names
  std::vector<std::string> domains;   ///< any of these; without one, all domains
  std::optional<int64_t> nNewer;      ///< modified at this time or later; seconds since 1970
  std::optional<uint64_t> nLarger;    ///< files of more bytes than these
  bool bMissing = false;              ///< files that the backup doesn't contain

  bool NeedRecords() const { return nNewer || nLarger; }
};

/// Applies conditions to entries, one after the other. Not thread-safe.
class EntryFilter {
 public:
  /// @param present must outlive this object.
  EntryFilter(EntryConditions conditions, PresentFiles& present);

  /// @param entry with its record if the conditions need it. @param strName "Domain/relative/path".
  bool Accepts(const ManifestEntry& entry, const std::string& strName);

  /// Prints a line on standard error for each pattern that no entry has matched so far; or, if all have, a
  /// line when no entry was accepted.
  void ReportUnmatched() const;

 private:
  bool MatchesPattern(const ManifestEntry& entry, const std::string& strName);
  bool MeetsConditions(const ManifestEntry& entry);

  EntryConditions m_conditions;
  PresentFiles& m_present;
  std::vector<Glob> m_globs;
  std::vector<bool> m_hasMatched;  // by pattern
  bool m_bAllMatched;
  bool m_bAnyAccepted = false;
};

}  // namespace orvandel
