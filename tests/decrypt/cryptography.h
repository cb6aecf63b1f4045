#pragma once
#include <string>

#include "decrypt/crypto.h"

// Encryption for tests of decryption, using only OpenSSL.

namespace orvandel {

/// Bytes from hexadecimal digits.
Bytes FromHex(const std::string& strHex);

Secret SecretOf(const std::string& strBytes);
Secret SecretOf(const Bytes& bytes);
std::string TextOf(const Secret& secret);

/// A 32-byte key, different for each number.
Bytes SomeKey(unsigned char nNumber);

/// Wraps a key by RFC 3394.
Bytes WrapKey(const Bytes& wrappingKey, const Bytes& key);

/// AES-256-CBC with an all-zero IV. @param bPadded with PKCS#7; without it, only whole blocks are accepted.
std::string Encrypt(const Bytes& key, const std::string& strPlain, bool bPadded = true);

/// An item of a keybag: tag, length, value.
std::string Item(const std::string& strTag, const std::string& strValue);
/// The same with a number of 4 bytes.
std::string Item(const std::string& strTag, uint32_t nValue);

/// Little-endian class number and wrapped key, as in manifests.
Bytes KeyOfClass(uint32_t nClass, const Bytes& wrapped);

Bytes ToBytes(const std::string& strBytes);

}  // namespace orvandel
