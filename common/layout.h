#pragma once
#include <QString>
#include <string>

/// Where the files of a backup lie: the one rule for stores and manifest entries alike.
struct BackupLayout {
  QString qstrRoot;         ///< the backup's folder, or that of the decrypted files
  bool bEncrypted = false;  ///< the root is the flat folder that the decrypt tool wrote
  bool bHasManifestDb =
      false;  ///< a backup with "Manifest.db", which spreads its files over two-character folders

  /// Whether the files lie in folders named after the first two characters of their identifiers.
  bool IsSharded() const { return !bEncrypted && bHasManifestDb; }

  /// Path of the file with an identifier. It need not exist. Empty for an identifier that can't be
  /// a file name: ".", "..", or one with a "/" or a zero character.
  QString PathOf(const std::string& strFileId) const;
};

/// Makes the narrow paths of many files of one backup by the same rule, without a conversion for each where
/// root and identifier are plain ASCII. From any thread.
class FileLocator {
 public:
  explicit FileLocator(const BackupLayout& layout);

  /// @param strPath receives the path, narrow.
  /// @return whether root and identifier are plain ASCII, so that the path reads the same in every encoding.
  bool Locate(const std::string& strFileId, std::string& strPath) const;

 private:
  BackupLayout m_layout;
  std::string m_strPrefix;  // the root with a "/"; empty when it isn't plain
};

// Identifiers of the well-known stores.
constexpr char kContactsStore[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442";
constexpr char kMessageStore[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";
constexpr char kNotesStore[] = "ca3bc056d4da0bbf88b5fb3be254f3b7147e639c";       // ZNOTE, ZNOTEBODY
constexpr char kNotesCloudStore[] = "4f98687d8ab0d6d1a371110e6b7300f6e465bef2";  // ZICCLOUDSYNCINGOBJECT
constexpr char kCallStore[] = "5a4935c78a5255723f707230a451d79c540d2741";
constexpr char kCallStoreFallback[] = "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca";
