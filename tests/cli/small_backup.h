#pragma once
#include <map>
#include <string>
#include <vector>

#include "sample/backup_builder.h"
#include "sample/stores.h"

// Backups for the command line, each with known content.

namespace orvandel {

/// Expected contents of recovered files, by their paths below the destination, and their sources in the
/// backup.
struct SmallBackup {
  struct File {
    std::string strTarget;  ///< "/Camera Roll/IMG_0001.PNG"
    std::string strSource;  ///< full path in the backup
    std::string strBytes;
  };
  std::vector<File> files;  ///< in the order of recovery
};

/// Writes a backup with one or two records of each category: "Camera Roll(2)", "Photo Stream(1)",
/// "App Photos(1)", "App Videos(1)", "Message(1)", "Messages Attachments(1)", "Contacts(1)",
/// "Call History(1)", "Notes(1)", "WhatsApp(0)", "WhatsApp Attachments(1)".
SmallBackup WriteSmallBackup(const std::string& strFolder, BackupBuilder::Layout layout);

/// Writes a backup with only a number of photos, named IMG_00000.JPG and so on, with equal content.
/// @return full paths of the files, in the order of their names.
std::vector<std::string> WritePhotos(const std::string& strFolder, int nPhotos, const QByteArray& bytes);

/// Full path of a well-known store of a backup of either layout.

std::string StorePathIn(const std::string& strFolder, BackupBuilder::Layout layout, const StorePlace& place);

/// State of a folder and everything in it: kind, mode, modification time, size and content of each entry, by
/// its path below the folder. Links aren't followed.
std::map<std::string, std::string> TreeOf(const std::string& strFolder);

/// Paths of all files below a folder, relative and sorted.
std::vector<std::string> FilesBelow(const std::string& strFolder);

}  // namespace orvandel
