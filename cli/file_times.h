#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cli/open_backup.h"
#include "decrypt/manifest_entry.h"

namespace orvandel {

/// The modification times that a manifest has of some files. Add all, then Read, then Of. Takes 28 bytes for
/// each file, whatever the size of the manifest. Not thread-safe.
class FileTimes {
 public:
  /// Adds a file. @param wstrPath its path in the backup, or in the folder of its decrypted files.
  void Add(const std::u16string& wstrPath);

  /// Reads the times of all files that were added, in one pass over the manifest that ends when all are
  /// known. Of several entries with one identifier the first counts. If the manifest can't be read
  /// completely, a line is printed on standard error, and the times before that are known. A signal ends the
  /// pass.
  void Read(const OpenBackup& backup);

  /// The time of a file, in seconds since 1970; -1 if it is unknown or wasn't added.
  int64_t Of(const std::u16string& wstrPath) const;

 private:
  /// The index of a file; that of the end for one that wasn't added.
  size_t Find(const IdentifierBytes& id) const;

  std::vector<IdentifierBytes> m_ids;  // sorted by Read
  std::vector<int64_t> m_times;        // of the same files
};

}  // namespace orvandel
