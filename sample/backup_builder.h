#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <memory>
#include <vector>

#include "sample/encryption.h"

namespace orvandel {

/// Builds one backup, file by file, in the format of a device. For tests, benchmarks and orvandel-sample.
/// Deterministic: the same calls give the same bytes. Throws std::runtime_error when something can't be
/// written.
class BackupBuilder {
 public:
  enum class Layout {
    Mbdb,  ///< flat, with "Manifest.mbdb"
    Db     ///< two-character folders, with "Manifest.db"
  };

  /// What the property lists say about device and system. A null QString omits its key; an empty one writes
  /// an empty value.
  struct Info {
    QString displayName = "Sample Phone";
    QString lastBackupDate = "2016-05-01T09:12:33Z";
    QString phoneNumber = "+49 30 901820";
    QString productVersion = "9.3.1";
    QString serialNumber = "F2LSAMPLE001";
    QString buildVersion = "13E238";
    QString productType = "iPhone7,2";
    QString productName = "iPhone 6";
    QString udid = "b5c1f09d7a3e42681f0c9d8e7b6a5f4e3d2c1b0a";
    QString imei = "356938035643809";
    QString desktopVersion = "12.5.4.42";
    QString manifestVersion;  ///< null: by the layout
    QString statusVersion = "2.4";
    QString systemDomainsVersion = "20.0";
  };

  // Modes of manifest entries.
  static constexpr quint16 kFile = 0x81A4;
  static constexpr quint16 kDirectory = 0x41ED;
  static constexpr quint16 kLink = 0xA1ED;

  /// @param folder the backup's own folder; created with its parents if missing.
  BackupBuilder(const QString& folder, Layout layout);
  ~BackupBuilder();

  /// Makes the backup encrypted: finish() encrypts each file in place with its own key and writes
  /// "Manifest.plist". Call it before adding files. The age must match the layout.
  void encrypt(const Encryption& encryption);

  /// Leaves the file of an entry unencrypted, with no key in the manifest. For encrypted backups.
  void leavePlain(const QString& domain, const QString& relativePath);

  /// Writes "Info.plist" immediately (XML, keys sorted, as devices do).
  void writeInfo(const Info& info);

  /// Makes finish() write "Manifest.plist" and "Status.plist" as devices do with every backup. Without it
  /// only an encrypted backup gets a "Manifest.plist", and none a "Status.plist".
  /// @param keybag encryption parameters of the keybag of an unencrypted backup, which opens no file.
  void writeDeviceLists(const Encryption& keybag);

  /// Adds an entry to the manifest and writes its file. @return full path of the file. For two with the same
  /// domain and path the later content is on disk; "Manifest.mbdb" lists both, "Manifest.db" only the first,
  /// since the identifier is its key.
  QString addFile(const QString& domain, const QString& relativePath, const QByteArray& content);

  /// Adds an entry without a file: a directory, a link, or a file that is missing from the backup.
  void addEntry(const QString& domain, const QString& relativePath, quint16 mode = kFile);

  /// Adds an entry for a file written by the caller, such as a store, and creates its folder.
  /// @return full path for the file.
  QString reserveFile(const QString& domain, const QString& relativePath);

  /// Writes the manifest. Nothing may be added afterwards. Reserved files must be written and closed before
  /// (a missing one counts as size 0). @param wal leaves "Manifest.db" in WAL mode.
  void finish(bool wal = false);

  /// The identifier of a file: plain SHA-1 of domain, "-", relative path in UTF-8; 40 lower-case digits.
  static QString fileId(const QString& domain, const QString& relativePath);

  /// Path of the file with an identifier, whether or not it exists.
  QString filePath(const QString& fileId) const;

  const QString& folder() const { return m_folder; }
  Layout layout() const { return m_layout; }
  /// Number of entries added so far.
  size_t entryCount() const { return m_entries.size(); }

 private:
  struct Entry {
    QString domain;
    QString relativePath;
    quint16 mode;
    quint64 size;
    QByteArray dataHash;  ///< SHA-1 of the content; empty without content
    bool reserved;
    QByteArray wrappedKey;  ///< empty if not encrypted
  };
  QString makePlace(const QString& domain, const QString& relativePath);
  void settleReserved();
  void encryptFiles();
  static quint32 protectionClassOf(const Entry& entry);
  void writeManifestPlist() const;
  void writeStatusPlist() const;
  void writeMbdb() const;
  void writeDb(bool wal) const;

  QString m_folder;
  Layout m_layout;
  std::vector<Entry> m_entries;
  QSet<QString> m_madeFolders;
  std::unique_ptr<BackupKeys> m_keys;        ///< null for an unencrypted backup
  QSet<QString> m_plainFiles;                ///< identifiers
  std::unique_ptr<BackupKeys> m_listedKeys;  ///< of the keybag of an unencrypted backup; null without one
  Info m_info;
};

}  // namespace orvandel
