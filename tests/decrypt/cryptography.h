#pragma once
#include <string>

#include "decrypt/crypto.h"

// The way into an encrypted backup, for tests of the way out. Worked out with OpenSSL alone.

/// Bytes from hexadecimal digits.
Bytes FromHex(const std::string& strHex);

Secret SecretOf(const std::string& strBytes);
Secret SecretOf(const Bytes& bytes);
std::string TextOf(const Secret& secret);

/// A key of 32 bytes that differs for each number.
Bytes SomeKey(unsigned char nNumber);

/// Wraps a key by RFC 3394.
Bytes WrapKey(const Bytes& wrappingKey, const Bytes& key);

/// AES-256-CBC under an all-zero IV. @param bPadded with PKCS#7; without it only whole blocks will do.
std::string Encrypt(const Bytes& key, const std::string& strPlain, bool bPadded = true);

/// An item of a keybag: tag, length, value.
std::string Item(const std::string& strTag, const std::string& strValue);
/// The same with a number of 4 bytes.
std::string Item(const std::string& strTag, uint32_t nValue);

/// Class number in little-endian order and wrapped key, as manifests hold them.
Bytes KeyOfClass(uint32_t nClass, const Bytes& wrapped);

Bytes ToBytes(const std::string& strBytes);
