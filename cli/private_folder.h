#pragma once
#include <string>

namespace orvandel {

/// A folder that only this process uses, removed on destruction. A process that is killed leaves its folder;
/// the next one removes it.
///
/// The owner holds a lock (flock) on its folder, which ends with the process however that ends. Belongs to
/// one thread.
class PrivateFolder {
 public:
  /// Removes the folders that killed processes left in strParent, then creates a folder with mode 0700 there.
  /// Removed are only folders named "orvandel-work-" and six characters, with mode 0700, of the effective
  /// user, that nobody has locked. What can't be removed stays, without a message. Where the file system has
  /// no locks, nothing is removed.
  explicit PrivateFolder(const std::string& strParent);
  ~PrivateFolder() { RemoveNow(); }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  bool IsValid() const { return !m_strPath.empty(); }
  /// Absolute if the parent is, without a slash at the end; empty if there is no folder.
  const std::string& Path() const { return m_strPath; }
  /// Why it could not be created, in the locale's encoding; empty if it was.
  const std::string& Problem() const { return m_strProblem; }
  /// Removes the folder with its content, for an exit that skips destructors. It isn't valid any more.
  void RemoveNow();

 private:
  bool Create(const std::string& strParent);

  std::string m_strPath;
  std::string m_strProblem;
  int m_nDescriptor = -1;  // holds the lock
};

}  // namespace orvandel
