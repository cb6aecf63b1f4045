#include "cli/content_hash.h"

#include <openssl/evp.h>

#include <stdexcept>

namespace orvandel {

namespace {

void Require(int nStatus) {
  if (nStatus != 1) throw std::runtime_error("OpenSSL can't compute a SHA-1");
}

}  // namespace

void ContentHash::Free::operator()(evp_md_ctx_st* pContext) const {
  EVP_MD_CTX_free(pContext);
}

ContentHash::ContentHash() : m_pContext(EVP_MD_CTX_new()) {
  Require(m_pContext && EVP_DigestInit_ex(m_pContext.get(), EVP_sha1(), nullptr) == 1 ? 1 : 0);
}

void ContentHash::Add(const unsigned char* pData, size_t nSize) {
  Require(EVP_DigestUpdate(m_pContext.get(), pData, nSize));
}

std::string ContentHash::Text() {
  static constexpr char kDigits[] = "0123456789abcdef";
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int nSize = 0;
  Require(EVP_DigestFinal_ex(m_pContext.get(), digest, &nSize));
  std::string strText;
  for (unsigned int i = 0; i < nSize; ++i) {
    if (digest[i] >= 0x10) strText += kDigits[digest[i] >> 4];
    strText += kDigits[digest[i] & 0xF];
  }
  return strText;
}

}  // namespace orvandel
