#pragma once
#include <QString>
#include <string>

// Test data. Each item is created in the data folder on first use and kept there for the next run.

namespace orvandel {

constexpr int kManifestEntries = 1000000;
constexpr int kMediaFiles = 100000;
constexpr int kMessageCount = 1000000;
constexpr int kSenders = 2000;
constexpr int kPeople = 5000;

/// Sets the data folder.
void SetDataFolder(const QString& folder);

std::string BinaryManifest();     ///< path of a "Manifest.mbdb" of a million entries
std::string DatabaseManifest();   ///< path of a "Manifest.db" of a million rows
std::string MediaBackup();        ///< folder of a two-level backup with 100,000 camera files
std::string MessageStorePath();   ///< a message store with a million messages of 2,000 senders
std::string BodyStorePath();      ///< the same with every text in an attributedBody of 300 to 1,000 bytes
std::string WhatsAppStorePath();  ///< a WhatsApp store with a million messages in 2,000 chats
std::string ContactsStorePath();  ///< a contacts store (new layout) with 5,000 people
std::string ExportFolder();       ///< a folder for the output of exports
std::string LargeBackup();        ///< folder: a million entries, 100,000 photos, 500,000 messages

}  // namespace orvandel
