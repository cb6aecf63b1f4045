#include "decrypt/file_job.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "common/descriptor.h"
#include "common/file.h"
#include "decrypt/protocol.h"

namespace orvandel {

namespace {

constexpr size_t kPieceSize = size_t{256} * 1024;
constexpr size_t kBlockSize = 16;
constexpr int kMostParts = 100;  // per target: left by killed runs, or in use by other workers

[[noreturn]] void Fail(const std::string& strWhat) {
  throw std::runtime_error(strWhat + ": " + strerror(errno));
}

/// Fills the buffer up to the end of the file. @return the number of bytes read.
size_t ReadPiece(int nDescriptor, unsigned char* pBuffer, size_t nSize) {
  size_t nRead = 0;
  while (nRead < nSize) {
    const ssize_t nGot = read(nDescriptor, pBuffer + nRead, nSize - nRead);
    if (nGot < 0 && errno == EINTR) continue;
    if (nGot < 0) Fail("can't be read");
    if (nGot == 0) break;
    nRead += static_cast<size_t>(nGot);
  }
  return nRead;
}

void WritePiece(int nDescriptor, const unsigned char* pBuffer, size_t nSize) {
  while (nSize > 0) {
    const ssize_t nPut = write(nDescriptor, pBuffer, nSize);
    if (nPut < 0 && errno == EINTR) continue;
    if (nPut < 0) Fail("can't be written");
    pBuffer += nPut;
    nSize -= static_cast<size_t>(nPut);
  }
}

/// Creates a partial file in the target's folder, readable only by its owner. Its name is unique, since a
/// manifest may list an identifier twice. @param strPart receives its path. @return a descriptor.
int MakePart(const std::string& strTarget, std::string& strPart) {
  for (int i = 1; i <= kMostParts; ++i) {
    strPart = strTarget + ".part" + (i > 1 ? std::to_string(i) : "");
    const int nPart = open(strPart.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (nPart != -1) return nPart;
    if (errno != EEXIST) break;
  }
  Fail(strPart + " can't be created");
}

/// Length of the padding at the end of the last block. Throws when it isn't valid.
size_t PaddingOf(const unsigned char* pEnd) {
  const size_t nPadding = pEnd[-1];
  const auto isPadding = [&](unsigned char nByte) { return nByte == nPadding; };
  if (nPadding == 0 || nPadding > kBlockSize || !std::all_of(pEnd - nPadding, pEnd, isPadding))
    throw std::runtime_error("is damaged: its padding is invalid");
  return nPadding;
}

/// Copies the content, decrypted unless pDecryptor is null. @return the number of bytes written.
uint64_t CopyContent(int nSource, int nTarget, CbcDecryptor* pDecryptor, uint64_t nSourceSize,
                     uint64_t nSize) {
  if (pDecryptor && nSourceSize % kBlockSize != 0)
    throw std::runtime_error("is cut short: it doesn't end on a whole block");
  if (pDecryptor && nSourceSize == 0 && nSize == UINT64_MAX)
    throw std::runtime_error("is cut short: it is empty");
  Bytes piece(static_cast<size_t>(std::min<uint64_t>(kPieceSize, nSourceSize)));
  uint64_t nDone = 0, nWritten = 0;
  while (nDone < nSourceSize && nWritten < nSize) {
    const size_t nWanted = static_cast<size_t>(std::min<uint64_t>(kPieceSize, nSourceSize - nDone));
    if (ReadPiece(nSource, piece.data(), nWanted) != nWanted)
      throw std::runtime_error("became shorter while it was read");
    nDone += nWanted;
    size_t nPlain = nWanted;
    if (pDecryptor) {
      pDecryptor->Decrypt(piece.data(), piece.data(), nWanted);
      if (nSize == UINT64_MAX && nDone == nSourceSize) nPlain -= PaddingOf(piece.data() + nWanted);
    }
    nPlain = static_cast<size_t>(std::min<uint64_t>(nPlain, nSize - nWritten));
    WritePiece(nTarget, piece.data(), nPlain);
    nWritten += nPlain;
  }
  return nWritten;
}

}  // namespace

void WriteDecrypted(const std::string& strSource, const std::string& strTarget, const Secret& key,
                    uint64_t nSize) {
  Result<OpenedFile> opened = OpenBackupFile(strSource);
  if (!opened && opened.Error().nCode == ENOENT) throw std::runtime_error(kMissingSource);
  if (!opened) throw std::runtime_error("can't be opened: " + opened.Error().strReason);
  const Descriptor& source = opened->descriptor;
  struct stat attributes;
  if (fstat(source.Get(), &attributes) != 0) Fail("can't be read");

  std::string strPart;
  Descriptor target(MakePart(strTarget, strPart));
  try {
    const auto nSourceSize = static_cast<uint64_t>(attributes.st_size);
    uint64_t nWritten = 0;
    if (key.IsEmpty()) {
      nWritten = CopyContent(source.Get(), target.Get(), nullptr, nSourceSize, UINT64_MAX);
    } else {
      CbcDecryptor decryptor(key);
      nWritten = CopyContent(source.Get(), target.Get(), &decryptor, nSourceSize, nSize);
    }
    if (!key.IsEmpty() && nSize != UINT64_MAX && nWritten < nSize)
      throw std::runtime_error("is cut short: " + std::to_string(nWritten) + " of " + std::to_string(nSize) +
                               " bytes");
    if (!target.Close()) Fail("can't be written");
    if (rename(strPart.c_str(), strTarget.c_str()) != 0) Fail("can't be renamed into place");
  } catch (...) {
    unlink(strPart.c_str());
    throw;
  }
}

}  // namespace orvandel
