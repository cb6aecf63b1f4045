#pragma once
#include <sys/types.h>

#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "common/descriptor.h"
#include "common/result.h"

namespace orvandel {

/// The folder that files are extracted to, held open. What is written below it is reached from this
/// descriptor one folder at a time, without following links, so nothing can lead outside. Thread-safe.
class DestinationTree {
 public:
  /// @param strRoot   an existing folder, or a link to one; narrow.
  /// @param strBackup the backup's folder, which is refused when it is met on the way down.
  static Result<std::shared_ptr<DestinationTree>> Open(const std::string& strRoot,
                                                       const std::string& strBackup);

  const std::string& Root() const { return m_strRoot; }
  /// Whether its file system takes only names that are valid everywhere.
  bool TakesSafeNamesOnly() const { return m_bSafeNamesOnly; }
  /// Whether its file system ignores the case of names.
  bool IgnoresCase() const { return m_bIgnoresCase; }

  /// Opens a folder below the root, and creates it with its parents if it is missing.
  /// @param strFolder relative, its segments valid names; empty for the root itself.
  /// @return a problem of the step Create for a link, for the backup, and for anything but a folder.
  Result<Descriptor> OpenFolder(const std::string& strFolder) const;

  /// Removes the temporary files that other processes left in a folder, on the first call for this folder.
  void RemoveLeftovers(int nFolder);

 private:
  using Inode = std::pair<dev_t, ino_t>;

  DestinationTree(const std::string& strRoot, Descriptor root)
      : m_strRoot(strRoot), m_root(std::move(root)) {}
  void Probe();
  Result<Descriptor> Step(int nFolder, const std::string& strName, const std::string& strPath) const;

  std::string m_strRoot;
  Descriptor m_root;
  Inode m_backup;
  bool m_bSafeNamesOnly = false;
  bool m_bIgnoresCase = false;
  std::mutex m_mutex;
  std::set<Inode> m_clean;  // folders whose leftovers have been removed
};

}  // namespace orvandel
