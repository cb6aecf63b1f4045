#pragma once
#include <QString>
#include <string>

/// Where the files of a backup lie: the one rule for stores and manifest entries alike.
struct BackupLayout {
  QString qstrRoot;         ///< the backup's folder, or that of the decrypted files
  bool bEncrypted = false;  ///< the root is the flat folder that the decrypt tool wrote
  bool bHasManifestDb =
      false;  ///< a backup with "Manifest.db", which spreads its files over two-character folders

  /// Path of the file with an identifier. It need not exist. Empty for an identifier that can't be
  /// a file name: ".", "..", or one with a "/" or a zero character.
  QString PathOf(const std::string& strFileId) const;
};

// Identifiers of the well-known stores.
constexpr char kContactsStore[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442";
constexpr char kMessageStore[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";
constexpr char kNotesStore[] = "ca3bc056d4da0bbf88b5fb3be254f3b7147e639c";       // ZNOTE, ZNOTEBODY
constexpr char kNotesCloudStore[] = "4f98687d8ab0d6d1a371110e6b7300f6e465bef2";  // ZICCLOUDSYNCINGOBJECT
constexpr char kCallStore[] = "5a4935c78a5255723f707230a451d79c540d2741";
constexpr char kCallStoreFallback[] = "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca";
