#pragma once
#include <QByteArray>
#include <QString>
#include <memory>
#include <vector>

namespace orvandel {

/// Encryption parameters of a backup.
struct Encryption {
  /// The format depends on the system that wrote the backup.
  enum class Age {
    BeforeIos10,  ///< "Manifest.mbdb", which is never encrypted
    Ios10,        ///< 10.0 and 10.1: "Manifest.db" unencrypted
    From102       ///< "Manifest.db" encrypted, the password derived twice
  };

  QByteArray password;  ///< UTF-8
  Age age = Age::From102;
  /// PBKDF2 rounds: of the first derivation if there are two, else of the only one. Devices use 10,000,000
  /// and 10,000.
  int rounds = 1000;
  int seed = 1;  ///< different seeds give different keys
};

/// The keys of one encrypted backup. Deterministic: all are derived from seed and names. Throws
/// std::runtime_error when OpenSSL fails.
class BackupKeys {
 public:
  explicit BackupKeys(const Encryption& encryption);
  ~BackupKeys();
  BackupKeys(const BackupKeys&) = delete;
  BackupKeys& operator=(const BackupKeys&) = delete;

  /// Name under which the key of the manifest itself is derived.
  static constexpr char kManifestName[] = "Manifest.db";

  Encryption::Age age() const { return m_encryption.age; }

  /// The keybag as stored in "Manifest.plist", with the classes 1 to 11, all wrapped with the password's key.
  QByteArray keybag() const;

  /// The key of a file or of the manifest. @param name the file's identifier.
  QByteArray key(const QByteArray& name) const;
  /// Class (4 bytes, little-endian, 1 to 4) and wrapped key (40 bytes).
  QByteArray wrappedKey(const QByteArray& name) const;
  /// Same as above for any class, also one that the keybag doesn't have.
  QByteArray wrappedKey(const QByteArray& name, quint32 protectionClass) const;

  /// Encrypts a file in place. @param padded appends padding; without it the size must be a multiple of 16.
  /// Throws with path and reason.
  void encryptFile(const QString& path, const QByteArray& name, bool padded) const;

  /// The record of a file in "Manifest.db" with mode, size and key only; see FileRecord for the parameters.
  static QByteArray record(quint16 mode, quint64 size, const QByteArray& wrapped, bool nested);

 private:
  QByteArray derived(const char* label, const QByteArray& name, int size = 32) const;
  QByteArray classKey(quint32 protectionClass) const;
  QByteArray passwordKey() const;
  quint32 keybagVersion() const;
  int strongRounds() const;
  int rounds() const;

  Encryption m_encryption;
};

}  // namespace orvandel
