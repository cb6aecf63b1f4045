#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct evp_cipher_ctx_st;

/// Bytes that are wiped when they go: keys and passwords.
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
constexpr size_t kWrappedKeySize = 40;  // a key wrapped by RFC 3394

enum class Digest { Sha1, Sha256 };

/// PBKDF2 to 32 bytes. Throws std::runtime_error when the library fails.
Secret DeriveKey(const Secret& password, const Bytes& salt, int nRounds, Digest digest);

/// Unwraps a key by RFC 3394. @return false when the integrity check fails or the size is wrong.
bool UnwrapKey(const Secret& wrappingKey, const unsigned char* pWrapped, size_t nSize, Secret& key);

/// SHA-1 as 40 lower-case hexadecimal digits.
std::string Sha1Hex(const std::string& strText);

/// AES-256-CBC under an all-zero IV, piece by piece. Padding is left to the caller. One thread.
class CbcDecryptor {
 public:
  explicit CbcDecryptor(const Secret& key);
  ~CbcDecryptor();
  CbcDecryptor(const CbcDecryptor&) = delete;
  CbcDecryptor& operator=(const CbcDecryptor&) = delete;

  /// Decrypts whole blocks of 16 bytes. Both buffers hold nSize bytes, and may be one.
  void Decrypt(const unsigned char* pInput, unsigned char* pOutput, size_t nSize);

 private:
  evp_cipher_ctx_st* m_pContext;
};
