#pragma once
#include <QString>
#include <string>
#include <unordered_map>

#include "common/problem.h"

/// The folder that a recovery writes into, and the one place that decides where below it may be written.
///
/// Names in a backup are no reason to write elsewhere, and nothing may be written into the backup itself: a
/// folder that leads out by a step "..", or by a link into the backup, is refused. On the thread that writes.
class Destination {
 public:
  /// @param qstrRoot the chosen folder; need not exist. @param qstrBackupRoot the backup's folder.
  Destination(const QString& qstrRoot, const QString& qstrBackupRoot);

  const QString& Root() const { return m_qstrRoot; }

  /// Makes a folder below the root, with its parents, where it is missing.
  /// @param qstrFolder with a "/" in front.
  /// @return why it is refused, or can't be made: a problem of the step Create, of the folder's full path.
  Problem MakeFolder(const QString& qstrFolder);

 private:
  /// Why a folder may not be written into; empty when it may.
  const std::string& RefusalOf(const QString& qstrFolder);

  QString m_qstrRoot;
  QString m_qstrRealBackup;                                 // canonical, with a "/" at its end
  std::unordered_map<std::string, std::string> m_refusals;  // of all folders asked for so far
};
