#pragma once
#include <QString>
#include <unordered_map>

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
  /// @param qstrReason receives why it is refused, or can't be made.
  /// @return true when it may be written into; else errno tells why.
  bool MakeFolder(const QString& qstrFolder, QString& qstrReason);

 private:
  QString m_qstrRoot;
  QString m_qstrRealBackup;                         // canonical, with a "/" at its end
  std::unordered_map<std::string, QString> m_made;  // folders made so far, and why they are refused
};
