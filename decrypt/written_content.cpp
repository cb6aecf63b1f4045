#include "decrypt/written_content.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "common/descriptor.h"

namespace orvandel {

namespace {

constexpr size_t kPieceSize = size_t{256} * 1024;
constexpr int kMostParts = 100;  // per target: left by killed runs, or in use by other workers

[[noreturn]] void Fail(const std::string& strWhat) {
  throw std::runtime_error(strWhat + ": " + strerror(errno));
}

void WritePiece(int nDescriptor, const unsigned char* pBuffer, size_t nSize) {
  while (nSize > 0) {
    const ssize_t nPut = write(nDescriptor, pBuffer, nSize);
    if (nPut < 0 && errno == EINTR) continue;
    if (nPut < 0)
      throw ContentError(Problem::Step::Write, errno, std::string("can't be written: ") + strerror(errno));
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

}  // namespace

void WriteContent(ContentStream& content, int nTarget) {
  const uint64_t nLeast = CbcDecryptor::kBlockSize;
  Bytes piece(static_cast<size_t>(std::clamp<uint64_t>(content.Size(), nLeast, kPieceSize)));
  piece.resize((piece.size() + nLeast - 1) / nLeast * nLeast);
  while (const size_t nRead = content.Read(piece.data(), piece.size()))
    WritePiece(nTarget, piece.data(), nRead);
}

void WriteContent(ContentStream& content, const std::string& strTarget) {
  std::string strPart;
  Descriptor target(MakePart(strTarget, strPart));
  try {
    WriteContent(content, target.Get());
    if (!target.Close()) Fail("can't be written");
    if (rename(strPart.c_str(), strTarget.c_str()) != 0) Fail("can't be renamed into place");
  } catch (...) {
    unlink(strPart.c_str());
    throw;
  }
}

}  // namespace orvandel
