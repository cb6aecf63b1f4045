#include "cli/target_names.h"

#include <QString>
#include <algorithm>
#include <functional>

#include "cli/temporary_name.h"
#include "common/text.h"
#include "export/file_name.h"

namespace orvandel {

namespace {

constexpr size_t kLongestName = 255;  // bytes
constexpr char kLinkNote[] = ".link.txt";

/// A number before the extension: "name (2).ext".
std::string Numbered(const std::string& strPath, uint64_t nNumber) {
  const size_t nName = strPath.rfind('/') + 1;
  std::string strName = strPath.substr(nName);
  const std::string strNumber = " (" + std::to_string(nNumber) + ")";
  if (strName.size() + strNumber.size() > kLongestName) strName = SafeFileName(strName);
  const size_t nDot = strName.rfind('.');
  strName.insert(nDot == std::string::npos || nDot == 0 ? strName.size() : nDot, strNumber);
  return strPath.substr(0, nName) + strName;
}

bool IsValid(const std::string& strSegment) {
  return !strSegment.empty() && strSegment != "." && strSegment != ".." &&
         strSegment.size() <= kLongestName && strSegment.find('/') == std::string::npos &&
         strSegment.find('\0') == std::string::npos;
}

}  // namespace

std::string TargetNames::SafeSegment(const std::string& strSegment) const {
  // Else a later run would take it for a leftover.
  if (IsTemporaryName(strSegment)) return "_" + strSegment;
  return m_bSafeNamesOnly || !IsValid(strSegment) ? SafeFileName(strSegment) : strSegment;
}

/// Takes a path. @return null, or, if it is taken, the number to try next.
uint64_t* TargetNames::Take(const std::string& strPath) {
  const std::string strKey = m_bIgnoreCase ? ToNarrow(FromNarrow(strPath).toCaseFolded()) : strPath;
  const std::hash<std::string> hash;
  const auto [it, bNew] = m_taken.try_emplace({hash(strKey), hash(strKey + '/')}, 2);
  return bNew ? nullptr : &it->second;
}

TargetNames::Target TargetNames::Of(const ManifestEntry& entry) {
  std::string strOriginal = entry.strDomain;
  Target target{SafeSegment(entry.strDomain), {}, false};
  if (!entry.strPath.empty()) {
    strOriginal += '/' + entry.strPath;
    for (size_t nStart = 0; nStart <= entry.strPath.size();) {
      const size_t nEnd = std::min(entry.strPath.find('/', nStart), entry.strPath.size());
      target.strPath += '/' + SafeSegment(entry.strPath.substr(nStart, nEnd - nStart));
      nStart = nEnd + 1;
    }
  }
  bool bChanged = target.strPath != strOriginal;
  if (entry.kind == ManifestEntry::Kind::Link) {
    const size_t nName = target.strPath.rfind('/') + 1;
    if (target.strPath.size() - nName + sizeof kLinkNote - 1 > kLongestName) {
      target.strPath = target.strPath.substr(0, nName) + SafeFileName(target.strPath.substr(nName));
      bChanged = true;
    }
    target.strPath += kLinkNote;
  }
  if (entry.kind != ManifestEntry::Kind::Folder) {
    const std::string strFirst = target.strPath;
    if (const uint64_t* pNext = Take(strFirst)) {
      target.bTaken = true;
      uint64_t nNumber = *pNext;
      do target.strPath = Numbered(strFirst, nNumber++);
      while (Take(target.strPath));
      *Take(strFirst) = nNumber;  // again, since the container may have grown
    }
  }
  if (bChanged || target.bTaken) target.strOriginal = strOriginal;
  return target;
}

}  // namespace orvandel
