#include "sample/encryption.h"

#include <openssl/evp.h>

#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>
#include <stdexcept>

#include "sample/file_record.h"
#include "sample/written_file.h"

namespace orvandel {

namespace {

constexpr int kKeySize = 32;
constexpr int kWrappedSize = 40;
constexpr int kSaltSize = 20;
constexpr int kBlockSize = 16;
constexpr int kPieceSize = 1 << 20;
constexpr int kMostRounds = 10000;   // of the second derivation
constexpr quint32 kClasses = 11;     // 1 to 5 are of files, 6 to 11 of the keychain
constexpr quint32 kFileClasses = 4;  // those that files of a backup have
constexpr quint32 kFirstOfThisDevice = 9;
constexpr quint32 kUnderPassword = 2, kUnderPasswordAndDevice = 3;

using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

const unsigned char* bytesOf(const QByteArray& bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.constData());
}

unsigned char* bytesOf(QByteArray& bytes) {
  return reinterpret_cast<unsigned char*>(bytes.data());
}

void require(bool succeeded) {
  if (!succeeded) throw std::runtime_error("OpenSSL refused to encrypt");
}

template <typename Number>
QByteArray bigEndian(Number number) {
  char bytes[sizeof(Number)];
  qToBigEndian(number, bytes);
  return QByteArray(bytes, sizeof(Number));
}

void appendItem(QByteArray& out, const char* tag, const QByteArray& value) {
  out.append(tag, 4);
  out.append(bigEndian(quint32(value.size())));
  out.append(value);
}

void appendItem(QByteArray& out, const char* tag, quint32 value) {
  appendItem(out, tag, bigEndian(value));
}

QByteArray stretched(const QByteArray& password, const QByteArray& salt, int rounds, const EVP_MD* digest) {
  QByteArray key(kKeySize, '\0');
  require(PKCS5_PBKDF2_HMAC(password.constData(), password.size(), bytesOf(salt), salt.size(), rounds, digest,
                            kKeySize, bytesOf(key)) == 1);
  return key;
}

/// Wraps a key according to RFC 3394.
QByteArray wrapped(const QByteArray& wrappingKey, const QByteArray& key) {
  const Context context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  const std::unique_ptr<EVP_CIPHER, decltype(&EVP_CIPHER_free)> cipher(
      EVP_CIPHER_fetch(nullptr, "AES-256-WRAP", nullptr), &EVP_CIPHER_free);
  require(context && cipher);
  EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
  QByteArray out(kWrappedSize + kBlockSize, '\0');
  int size = 0;
  require(EVP_EncryptInit_ex2(context.get(), cipher.get(), bytesOf(wrappingKey), nullptr, nullptr) == 1 &&
          EVP_EncryptUpdate(context.get(), bytesOf(out), &size, bytesOf(key), key.size()) == 1 &&
          size == kWrappedSize);
  return out.left(size);
}

}  // namespace

BackupKeys::BackupKeys(const Encryption& encryption) : m_encryption(encryption) {}
BackupKeys::~BackupKeys() = default;

int BackupKeys::strongRounds() const {
  return m_encryption.age == Encryption::Age::From102 ? m_encryption.rounds : 0;
}

int BackupKeys::rounds() const {
  return strongRounds() > 0 ? qMin(m_encryption.rounds, kMostRounds) : m_encryption.rounds;
}

QByteArray BackupKeys::derived(const char* label, const QByteArray& name, int size) const {
  const QByteArray whole =
      QByteArray("orvandel-sample ") + label + ' ' + name + ' ' + QByteArray::number(m_encryption.seed);
  return QCryptographicHash::hash(whole, QCryptographicHash::Sha256).left(size);
}

QByteArray BackupKeys::classKey(quint32 protectionClass) const {
  return derived("class key", QByteArray::number(protectionClass));
}

QByteArray BackupKeys::passwordKey() const {
  QByteArray password = m_encryption.password;
  if (strongRounds() > 0)
    password = stretched(password, derived("first salt", {}, kSaltSize), strongRounds(), EVP_sha256());
  return stretched(password, derived("salt", {}, kSaltSize), rounds(), EVP_sha1());
}

