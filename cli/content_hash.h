#pragma once
#include <memory>
#include <string>

struct evp_md_ctx_st;

namespace orvandel {

/// A SHA-1 over pieces of a file, in the form that a binary manifest records it. Not thread-safe.
class ContentHash {
 public:
  /// Throws std::runtime_error when OpenSSL fails; so does Add.
  ContentHash();
  void Add(const unsigned char* pData, size_t nSize);
  /// Each byte as "%x", without padding, as in ManifestEntry::strDataHash. Nothing may be added afterwards.
  std::string Text();

 private:
  struct Free {
    void operator()(evp_md_ctx_st* pContext) const;
  };
  std::unique_ptr<evp_md_ctx_st, Free> m_pContext;
};

}  // namespace orvandel
