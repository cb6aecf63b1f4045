#include "decrypt/content_stream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "decrypt/protocol.h"

namespace orvandel {

namespace {

constexpr size_t kBlockSize = 16;

[[noreturn]] void FailToRead(int nError) {
  throw ContentError(Problem::Step::Read, nError, std::string("can't be read: ") + strerror(nError));
}

[[noreturn]] void FailAsDamaged(const std::string& strReason) {
  throw ContentError(Problem::Step::Read, EIO, strReason);
}

Descriptor Opened(Result<OpenedFile>& file) {
  if (file) return std::move(file->descriptor);
  const int nError = file.Error().nCode;
  throw ContentError(Problem::Step::Open, nError,
                     nError == ENOENT ? kMissingSource : "can't be opened: " + file.Error().strReason);
}

/// Reads up to the end of the file. @param nOffset -1 reads at the current position.
size_t ReadPiece(int nFile, unsigned char* pBuffer, size_t nCount, off_t nOffset = -1) {
  size_t nRead = 0;
  while (nRead < nCount) {
    const ssize_t nGot =
        nOffset == -1 ? read(nFile, pBuffer + nRead, nCount - nRead)
                      : pread(nFile, pBuffer + nRead, nCount - nRead, nOffset + static_cast<off_t>(nRead));
    if (nGot < 0 && errno == EINTR) continue;
    if (nGot < 0) FailToRead(errno);
    if (nGot == 0) break;
    nRead += static_cast<size_t>(nGot);
  }
  return nRead;
}

/// Length of the padding at the end of a block; 0 when it isn't valid.
size_t PaddingOf(const unsigned char* pBlock) {
  const size_t nPadding = pBlock[kBlockSize - 1];
  const auto isPadding = [&](unsigned char nByte) { return nByte == nPadding; };
  if (nPadding > kBlockSize) return 0;
  return std::all_of(pBlock + kBlockSize - nPadding, pBlock + kBlockSize, isPadding) ? nPadding : 0;
}

}  // namespace

ContentStream::ContentStream(Result<OpenedFile> file, const Secret& key, uint64_t nSize)
    : m_file(Opened(file)),
      m_key(key.Data(), key.Size()),
      m_nSourceSize(static_cast<uint64_t>(file->nSize)),
      m_nSize(nSize) {
  if (key.IsEmpty()) {
    m_nSize = m_nSourceSize;
    return;
  }
  if (m_nSourceSize % kBlockSize != 0) FailAsDamaged("is cut short: it doesn't end on a whole block");
  if (nSize == kUnknownSize) {
    if (m_nSourceSize == 0) FailAsDamaged("is cut short: it is empty");
    unsigned char block[kBlockSize];
    LastBlock(block);
    const size_t nPadding = PaddingOf(block);
    if (nPadding == 0) FailAsDamaged("is damaged: its padding is invalid");
    m_nSize = m_nSourceSize - nPadding;
  } else if (m_nSourceSize < nSize) {
    FailAsDamaged("is cut short: " + std::to_string(m_nSourceSize) + " of " + std::to_string(nSize) +
                  " bytes");
  }
  m_pDecryptor = std::make_unique<CbcDecryptor>(key);
}

void ContentStream::LastBlock(unsigned char* pBlock) const {
  // Each block is decrypted with the encrypted one before it.
  unsigned char bytes[2 * kBlockSize] = {};
  const bool bOnlyOne = m_nSourceSize == kBlockSize;
  const size_t nWanted = bOnlyOne ? kBlockSize : sizeof bytes;
  if (ReadPiece(m_file.Get(), bytes + sizeof bytes - nWanted, nWanted,
                static_cast<off_t>(m_nSourceSize - nWanted)) != nWanted)
    FailAsDamaged("became shorter while it was read");
  CbcDecryptor(m_key, bytes).Decrypt(bytes + kBlockSize, pBlock, kBlockSize);
}

bool ContentStream::IsPadded() const {
  return m_pDecryptor && m_nSourceSize == m_nSize / kBlockSize * kBlockSize + kBlockSize;
}

bool ContentStream::IsLongerThanItsSize() const {
  return m_pDecryptor && m_nSourceSize > m_nSize / kBlockSize * kBlockSize + kBlockSize;
}

void ContentStream::CheckPadding() const {
  if (!IsPadded()) return;
  unsigned char block[kBlockSize];
  LastBlock(block);
  CheckPadding(block);
}

void ContentStream::CheckPadding(const unsigned char* pBlock) const {
  const size_t nPadding = kBlockSize - m_nSize % kBlockSize;
  const bool bZeros = std::all_of(pBlock + kBlockSize - nPadding, pBlock + kBlockSize,
                                  [](unsigned char nByte) { return nByte == 0; });
  // Shorter padding: the content is longer than its size in the manifest, and is cut to that.
  const size_t nFound = PaddingOf(pBlock);
  if ((nFound == 0 || nFound > nPadding) && !bZeros)
    FailAsDamaged("is damaged, or its key is that of another file: its padding is invalid");
}

size_t ContentStream::Read(unsigned char* pBuffer, size_t nCount) {
  const uint64_t nLeft = m_nSize - m_nRead;
  if (m_nSize == 0) CheckPadding();
  if (nLeft == 0) return 0;
  size_t nWanted = static_cast<size_t>(std::min<uint64_t>(nLeft, nCount));
  // The source has whole blocks, and is at least as long as the content.
  if (m_pDecryptor) nWanted = (nWanted + kBlockSize - 1) / kBlockSize * kBlockSize;
  if (ReadPiece(m_file.Get(), pBuffer, nWanted) != nWanted) FailAsDamaged("became shorter while it was read");
  if (m_pDecryptor) m_pDecryptor->Decrypt(pBuffer, pBuffer, nWanted);
  const auto nReturned = static_cast<size_t>(std::min<uint64_t>(nLeft, nWanted));
  m_nRead += nReturned;
  if (m_nRead < m_nSize) return nReturned;
  if (m_nSize % kBlockSize != 0 && IsPadded())
    CheckPadding(pBuffer + nWanted - kBlockSize);
  else
    CheckPadding();
  return nReturned;
}

}  // namespace orvandel
