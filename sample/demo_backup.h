#pragma once
#include <QString>
#include <optional>

#include "sample/backup_builder.h"

/// How large the demo backup is to be. Numbers count what a user would see.
struct DemoOptions {
  BackupBuilder::Layout layout = BackupBuilder::Layout::Db;
  int photos = 40;     ///< pictures and films of the camera roll; a few broken entries come on top
  int messages = 600;  ///< over at least 30 conversations, up to 2000
  int contacts = 40;
  int entries = 0;  ///< the manifest is filled up to this many with entries that have no file
  int seed = 1;
  QByteArray password;  ///< UTF-8; the backup is encrypted where it isn't null
  int rounds = 1000;    ///< of the password's derivation, see Encryption
  /// Of the device's system. Null is what goes with the layout: BeforeIos10, or else From102.
  std::optional<Encryption::Age> age;

  Encryption::Age systemAge() const {
    if (age) return *age;
    return layout == BackupBuilder::Layout::Mbdb ? Encryption::Age::BeforeIos10 : Encryption::Age::From102;
  }
};

/// What was written.
struct DemoSummary {
  qint64 entries = 0;
  int conversations = 0;
  int calls = 0;
  int notes = 0;
};

/// Writes a whole backup as a well-used device leaves it, with all the awkward cases. The same options give
/// the same bytes. Needs a QCoreApplication, no display. Throws std::runtime_error with file and reason when
/// something can't be written.
/// @param folder the backup's own folder, empty or missing.
DemoSummary writeDemoBackup(const QString& folder, const DemoOptions& options);
