#pragma once
#include <QString>
#include <string>

#include "common/path.h"
#include "export/destination.h"
#include "export/written_file.h"

/// Copies files of a backup into the folders of a destination: the one routine for all that recovers files.
/// One object serves one recovery, on one thread, as the only writer of its folders.
class BackupFileCopier {
 public:
  /// @param qstrDestination the folder that the user chose; need not exist. @param qstrBackupRoot the
  /// backup's folder.
  BackupFileCopier(const QString& qstrDestination, const QString& qstrBackupRoot);

  /// Copies one file under the first free name, readable and writable by all.
  /// @param qstrFolder below the destination, with a "/" at both ends; made where it is missing. Refused when
  /// it leads
  ///                   elsewhere (see Destination).
  /// @param strName    narrow. @param wstrSource path in the backup.
  WrittenFile Copy(const QString& qstrFolder, const std::string& strName, const std::u16string& wstrSource);

 private:
  FreeNames m_freeNames;
  QString m_qstrLastFolder;  // made for the file before
  Destination m_destination;
};
