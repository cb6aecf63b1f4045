#pragma once
#include <QString>
#include <string>
#include <unordered_map>

#include "common/problem.h"

namespace orvandel {

/// The folder that a recovery writes into. Decides which folders below it may be written.
///
/// Names in a backup must not lead outside, and nothing may be written into the backup itself: a folder that
/// leads outside through "..", or through a link into the backup, is refused. Not thread-safe.
class Destination {
 public:
  /// @param qstrRoot the folder chosen by the user; need not exist. @param qstrBackupRoot the backup's
  /// folder.
  Destination(const QString& qstrRoot, const QString& qstrBackupRoot);

  const QString& Root() const { return m_qstrRoot; }

  /// Creates a folder below the root, with its parents, if it is missing.
  /// @param qstrFolder relative to the root, with a leading "/".
  /// @return a problem of the step Create with the folder's full path, when it is refused or can't be
  /// created.
  Problem MakeFolder(const QString& qstrFolder);

 private:
  /// The reason why a folder is refused; empty when it isn't.
  const std::string& RefusalOf(const QString& qstrFolder);

  QString m_qstrRoot;
  QString m_qstrRealBackup;                                 // canonical, with a trailing "/"
  std::unordered_map<std::string, std::string> m_refusals;  // cached results of RefusalOf
};

}  // namespace orvandel
