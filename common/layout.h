#pragma once
#include <QString>
#include <string>

namespace orvandel {

/// Locates the files of a backup, stores and manifest entries alike.
struct BackupLayout {
  QString qstrRoot;             ///< the backup's folder, or that of the decrypted files
  bool bEncrypted = false;      ///< the root is the flat folder that the decrypt tool wrote
  bool bHasManifestDb = false;  ///< a backup with "Manifest.db" has its files in two-character sub-folders

  /// True when files are in sub-folders named after the first two characters of their identifiers.
  bool IsSharded() const { return !bEncrypted && bHasManifestDb; }

  /// Path of the file with the given identifier, whether or not it exists. Empty when the identifier isn't a
  /// valid file name: ".", "..", or containing a "/" or NUL.
  QString PathOf(const std::string& strFileId) const;
};

/// Computes the narrow paths of many files of one backup, like BackupLayout::PathOf, but without converting
/// each one when root and identifier are ASCII. Thread-safe.
class FileLocator {
 public:
  explicit FileLocator(const BackupLayout& layout);

  /// @param strPath receives the path, narrow.
  /// @return true when root and identifier are ASCII, so the path is the same in every encoding.
  bool Locate(const std::string& strFileId, std::string& strPath) const;

 private:
  BackupLayout m_layout;
  std::string m_strPrefix;  // the root with a trailing "/"; empty when it isn't ASCII
};

// Identifiers of the well-known stores.
constexpr char kContactsStore[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442";
constexpr char kMessageStore[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";
constexpr char kNotesStore[] = "ca3bc056d4da0bbf88b5fb3be254f3b7147e639c";       // ZNOTE, ZNOTEBODY
constexpr char kNotesCloudStore[] = "4f98687d8ab0d6d1a371110e6b7300f6e465bef2";  // ZICCLOUDSYNCINGOBJECT
constexpr char kCallStore[] = "5a4935c78a5255723f707230a451d79c540d2741";
constexpr char kCallStoreFallback[] = "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca";
constexpr char kWhatsAppStore[] = "7c7fba66680ef796b916b067077cc246adacf01d";  // ChatStorage.sqlite
constexpr char kWhatsAppEarlyStore[] = "1b6b187a1b60b9ae8b720c79e2c67f472bab09c0";
constexpr char kWhatsAppBusinessStore[] = "724bd3b98b18518b455a87c1f3ac3a0d189c4466";

}  // namespace orvandel
