#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <stdexcept>
#include <string>

#include "decrypt/crypto.h"
#include "tests/decrypt/cryptography.h"

using namespace orvandel;

namespace {

std::string ByOpenSsl(const std::string& strPassword, const Bytes& salt, int nRounds, Digest digest) {
  std::string strKey(kKeySize, '\0');
  if (PKCS5_PBKDF2_HMAC(strPassword.data(), static_cast<int>(strPassword.size()), salt.data(),
                        static_cast<int>(salt.size()), nRounds,
                        digest == Digest::Sha1 ? EVP_sha1() : EVP_sha256(), kKeySize,
                        reinterpret_cast<unsigned char*>(strKey.data())) != 1)
    throw std::runtime_error("OpenSSL");
  return strKey;
}

}  // namespace

TEST(KeyDerivation, GivesThePublishedKeys) {
  // RFC 7914, section 11: the first half of each result.
  const struct {
    const char* pszPassword;
    const char* pszSalt;
    int nRounds;
    const char* pszKey;
  } cases[] = {
      {"passwd", "salt", 1, "55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc"},
      {"Password", "NaCl", 80000, "4ddcd8f60b98be21830cee5ef22701f9641a4418d04c0414aeff08876b34ab56"},
  };

  for (const auto& vector : cases) {
    const Secret key = DeriveKey(SecretOf(std::string(vector.pszPassword)), ToBytes(vector.pszSalt),
                                 vector.nRounds, Digest::Sha256);

    EXPECT_EQ(TextOf(key), TextOf(SecretOf(FromHex(vector.pszKey)))) << vector.pszPassword;
  }
}

TEST(KeyDerivation, GivesTheSameKeyAsOpenSslForPasswordsOfEachLength) {
  // 64 bytes are a block of both digests; longer passwords are hashed first. The empty one is refused by
  // libgcrypt.
  for (const size_t nLength : {0, 1, 13, 14, 32, 63, 64, 65, 1000}) {
    for (const Digest digest : {Digest::Sha1, Digest::Sha256}) {
      for (const int nRounds : {1, 2, 1000}) {
        const std::string strPassword(nLength, 'p');
        const Bytes salt = ToBytes("twenty bytes of salt");

        const Secret key = DeriveKey(SecretOf(strPassword), salt, nRounds, digest);

        EXPECT_EQ(TextOf(key), ByOpenSsl(strPassword, salt, nRounds, digest))
            << nLength << " bytes, " << nRounds << " rounds";
      }
    }
  }
}

TEST(KeyDerivation, RefusesRoundsThatArentPositive) {
  for (const int nRounds : {0, -1})
    EXPECT_THROW(DeriveKey(SecretOf(std::string("secret")), ToBytes("salt"), nRounds, Digest::Sha256),
                 std::runtime_error)
        << nRounds;
}
