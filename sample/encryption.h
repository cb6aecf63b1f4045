#pragma once
#include <QByteArray>
#include <QString>
#include <memory>
#include <vector>

/// How a backup is encrypted.
struct Encryption {
  /// What a backup looks like depends on the system that wrote it.
  enum class Age {
    BeforeIos10,  ///< "Manifest.mbdb", which is never encrypted
    Ios10,        ///< 10.0 and 10.1: "Manifest.db" in plain
    From102       ///< "Manifest.db" encrypted, the password derived twice
  };

  QByteArray password;  ///< UTF-8
  Age age = Age::From102;
  /// PBKDF2 rounds: of the first derivation where there are two, else of the only one. Devices have
  /// 10,000,000 and 10,000.
  int rounds = 1000;
  int seed = 1;  ///< another number makes other keys
};

/// The keys of one encrypted backup. All are derived from seed and names, so that the same calls give the
/// same bytes on every run. Throws std::runtime_error when the crypto library fails.
class BackupKeys {
 public:
  explicit BackupKeys(const Encryption& encryption);
  ~BackupKeys();
  BackupKeys(const BackupKeys&) = delete;
  BackupKeys& operator=(const BackupKeys&) = delete;

  Encryption::Age age() const { return m_encryption.age; }

  /// The keybag as "Manifest.plist" holds it. Its classes 1 to 11 are wrapped under the password's key,
  /// class 12 under a key that no password gives.
  QByteArray keybag() const;

  /// The key of a file or of the manifest. @param name the file's identifier.
  QByteArray key(const QByteArray& name) const;
  /// Class and wrapped key, 44 bytes.
  QByteArray wrappedKey(const QByteArray& name) const;
  /// The same for a class of one's choice, 1 to 12.
  QByteArray wrappedKey(const QByteArray& name, quint32 protectionClass) const;

  /// Encrypts a file in place. @param padded appends the padding; without it the size has to be a multiple
  /// of 16. Throws with path and reason.
  void encryptFile(const QString& path, const QByteArray& name, bool padded) const;

  /// What "Manifest.db" says of a file: an object of the keyed archiver as a binary property list.
  /// @param wrapped empty for a file in plain.
  /// @param nested the key's bytes stand in an object of their own.
  static QByteArray record(quint16 mode, quint64 size, const QByteArray& wrapped, bool nested);

 private:
  QByteArray derived(const char* label, const QByteArray& name, int size = 32) const;
  QByteArray classKey(quint32 protectionClass) const;
  QByteArray passwordKey() const;
  int strongRounds() const;
  int rounds() const;

  Encryption m_encryption;
};
