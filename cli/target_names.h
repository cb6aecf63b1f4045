#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>

#include "decrypt/manifest_entry.h"

namespace orvandel {

/// Where the entries of a manifest are extracted to. Not thread-safe.
class TargetNames {
 public:
  /// @param bSafeNamesOnly replaces characters that are invalid on some file system.
  /// @param bIgnoreCase    gives names that differ in more than case.
  TargetNames(bool bSafeNamesOnly, bool bIgnoreCase)
      : m_bSafeNamesOnly(bSafeNamesOnly), m_bIgnoreCase(bIgnoreCase) {}

  struct Target {
    std::string strPath;      ///< "Domain/relative/path" with valid segments; a link's ends with ".link.txt"
    std::string strOriginal;  ///< the entry's name, if the path differs from it by more than that
    bool bTaken = false;      ///< it differs because an earlier entry has its path
  };

  /// Chooses the path of an entry. Two entries that aren't folders get different ones: the later gets a
  /// number.
  Target Of(const ManifestEntry& entry);

 private:
  struct Digest {
    uint64_t nFirst, nSecond;
    bool operator==(const Digest& other) const { return nFirst == other.nFirst && nSecond == other.nSecond; }
  };
  struct HashDigest {
    size_t operator()(const Digest& digest) const { return digest.nFirst; }
  };

  std::string SafeSegment(const std::string& strSegment) const;
  uint64_t* Take(const std::string& strPath);

  bool m_bSafeNamesOnly;
  bool m_bIgnoreCase;
  // By digests of the paths so far, which take less memory than these: the number to try next. Equal digests
  // of two paths only cost a number.
  std::unordered_map<Digest, uint64_t, HashDigest> m_taken;
};

}  // namespace orvandel
