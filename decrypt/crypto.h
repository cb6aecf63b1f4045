#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct evp_cipher_ctx_st;

namespace orvandel {

/// Bytes that are zeroed on destruction: keys and passwords.
class Secret {
 public:
  Secret() = default;
  explicit Secret(size_t nSize) : m_bytes(nSize) {}
  Secret(const void* pData, size_t nSize);
  ~Secret() { Wipe(); }
  Secret(Secret&& other) noexcept;
  Secret& operator=(Secret&& other) noexcept;
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  unsigned char* Data() { return m_bytes.data(); }
  const unsigned char* Data() const { return m_bytes.data(); }
  size_t Size() const { return m_bytes.size(); }
  bool IsEmpty() const { return m_bytes.empty(); }

 private:
  void Wipe();
  std::vector<unsigned char> m_bytes;
};

using Bytes = std::vector<unsigned char>;

constexpr size_t kKeySize = 32;         // AES-256
constexpr size_t kWrappedKeySize = 40;  // a key wrapped according to RFC 3394

enum class Digest { Sha1, Sha256 };

/// Derives 32 bytes with PBKDF2: by libgcrypt, or by OpenSSL where libgcrypt refuses the password.
/// Throws std::runtime_error when both fail. May be called by several threads.
Secret DeriveKey(const Secret& password, const Bytes& salt, int nRounds, Digest digest);

/// Unwraps a key according to RFC 3394. @return false when the integrity check fails or the size is wrong.
bool UnwrapKey(const Secret& wrappingKey, const unsigned char* pWrapped, size_t nSize, Secret& key);

/// SHA-1 in 40 lower-case hexadecimal digits.
std::string Sha1Hex(const std::string& strText);

/// AES-256-CBC, in pieces. Doesn't remove padding. Not thread-safe.
class CbcDecryptor {
 public:
  static constexpr size_t kBlockSize = 16;

  /// @param pPrevious the encrypted block before the first one, 16 bytes; null for the beginning of a file.
  explicit CbcDecryptor(const Secret& key, const unsigned char* pPrevious = nullptr);
  ~CbcDecryptor();
  CbcDecryptor(const CbcDecryptor&) = delete;
  CbcDecryptor& operator=(const CbcDecryptor&) = delete;

  /// Decrypts whole blocks of 16 bytes. Both buffers have nSize bytes and may be the same.
  void Decrypt(const unsigned char* pInput, unsigned char* pOutput, size_t nSize);

 private:
  evp_cipher_ctx_st* m_pContext;
};

}  // namespace orvandel
