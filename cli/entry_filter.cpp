#include "cli/entry_filter.h"

#include <algorithm>

#include "cli/output.h"
#include "common/text.h"

namespace orvandel {

EntryFilter::EntryFilter(EntryConditions conditions, PresentFiles& present)
    : m_conditions(std::move(conditions)),
      m_present(present),
      m_globs(m_conditions.patterns.begin(), m_conditions.patterns.end()),
      m_hasMatched(m_globs.size(), false),
      m_bAllMatched(m_globs.empty()) {}

bool EntryFilter::Accepts(const ManifestEntry& entry, const std::string& strName) {
  const std::vector<std::string>& domains = m_conditions.domains;
  if (!domains.empty() && std::find(domains.begin(), domains.end(), entry.strDomain) == domains.end())
    return false;
  if (!m_globs.empty() && !MatchesPattern(entry, strName)) return false;
  const bool bAccepted = MeetsConditions(entry);
  m_bAnyAccepted = m_bAnyAccepted || bAccepted;
  return bAccepted;
}

bool EntryFilter::MatchesPattern(const ManifestEntry& entry, const std::string& strName) {
  const bool bFolder = entry.kind == ManifestEntry::Kind::Folder;
  bool bMatches = false;
  for (size_t i = 0; i < m_globs.size(); ++i) {
    // Further patterns are tried only to learn whether they match anything.
    if ((bMatches && m_hasMatched[i]) || !m_globs[i].Matches(strName, bFolder)) continue;
    bMatches = true;
    if (m_hasMatched[i]) continue;
    m_hasMatched[i] = true;
    m_bAllMatched = std::find(m_hasMatched.begin(), m_hasMatched.end(), false) == m_hasMatched.end();
  }
  return bMatches;
}

bool EntryFilter::MeetsConditions(const ManifestEntry& entry) {
  const bool bFile = entry.kind == ManifestEntry::Kind::File || entry.kind == ManifestEntry::Kind::Unknown;
  if (m_conditions.nNewer && (entry.nModified < 0 || entry.nModified < *m_conditions.nNewer)) return false;
  if (m_conditions.nLarger && (!bFile || entry.nSize == UINT64_MAX || entry.nSize <= *m_conditions.nLarger))
    return false;
  return !m_conditions.bMissing ||
         (entry.kind == ManifestEntry::Kind::File && !m_present.Contains(entry.strId));
}

void EntryFilter::ReportUnmatched() const {
  for (size_t i = 0; i < m_globs.size(); ++i) {
    if (!m_hasMatched[i])
      PrintError(QString("nothing matches \"%1\"").arg(FromNarrow(m_conditions.patterns[i])));
  }
  if (m_bAllMatched && !m_bAnyAccepted) PrintError("no entry of the manifest meets these conditions");
}

}  // namespace orvandel
