#include "backup/manifest.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <QString>

#include "backup/digest.h"
#include "common/file.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"

namespace {

constexpr char kMagic[4] = {'m', 'b', 'd', 'b'};
constexpr long long kHeaderSize = 6;  // magic and a version that isn't inspected
constexpr long long kBlockSize = 40;  // the part of an entry with a fixed size
constexpr int kIdentifierDigits = 40;
constexpr uint16_t kKindMask = 0xE000;
constexpr uint16_t kDirectoryKind = 0x4000;

// The connection to "Manifest.db". One manifest is read at a time.
const QString* const pQstrConnName = new QString("mbdb_connection");
const QString* const pQstrConnType = new QString("QSQLITE");
QString* const pQstrDBPath = new QString;  // of the latest call

/// The entry being parsed. Most of it is read because it is there; only nMode and nPropertyCount decide
/// anything.
struct fileinfo {
  std::string strDomain;
  std::string strPath;
  std::string strLinkTarget;
  std::string strDataHash;
  std::string strEncryptionKey;
  uint16_t nMode = 0;
  uint32_t nInodeHigh = 0;
  uint32_t nInodeLow = 0;
  uint32_t nUserId = 0;
  uint32_t nGroupId = 0;
  uint32_t nModificationTime = 0;
  uint32_t nAccessTime = 0;
  uint32_t nChangeTime = 0;
  uint32_t nFileSize = 0;
  uint32_t nFlags = 0;
  uint32_t nPropertyCount = 0;
};

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
  info.nFileSize = BigEndian(p + 30, 8);  // the low 32 bits remain
  info.nFlags = p[38];
  info.nPropertyCount = p[39];
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
  info.strDataHash = gethash(pData, pOffset, nSize);
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

bool IsListed(const fileinfo& info) {
  if (info.strDomain.empty() || info.strPath.empty()) return false;
  return (info.nMode & kKindMask) != kDirectoryKind;
}

__MBDB_FILE__ MakeEntry(const fileinfo& info) {
  __MBDB_FILE__ entry;
  entry.strFileName.reserve(info.strDomain.size() + 1 + info.strPath.size());
  entry.strFileName.append(info.strDomain).append(1, '-').append(info.strPath);
  char szId[kIdentifierDigits];
  SHA1(reinterpret_cast<const unsigned char*>(entry.strFileName.c_str()), szId, kIdentifierDigits);
  entry.strFileId.assign(szId, kIdentifierDigits);
  return entry;
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

void ReadEntries(const std::string& strPath, const unsigned char* pData, long long nSize,
                 Catalogue& entries) {
  fileinfo info;
  long long nOffset = 0;
  while (nOffset < nSize) {
    ReadEntry(pData, &nOffset, nSize, info);
    if (nOffset > nSize) {
      ReportProblem(strPath, "cut short: its last entry isn't whole (the entries before it were read)");
      return;
    }
    if (IsListed(info)) entries.push_back(MakeEntry(info));
  }
}

}  // namespace

std::string getstring(const unsigned char* pData, long long* pOffset, long long nSize) {
  const StringBytes bytes = NextString(pData, pOffset, nSize);
  return {reinterpret_cast<const char*>(bytes.pBytes), static_cast<size_t>(bytes.nLength)};
}

std::string gethash(const unsigned char* pData, long long* pOffset, long long nSize) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const StringBytes bytes = NextString(pData, pOffset, nSize);
  std::string strText;
  strText.reserve(static_cast<size_t>(bytes.nLength) * 2);
  for (long long i = 0; i < bytes.nLength; ++i) {
    const unsigned char nByte = bytes.pBytes[i];
    if (nByte >= 0x10) strText += kDigits[nByte >> 4];  // no padding: a small byte is one digit
    strText += kDigits[nByte & 0xF];
  }
  return strText;
}

int process_mbdb_file(const char16_t* pPath, Catalogue& entries) {
  if (!pPath) return kStatusMissing;
  const std::string strPath = Unicode2Ansi(pPath);
  std::unique_ptr<FILE, decltype(&fclose)> pFile(_wfopen(pPath, L"rb"), &fclose);
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
    ReadEntries(strPath, pBytes + kHeaderSize, buffer.nSize - kHeaderSize, entries);
  return kStatusOk;
}

int process_db_file(const char16_t* pPath, Catalogue& entries) {
  entries.clear();
  *pQstrDBPath = FromNarrow(Unicode2Ansi(pPath));
  StoreQuery query(*pQstrConnName, *pQstrConnType, ToNarrow(*pQstrDBPath),
                   "select fileID, domain, relativePath from Files");
  while (query.Next()) {
    __MBDB_FILE__ entry;
    entry.strFileId = query.Narrow(0);
    QString qstrName = query.Text(1);
    const QString qstrPath = query.Text(2);
    if (!qstrPath.isEmpty()) qstrName += '-' + qstrPath;
    entry.strFileName = ToNarrow(qstrName);
    if (!entry.strFileId.empty()) entries.push_back(std::move(entry));
  }
  return kStatusOk;
}
