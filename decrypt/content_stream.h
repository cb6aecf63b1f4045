#pragma once
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "common/file.h"
#include "decrypt/crypto.h"

namespace orvandel {

/// Why a file's content can't be read. what() is the reason without the file's name.
class ContentError : public std::runtime_error {
 public:
  /// @param nError errno value; EIO for damage.
  ContentError(Problem::Step step, int nError, const std::string& strReason)
      : std::runtime_error(strReason), m_step(step), m_nError(nError) {}
  Problem::Step Step() const { return m_step; }
  int Code() const { return m_nError; }

 private:
  Problem::Step m_step;
  int m_nError;
};

/// The content of one file of a backup from its beginning, decrypted as it is read. Uses constant memory. Not
/// thread-safe.
class ContentStream {
 public:
  static constexpr uint64_t kUnknownSize = UINT64_MAX;

  /// @param file  the file in the backup, or why it can't be opened.
  /// @param key   empty for an unencrypted file.
  /// @param nSize decrypted size in bytes according to the manifest. Ignored for an unencrypted file. If
  ///              unknown, it is determined from the padding.
  /// Throws ContentError; for a missing file with the code ENOENT and the reason kMissingSource.
  ContentStream(Result<OpenedFile> file, const Secret& key, uint64_t nSize);

  /// Size of the content in bytes.
  uint64_t Size() const { return m_nSize; }
  /// True when an encrypted file has more blocks than content of this size and padding take.
  bool IsLongerThanItsSize() const;

  /// Fills the buffer up to the end of the content. Throws ContentError; at the end also if CheckPadding
  /// would.
  /// @param nCount a multiple of 16, at least 16. @return the number of bytes; 0 at the end.
  size_t Read(unsigned char* pBuffer, size_t nCount);

  /// Checks the padding of an encrypted file, if its size leaves no doubt about where it is. Doesn't move the
  /// position. Throws ContentError when it is neither padding nor zeros, since then the key is that of
  /// another file.
  void CheckPadding() const;

 private:
  /// Decrypts the last block. The file has at least one.
  void LastBlock(unsigned char* pBlock) const;
  /// True when the file has as many blocks as content and padding take.
  bool IsPadded() const;
  /// @param pBlock the last block, decrypted.
  void CheckPadding(const unsigned char* pBlock) const;

  Descriptor m_file;
  Secret m_key;
  std::unique_ptr<CbcDecryptor> m_pDecryptor;  // null for an unencrypted file
  uint64_t m_nSourceSize;
  uint64_t m_nSize;
  uint64_t m_nRead = 0;  // bytes of the content returned so far
};

}  // namespace orvandel
