#include "tests/decrypt/cryptography.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include "tests/backup/manifest_bytes.h"

namespace orvandel {

Bytes FromHex(const std::string& strHex) {
  Bytes bytes;
  for (size_t i = 0; i + 1 < strHex.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(std::stoi(strHex.substr(i, 2), nullptr, 16)));
  return bytes;
}

Secret SecretOf(const std::string& strBytes) {
  return Secret(strBytes.data(), strBytes.size());
}

Secret SecretOf(const Bytes& bytes) {
  return Secret(bytes.data(), bytes.size());
}

std::string TextOf(const Secret& secret) {
  return std::string(secret.Data(), secret.Data() + secret.Size());
}

Bytes SomeKey(unsigned char nNumber) {
  Bytes key(kKeySize);
  for (size_t i = 0; i < key.size(); ++i) key[i] = static_cast<unsigned char>(nNumber * 37 + i * 11);
  return key;
}

Bytes WrapKey(const Bytes& wrappingKey, const Bytes& key) {
  Bytes wrapped(key.size() + 24);
  EVP_CIPHER_CTX* pContext = EVP_CIPHER_CTX_new();
  EVP_CIPHER_CTX_set_flags(pContext, EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
  int nSize = 0;
  EXPECT_EQ(1, EVP_EncryptInit_ex(pContext, EVP_aes_256_wrap(), nullptr, wrappingKey.data(), nullptr));
  EXPECT_EQ(1, EVP_EncryptUpdate(pContext, wrapped.data(), &nSize, key.data(), static_cast<int>(key.size())));
  EVP_CIPHER_CTX_free(pContext);
  wrapped.resize(static_cast<size_t>(nSize));
  return wrapped;
}

std::string Encrypt(const Bytes& key, const std::string& strPlain, bool bPadded) {
  static const unsigned char kStart[16] = {};
  std::string strOut(strPlain.size() + 32, '\0');
  auto* pOut = reinterpret_cast<unsigned char*>(strOut.data());
  EVP_CIPHER_CTX* pContext = EVP_CIPHER_CTX_new();
  EXPECT_EQ(1, EVP_EncryptInit_ex(pContext, EVP_aes_256_cbc(), nullptr, key.data(), kStart));
  EVP_CIPHER_CTX_set_padding(pContext, bPadded ? 1 : 0);
  int nSize = 0, nRest = 0;
  EXPECT_EQ(1,
            EVP_EncryptUpdate(pContext, pOut, &nSize, reinterpret_cast<const unsigned char*>(strPlain.data()),
                              static_cast<int>(strPlain.size())));
  EXPECT_EQ(1, EVP_EncryptFinal_ex(pContext, pOut + nSize, &nRest));
  EVP_CIPHER_CTX_free(pContext);
  strOut.resize(static_cast<size_t>(nSize + nRest));
  return strOut;
}

std::string Item(const std::string& strTag, const std::string& strValue) {
  return strTag + manifest_bytes::Number(strValue.size(), 4) + strValue;
}

std::string Item(const std::string& strTag, uint32_t nValue) {
  return Item(strTag, manifest_bytes::Number(nValue, 4));
}

Bytes KeyOfClass(uint32_t nClass, const Bytes& wrapped) {
  Bytes bytes;
  for (int nShift = 0; nShift < 32; nShift += 8)
    bytes.push_back(static_cast<unsigned char>(nClass >> nShift));
  bytes.insert(bytes.end(), wrapped.begin(), wrapped.end());
  return bytes;
}

Bytes ToBytes(const std::string& strBytes) {
  return Bytes(strBytes.begin(), strBytes.end());
}

}  // namespace orvandel
