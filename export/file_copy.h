#pragma once
#include <QString>
#include <string>
#include <unordered_map>

/// How the copy of one file ended.
struct CopyResult {
  QString qstrPath;    ///< of the copy; without one, of the copy that was wanted
  QString qstrReason;  ///< why there is no copy; empty when there is one
  bool Succeeded() const { return qstrReason.isEmpty(); }
};

/// Copies files of a backup into the folders of a destination: the one routine for all that recovers files.
/// One object serves one recovery, on one thread, as the only writer of its folders.
class BackupFileCopier {
 public:
  /// @param qstrDestination the folder that the user chose; need not exist.
  explicit BackupFileCopier(const QString& qstrDestination);

  /// Copies one file under the first free name, readable and writable by all.
  /// @param qstrFolder below the destination, with a "/" at both ends; made where it is missing. One that
  /// leads out
  ///                   of the destination is refused: names in a backup are no reason to write elsewhere.
  /// @param strName    narrow. @param wstrSource path in the backup.
  CopyResult Copy(const QString& qstrFolder, const std::string& strName, const std::u16string& wstrSource);

 private:
  /// The number that a name last got, so that a thousand files of one name don't try a thousand names each.
  std::unordered_map<std::string, unsigned int> m_lastNumbers;
  QString m_qstrDestination;
};
