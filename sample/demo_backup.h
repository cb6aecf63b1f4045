#pragma once
#include <QString>
#include <optional>

#include "sample/backup_builder.h"
#include "sample/ios_version.h"

namespace orvandel {

/// The size of the demo backup. The numbers are of items visible to a user.
struct DemoOptions {
  /// Major version of the system, kFirstIos to kLastIos: stores have its places and columns. 0 for the tables
  /// and the content of a plain sample. Set it by setIos().
  int ios = 0;
  BackupBuilder::Layout layout = BackupBuilder::Layout::Db;
  int photos = 40;     ///< pictures and films of the camera roll; a few broken entries are added
  int messages = 600;  ///< in 30 to 2000 conversations
  int contacts = 40;
  int entries = 0;  ///< the manifest is filled up to this number with entries without files
  /// Every entry of a file has its file, as on devices: entries without one are omitted, and fillers get a
  /// tiny file.
  bool omitFiles = false;
  int seed = 1;
  QByteArray password;  ///< UTF-8; the backup is encrypted unless it is null
  int rounds = 1000;    ///< of the password's derivation, see Encryption
  /// Of the device's system. The default matches the layout: BeforeIos10 or From102.
  std::optional<Encryption::Age> age;

  /// Sets the version of the system and the layout that it writes. @param major kFirstIos to kLastIos.
  void setIos(int major) {
    ios = major;
    layout = iosVersion(major).age == Encryption::Age::BeforeIos10 ? BackupBuilder::Layout::Mbdb
                                                                   : BackupBuilder::Layout::Db;
  }

  /// The release that the backup says it is of.
  const IosVersion& system() const {
    return ios && iosVersion(ios).age == systemAge() ? iosVersion(ios) : iosVersionOfAge(systemAge());
  }

  Encryption::Age systemAge() const {
    if (age) return *age;
    return layout == BackupBuilder::Layout::Mbdb ? Encryption::Age::BeforeIos10 : Encryption::Age::From102;
  }
};

/// What was written.
struct DemoSummary {
  qint64 entries = 0;
  int messages = 0;
  int conversations = 0;
  int calls = 0;
  int notes = 0;
};

/// Writes a complete backup like that of a well-used device, including edge cases. Deterministic. Needs a
/// QCoreApplication, no display. Throws std::runtime_error with file and reason when something can't be
/// written.
/// @param folder the backup's own folder, empty or missing.
DemoSummary writeDemoBackup(const QString& folder, const DemoOptions& options);

}  // namespace orvandel
