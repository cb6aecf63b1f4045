#include <benchmark/benchmark.h>
#include <openssl/core_names.h>
#include <openssl/kdf.h>
#include <openssl/params.h>

#include <memory>

#include "decrypt/crypto.h"

namespace orvandel {

namespace {

// A fifth of the rounds of SHA-256 that a device demands, and as many of SHA-1.
constexpr unsigned int kStrongRounds = 2000000;
constexpr unsigned int kRounds = 10000;
constexpr char kPassword[] = "benchmark";
const Bytes kSalt(20, 's');

/// The rounds of SHA-256 as "openssl kdf" derives them.
void OpenSslKdf(benchmark::State& state) {
  const std::unique_ptr<EVP_KDF, decltype(&EVP_KDF_free)> kdf(EVP_KDF_fetch(nullptr, "PBKDF2", nullptr),
                                                              &EVP_KDF_free);
  Bytes password(kPassword, kPassword + sizeof kPassword - 1), salt = kSalt, key(kKeySize);
  char digest[] = "SHA256";
  unsigned int nRounds = kStrongRounds;
  const OSSL_PARAM parameters[] = {
      OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, digest, 0),
      OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_PASSWORD, password.data(), password.size()),
      OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_SALT, salt.data(), salt.size()),
      OSSL_PARAM_construct_uint(OSSL_KDF_PARAM_ITER, &nRounds), OSSL_PARAM_construct_end()};
  for (auto _ : state) {
    const std::unique_ptr<EVP_KDF_CTX, decltype(&EVP_KDF_CTX_free)> context(EVP_KDF_CTX_new(kdf.get()),
                                                                            &EVP_KDF_CTX_free);
    if (EVP_KDF_derive(context.get(), key.data(), key.size(), parameters) != 1)
      state.SkipWithError("OpenSSL failed");
  }
}
BENCHMARK(OpenSslKdf)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

/// All that a password's key takes.
void DerivePasswordKey(benchmark::State& state) {
  for (auto _ : state) {
    const Secret strong = DeriveKey(Secret(kPassword, sizeof kPassword - 1), kSalt,
                                    static_cast<int>(kStrongRounds), Digest::Sha256);
    benchmark::DoNotOptimize(DeriveKey(strong, kSalt, static_cast<int>(kRounds), Digest::Sha1).Data());
  }
}
BENCHMARK(DerivePasswordKey)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
