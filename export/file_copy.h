#pragma once
#include <QString>
#include <cstdint>
#include <string>

#include "common/path.h"
#include "export/destination.h"
#include "export/written_file.h"

namespace orvandel {

/// Copies files of a backup into folders of the destination. All recovered files are copied by this class.
/// One object per recovery, which must be the only writer of its folders. Not thread-safe.
class BackupFileCopier {
 public:
  /// @param qstrDestination the folder chosen by the user; need not exist. @param qstrBackupRoot the backup's
  /// folder.
  BackupFileCopier(const QString& qstrDestination, const QString& qstrBackupRoot);

  /// Copies one file to the first free name, readable and writable by everybody.
  /// @param qstrFolder relative to the destination, with a "/" at both ends; created if missing. Refused when
  /// it leads outside (see Destination).
  /// @param strName    narrow. @param wstrSource path of the file in the backup.
  /// @param nModified  its modification time in seconds since 1970; -1 for the time of copying.
  WrittenFile Copy(const QString& qstrFolder, const std::string& strName, const std::u16string& wstrSource,
                   int64_t nModified = -1);

 private:
  FreeNames m_freeNames;
  QString m_qstrLastFolder;  // created for the previous file
  Destination m_destination;
};

}  // namespace orvandel
