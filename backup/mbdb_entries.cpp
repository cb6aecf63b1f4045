#include "backup/mbdb_entries.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "backup/manifest.h"
#include "common/file.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/text.h"

namespace {

constexpr char kMagic[4] = {'m', 'b', 'd', 'b'};
constexpr long long kHeaderSize = 6;  // magic and a version that isn't inspected
constexpr long long kBlockSize = 40;  // the part of an entry with a fixed size

uint32_t BigEndian(const unsigned char* p, int nBytes) {
  uint32_t nValue = 0;
  for (int i = 0; i < nBytes; ++i) nValue = nValue << 8 | p[i];
  return nValue;
}

/// The bytes of a string, and the offset behind it. Null data for one that is empty, or that isn't whole, in
/// which case the offset comes to lie beyond nSize.
struct StringBytes {
  const unsigned char* pBytes = nullptr;
  long long nLength = 0;
};

StringBytes NextString(const unsigned char* pData, long long* pOffset, long long nSize) {
  if (!pData || !pOffset) return {};
  if (*pOffset + 2 > nSize) {
    *pOffset = nSize + 1;
    return {};
  }
  const unsigned char* pLength = pData + *pOffset;
  *pOffset += 2;
  if (pLength[0] == 0xFF && pLength[1] == 0xFF) return {};  // the mark of an empty string
  const auto nLength = static_cast<long long>(BigEndian(pLength, 2));
  if (*pOffset + nLength > nSize) {
    *pOffset = nSize + 1;
    return {};
  }
  const StringBytes bytes{pData + *pOffset, nLength};
  *pOffset += nLength;
  return bytes;
}

void ReadBlock(const unsigned char* p, fileinfo& info) {
  info.nMode = static_cast<uint16_t>(BigEndian(p, 2));
  info.nInodeHigh = BigEndian(p + 2, 4);
  info.nInodeLow = BigEndian(p + 6, 4);
  info.nUserId = BigEndian(p + 10, 4);
  info.nGroupId = BigEndian(p + 14, 4);
  info.nModificationTime = BigEndian(p + 18, 4);
  info.nAccessTime = BigEndian(p + 22, 4);
  info.nChangeTime = BigEndian(p + 26, 4);
  info.nFileSizeHigh = BigEndian(p + 30, 4);
  info.nFileSize = BigEndian(p + 34, 4);
  info.nFlags = p[38];
  info.nPropertyCount = p[39];
}

/// Each byte of the data hash by "%x", with no padding: a small byte is one digit.
void ReadHash(const unsigned char* pData, long long* pOffset, long long nSize, std::string& strText) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const StringBytes bytes = NextString(pData, pOffset, nSize);
  strText.resize(static_cast<size_t>(bytes.nLength) * 2);
  char* pEnd = strText.data();
  for (long long i = 0; i < bytes.nLength; ++i) {
    const unsigned char nByte = bytes.pBytes[i];
    if (nByte >= 0x10) *pEnd++ = kDigits[nByte >> 4];
    *pEnd++ = kDigits[nByte & 0xF];
  }
  strText.resize(static_cast<size_t>(pEnd - strText.data()));
}

/// Parses one entry and moves the offset behind it; beyond nSize when the entry isn't whole.
void ReadEntry(const unsigned char* pData, long long* pOffset, long long nSize, fileinfo& info) {
  const auto assign = [&](std::string& strField) {
    const StringBytes bytes = NextString(pData, pOffset, nSize);
    strField.assign(reinterpret_cast<const char*>(bytes.pBytes), static_cast<size_t>(bytes.nLength));
  };
  assign(info.strDomain);
  assign(info.strPath);
  assign(info.strLinkTarget);
  ReadHash(pData, pOffset, nSize, info.strDataHash);
  assign(info.strEncryptionKey);
  if (*pOffset + kBlockSize > nSize) {
    *pOffset = nSize + 1;
    return;
  }
  ReadBlock(pData + *pOffset, info);
  *pOffset += kBlockSize;
  for (uint32_t i = 0; i < info.nPropertyCount && *pOffset <= nSize; ++i) {
    NextString(pData, pOffset, nSize);
    NextString(pData, pOffset, nSize);
  }
}

/// The whole file, or null, with errno set, when it can't be read or there is no memory for it.
struct Buffer {
  std::unique_ptr<unsigned char, decltype(&free)> pBytes{nullptr, &free};
  long long nSize = 0;
};

Buffer ReadWhole(FILE* pFile) {
  Buffer buffer;
  struct stat attributes;
  if (fstat(fileno(pFile), &attributes) != 0) return buffer;
  if (S_ISDIR(attributes.st_mode)) {
    errno = EISDIR;
    return buffer;
  }
  if (fseeko(pFile, 0, SEEK_END) != 0) return buffer;
  const off_t nSize = ftello(pFile);
  rewind(pFile);
  if (nSize < 0) return buffer;
  buffer.pBytes.reset(static_cast<unsigned char*>(malloc(static_cast<size_t>(nSize) + 1)));
  if (buffer.pBytes)
    buffer.nSize = static_cast<long long>(fread(buffer.pBytes.get(), 1, static_cast<size_t>(nSize), pFile));
  return buffer;
}

void VisitEntries(const std::string& strPath, const unsigned char* pData, long long nSize,
                  const std::function<void(const fileinfo&)>& visit) {
  fileinfo info;
  long long nOffset = 0;
  while (nOffset < nSize) {
    ReadEntry(pData, &nOffset, nSize, info);
    if (nOffset > nSize) {
      ReportProblem(strPath, "cut short: its last entry isn't whole (the entries before it were read)");
      return;
    }
    visit(info);
  }
}

}  // namespace

std::string getstring(const unsigned char* pData, long long* pOffset, long long nSize) {
  const StringBytes bytes = NextString(pData, pOffset, nSize);
  return {reinterpret_cast<const char*>(bytes.pBytes), static_cast<size_t>(bytes.nLength)};
}

std::string gethash(const unsigned char* pData, long long* pOffset, long long nSize) {
  std::string strText;
  ReadHash(pData, pOffset, nSize, strText);
  return strText;
}

int VisitBinaryManifest(const char16_t* pPath, const std::function<void(const fileinfo&)>& visit) {
  if (!pPath) return kStatusMissing;
  const std::string strPath = Unicode2Ansi(pPath);
  struct stat attributes;
  const bool bNoFile = stat(strPath.c_str(), &attributes) == 0 && !S_ISREG(attributes.st_mode);
  std::unique_ptr<FILE, decltype(&fclose)> pFile(bNoFile ? nullptr : _wfopen(pPath, L"rb"), &fclose);
  if (bNoFile) errno = EISDIR;
  if (!pFile) {
    ReportProblem(strPath, strerror(errno));
    return kStatusMissing;
  }
  const Buffer buffer = ReadWhole(pFile.get());
  if (!buffer.pBytes) {
    ReportProblem(strPath, strerror(errno));
    return kStatusMissing;
  }
  const unsigned char* pBytes = buffer.pBytes.get();
  if (buffer.nSize < static_cast<long long>(sizeof kMagic) || memcmp(pBytes, kMagic, sizeof kMagic) != 0) {
    ReportProblem(strPath, "not a manifest: it doesn't begin with \"mbdb\"");
    return kStatusMissing;
  }
  if (buffer.nSize > kHeaderSize)
    VisitEntries(strPath, pBytes + kHeaderSize, buffer.nSize - kHeaderSize, visit);
  return kStatusOk;
}
