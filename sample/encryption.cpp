#include "sample/encryption.h"

#include <openssl/evp.h>
#include <plist/plist.h>

#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>
#include <stdexcept>

#include "sample/written_file.h"

namespace orvandel {

namespace {

constexpr int kKeySize = 32;
constexpr int kWrappedSize = 40;
constexpr int kSaltSize = 20;
constexpr int kBlockSize = 16;
constexpr int kPieceSize = 1 << 20;
constexpr int kMostRounds = 10000;  // of the second derivation
constexpr quint32 kClasses = 11;    // wrapped with the password's key
constexpr quint32 kUnderPassword = 2, kUnderDevice = 1;

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

plist_t reference(uint64_t object) {
  return plist_new_uid(object);
}

plist_t className(const char* name, const char* parent) {
  const plist_t names = plist_new_array();
  plist_array_append_item(names, plist_new_string(name));
  plist_array_append_item(names, plist_new_string(parent));
  const plist_t object = plist_new_dict();
  plist_dict_set_item(object, "$classes", names);
  plist_dict_set_item(object, "$classname", plist_new_string(name));
  return object;
}

/// Numbers of the objects in a record.
enum RecordObject : uint64_t { kFileObject = 1, kFileClass, kDataObject, kDataClass, kKeyBytes };

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

QByteArray BackupKeys::keybag() const {
  const QByteArray wrappingKey = passwordKey();
  QByteArray bag;
  appendItem(bag, "VERS", 4);
  appendItem(bag, "TYPE", 1);
  appendItem(bag, "UUID", derived("keybag", {}, 16));
  appendItem(bag, "HMCK", derived("check", "1") + derived("check", "2", 8));
  appendItem(bag, "WRAP", 1);
  appendItem(bag, "SALT", derived("salt", {}, kSaltSize));
  appendItem(bag, "ITER", quint32(rounds()));
  if (strongRounds() > 0) {
    appendItem(bag, "DPWT", 1);
    appendItem(bag, "DPIC", quint32(strongRounds()));
    appendItem(bag, "DPSL", derived("first salt", {}, kSaltSize));
  }
  for (quint32 number = 1; number <= kClasses + 1; ++number) {
    const bool underPassword = number <= kClasses;
    appendItem(bag, "UUID", derived("class", QByteArray::number(number), 16));
    appendItem(bag, "CLAS", number);
    appendItem(bag, "WRAP", underPassword ? kUnderPassword | (number % 2) : kUnderDevice);
    appendItem(bag, "KTYP", quint32{0});
    appendItem(bag, "WPKY", wrapped(underPassword ? wrappingKey : derived("device", {}), classKey(number)));
  }
  return bag;
}

QByteArray BackupKeys::key(const QByteArray& name) const {
  return derived("file key", name);
}

QByteArray BackupKeys::wrappedKey(const QByteArray& name) const {
  return wrappedKey(name, 1 + static_cast<unsigned char>(derived("file class", name, 1)[0]) % kClasses);
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

QByteArray BackupKeys::record(quint16 mode, quint64 size, const QByteArray& wrapped, bool nested,
                              qint64 modified, const QByteArray& target) {
  const plist_t file = plist_new_dict();
  plist_dict_set_item(file, "$class", reference(kFileClass));
  plist_dict_set_item(file, "Mode", plist_new_uint(mode));
  plist_dict_set_item(file, "Size", plist_new_uint(size));
  if (modified >= 0) plist_dict_set_item(file, "LastModified", plist_new_uint(uint64_t(modified)));
  const plist_t objects = plist_new_array();
  plist_array_append_item(objects, plist_new_string("$null"));
  plist_array_append_item(objects, file);
  plist_array_append_item(objects, className("MBFile", "NSObject"));
  if (!wrapped.isEmpty()) {
    plist_dict_set_item(file, "EncryptionKey", reference(kDataObject));
    const plist_t data = plist_new_dict();
    const plist_t bytes = plist_new_data(wrapped.constData(), uint64_t(wrapped.size()));
    plist_dict_set_item(data, "$class", reference(kDataClass));
    plist_dict_set_item(data, "NS.data", nested ? reference(kKeyBytes) : bytes);
    plist_array_append_item(objects, data);
    plist_array_append_item(objects, className("NSMutableData", "NSData"));
    if (nested) plist_array_append_item(objects, bytes);
  }
  if (!target.isEmpty()) {
    plist_dict_set_item(file, "Target", reference(plist_array_get_size(objects)));
    plist_array_append_item(objects, plist_new_string(target.constData()));
  }
  const plist_t top = plist_new_dict();
  plist_dict_set_item(top, "root", reference(kFileObject));
  const plist_t root = plist_new_dict();
  plist_dict_set_item(root, "$archiver", plist_new_string("NSKeyedArchiver"));
  plist_dict_set_item(root, "$objects", objects);
  plist_dict_set_item(root, "$top", top);
  plist_dict_set_item(root, "$version", plist_new_uint(100000));

  char* binary = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &binary, &length);
  plist_free(root);
  if (!binary) throw std::runtime_error("libplist can't write a file's record");
  const QByteArray out(binary, int(length));
  plist_to_bin_free(binary);
  return out;
}

}  // namespace orvandel