quint32 BackupKeys::keybagVersion() const {
  switch (m_encryption.age) {
    case Encryption::Age::BeforeIos10:
      return 3;
    case Encryption::Age::Ios10:
      return 4;
    case Encryption::Age::From102:
      break;
  }
  return 5;
}

QByteArray BackupKeys::keybag() const {
  const QByteArray wrappingKey = passwordKey();
  QByteArray bag;
  appendItem(bag, "VERS", keybagVersion());
  appendItem(bag, "TYPE", 1);
  appendItem(bag, "UUID", derived("keybag", {}, 16));
  appendItem(bag, "HMCK", derived("check", "1") + derived("check", "2", 8));
  appendItem(bag, "WRAP", quint32{0});
  appendItem(bag, "SALT", derived("salt", {}, kSaltSize));
  appendItem(bag, "ITER", quint32(rounds()));
  if (strongRounds() > 0) {
    appendItem(bag, "DPWT", 1);
    appendItem(bag, "DPIC", quint32(strongRounds()));
    appendItem(bag, "DPSL", derived("first salt", {}, kSaltSize));
  }
  for (quint32 number = 1; number <= kClasses; ++number) {
    appendItem(bag, "UUID", derived("class", QByteArray::number(number), 16));
    appendItem(bag, "CLAS", number);
    appendItem(bag, "WRAP", number < kFirstOfThisDevice ? kUnderPassword : kUnderPasswordAndDevice);
    appendItem(bag, "KTYP", quint32{0});
    appendItem(bag, "WPKY", wrapped(wrappingKey, classKey(number)));
  }
  return bag;
}

QByteArray BackupKeys::key(const QByteArray& name) const {
  return derived("file key", name);
}

QByteArray BackupKeys::wrappedKey(const QByteArray& name) const {
  return wrappedKey(name, 1 + static_cast<unsigned char>(derived("file class", name, 1)[0]) % kFileClasses);
}

QByteArray BackupKeys::wrappedKey(const QByteArray& name, quint32 protectionClass) const {
  char number[sizeof protectionClass];
  qToLittleEndian(protectionClass, number);
  return QByteArray(number, sizeof number) + wrapped(classKey(protectionClass), key(name));
}

void BackupKeys::encryptFile(const QString& path, const QByteArray& name, bool padded) const {
  static const unsigned char kStart[kBlockSize] = {};
  QFile plain(path), encrypted(path + ".encrypted");
  if (!plain.open(QIODevice::ReadOnly)) written_file::fail(path, plain.errorString());
  if (!encrypted.open(written_file::kNewFile))
    written_file::fail(encrypted.fileName(), encrypted.errorString());
  const Context context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  require(context &&
          EVP_EncryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, bytesOf(key(name)), kStart) == 1);
  EVP_CIPHER_CTX_set_padding(context.get(), padded ? 1 : 0);
  QByteArray out;
  int size = 0;
  for (QByteArray piece; !(piece = plain.read(kPieceSize)).isEmpty();) {
    out.resize(piece.size() + kBlockSize);
    require(EVP_EncryptUpdate(context.get(), bytesOf(out), &size, bytesOf(piece), piece.size()) == 1);
    written_file::append(encrypted, out.left(size));
  }
  out.resize(kBlockSize);
  require(EVP_EncryptFinal_ex(context.get(), bytesOf(out), &size) == 1);
  written_file::append(encrypted, out.left(size));
  encrypted.close();
  if (plain.error() != QFileDevice::NoError || !plain.remove() || !encrypted.rename(path))
    written_file::fail(path, "can't be replaced by its encrypted form");
  written_file::stamp(path);
}

QByteArray BackupKeys::record(quint16 mode, quint64 size, const QByteArray& wrapped, bool nested) {
  FileRecord record;
  record.mode = mode;
  record.size = size;
  record.wrappedKey = wrapped;
  record.nestedKey = nested;
  return archivedRecord(record);
}

}  // namespace orvandel
