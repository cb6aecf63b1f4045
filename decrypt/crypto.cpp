#include "decrypt/crypto.h"

#include <gcrypt.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <cstring>
#include <stdexcept>
#include <utility>

namespace orvandel {

namespace {

constexpr size_t kLargestPiece = 1 << 30;  // OpenSSL's lengths are ints
constexpr int kSecureMemorySize = 16384;   // the least that libgcrypt makes; a derivation needs about 2 KB

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

[[noreturn]] void Fail(const char* pszWhat) {
  throw std::runtime_error(std::string("OpenSSL: ") + pszWhat);
}

/// Looks a cipher up. That takes longer than using it once, so callers keep the result.
const EVP_CIPHER* Cipher(const char* pszName) {
  const EVP_CIPHER* pCipher = EVP_CIPHER_fetch(nullptr, pszName, nullptr);
  if (!pCipher) Fail(pszName);
  return pCipher;
}

/// Initialises libgcrypt, unless another library of this process has.
/// @return false if it can't be used.
bool InitialiseLibgcrypt() {
  if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P)) return true;
  if (!gcry_check_version(nullptr)) return false;
  gcry_control(GCRYCTL_DISABLE_SECMEM_WARN);  // memory that can't be locked is still zeroed
  gcry_control(GCRYCTL_DISABLE_PRIV_DROP);    // by default, locking memory gives up root's effective user ID
  gcry_control(GCRYCTL_INIT_SECMEM, kSecureMemorySize, 0);
  return gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0) == 0;
}

bool HasLibgcrypt() {
  static const bool bUsable = InitialiseLibgcrypt();
  return bUsable;
}

/// PBKDF2 by libgcrypt, the faster one (docs/dependencies.md).
/// @return false if it refuses: an empty password or salt, and in FIPS mode a password below 14 bytes.
bool DeriveWithLibgcrypt(const Secret& password, const Bytes& salt, int nRounds, Digest digest, Secret& key) {
  if (!HasLibgcrypt() || nRounds < 1) return false;
  // With the result in secure memory, libgcrypt's intermediate values are there too and are zeroed when
  // freed.
  const std::unique_ptr<void, decltype(&gcry_free)> derived(gcry_malloc_secure(kKeySize), &gcry_free);
  if (!derived ||
      gcry_kdf_derive(password.Data(), password.Size(), GCRY_KDF_PBKDF2,
                      digest == Digest::Sha1 ? GCRY_MD_SHA1 : GCRY_MD_SHA256, salt.data(), salt.size(),
                      static_cast<unsigned long>(nRounds), kKeySize, derived.get()) != 0)
    return false;
  key = Secret(derived.get(), kKeySize);
  return true;
}

/// @return false when the integrity check fails.
bool UnwrapWithOpenSsl(const Secret& wrappingKey, const unsigned char* pWrapped, size_t nSize, Secret& key) {
  const CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  static const EVP_CIPHER* pCipher = Cipher("AES-256-WRAP");
  if (!context) Fail("AES-256-WRAP");
  EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
  if (EVP_DecryptInit_ex2(context.get(), pCipher, wrappingKey.Data(), nullptr, nullptr) != 1)
    Fail("AES-256-WRAP");
  Secret unwrapped(kWrappedKeySize);
  int nLength = 0;
  if (EVP_DecryptUpdate(context.get(), unwrapped.Data(), &nLength, pWrapped, static_cast<int>(nSize)) != 1)
    return false;
  if (nLength != static_cast<int>(kKeySize)) return false;
  key = Secret(unwrapped.Data(), kKeySize);
  return true;
}

}  // namespace

Secret::Secret(const void* pData, size_t nSize)
    : m_bytes(static_cast<const unsigned char*>(pData), static_cast<const unsigned char*>(pData) + nSize) {}

Secret::Secret(Secret&& other) noexcept : m_bytes(std::move(other.m_bytes)) {}

Secret& Secret::operator=(Secret&& other) noexcept {
  Wipe();
  m_bytes = std::move(other.m_bytes);
  return *this;
}

void Secret::Wipe() {
  if (!m_bytes.empty()) OPENSSL_cleanse(m_bytes.data(), m_bytes.size());
}

Secret DeriveKey(const Secret& password, const Bytes& salt, int nRounds, Digest digest) {
  Secret key(kKeySize);
  if (DeriveWithLibgcrypt(password, salt, nRounds, digest, key)) return key;
  const EVP_MD* pDigest = digest == Digest::Sha1 ? EVP_sha1() : EVP_sha256();
  if (PKCS5_PBKDF2_HMAC(reinterpret_cast<const char*>(password.Data()), static_cast<int>(password.Size()),
                        salt.data(), static_cast<int>(salt.size()), nRounds, pDigest, kKeySize,
                        key.Data()) != 1)
    Fail("PBKDF2");
  return key;
}

bool UnwrapKey(const Secret& wrappingKey, const unsigned char* pWrapped, size_t nSize, Secret& key) {
  if (nSize != kWrappedKeySize || wrappingKey.Size() != kKeySize) return false;
  gcry_cipher_hd_t pCipher = nullptr;
  if (!HasLibgcrypt() || gcry_cipher_open(&pCipher, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_AESWRAP, 0) != 0)
    return UnwrapWithOpenSsl(wrappingKey, pWrapped, nSize, key);
  const std::unique_ptr<gcry_cipher_handle, decltype(&gcry_cipher_close)> cipher(pCipher, &gcry_cipher_close);
  Secret unwrapped(kKeySize);
  if (gcry_cipher_setkey(pCipher, wrappingKey.Data(), wrappingKey.Size()) != 0 ||
      gcry_cipher_decrypt(pCipher, unwrapped.Data(), unwrapped.Size(), pWrapped, nSize) != 0)
    return false;
  key = std::move(unwrapped);
  return true;
}

std::string Sha1Hex(const std::string& strText) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int nLength = 0;
  if (EVP_Digest(strText.data(), strText.size(), digest, &nLength, EVP_sha1(), nullptr) != 1) Fail("SHA-1");
  std::string strHex;
  for (unsigned int i = 0; i < nLength; ++i) {
    strHex += "0123456789abcdef"[digest[i] >> 4];
    strHex += "0123456789abcdef"[digest[i] & 0xF];
  }
  return strHex;
}

CbcDecryptor::CbcDecryptor(const Secret& key, const unsigned char* pPrevious)
    : m_pContext(EVP_CIPHER_CTX_new()) {
  const unsigned char zeros[kBlockSize] = {};
  static const EVP_CIPHER* pCipher = Cipher("AES-256-CBC");
  if (!m_pContext || key.Size() != kKeySize ||
      EVP_DecryptInit_ex2(m_pContext, pCipher, key.Data(), pPrevious ? pPrevious : zeros, nullptr) != 1) {
    EVP_CIPHER_CTX_free(m_pContext);
    Fail("AES-256-CBC");
  }
  EVP_CIPHER_CTX_set_padding(m_pContext, 0);
}

CbcDecryptor::~CbcDecryptor() {
  EVP_CIPHER_CTX_free(m_pContext);
}

void CbcDecryptor::Decrypt(const unsigned char* pInput, unsigned char* pOutput, size_t nSize) {
  int nLength = 0;
  if (nSize > kLargestPiece ||
      EVP_DecryptUpdate(m_pContext, pOutput, &nLength, pInput, static_cast<int>(nSize)) != 1 ||
      nLength != static_cast<int>(nSize))
    Fail("AES-256-CBC");
}

}  // namespace orvandel
