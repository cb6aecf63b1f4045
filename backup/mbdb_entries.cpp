#include "backup/mbdb_entries.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "backup/manifest.h"
#include "common/file.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

namespace {

constexpr char kMagic[4] = {'m', 'b', 'd', 'b'};
constexpr size_t kHeaderSize = 6;     // magic, and a version that is ignored
constexpr size_t kWindow = 1 << 20;   // bytes read at a time; grows for a longer entry
constexpr long long kBlockSize = 40;  // the fixed-size part of an entry

uint32_t BigEndian(const unsigned char* p, int nBytes) {
  uint32_t nValue = 0;
  for (int i = 0; i < nBytes; ++i) nValue = nValue << 8 | p[i];
  return nValue;
}

/// The bytes of a string, and the offset after it. Data is null for an empty or incomplete string; for the
/// latter the offset is beyond nSize.
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
  if (pLength[0] == 0xFF && pLength[1] == 0xFF) return {};  // marks an empty string
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

/// Each byte of the data hash as "%x", without padding: a byte below 16 is one digit.
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

/// Parses one entry and moves the offset past it, or beyond nSize when the entry is incomplete.
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

/// Reads an open manifest after its header in pieces. Memory depends on the longest entry, not on the file's
/// size.
class ManifestWindow {
 public:
  /// @param strPath path of the manifest, narrow; must outlive this object.
  ManifestWindow(const std::string& strPath, Descriptor file) : m_strPath(strPath), m_file(std::move(file)) {
    More();
  }
  ManifestWindow(const ManifestWindow&) = delete;
  ManifestWindow& operator=(const ManifestWindow&) = delete;

  const unsigned char* Data() const { return m_bytes.data(); }
  long long Size() const { return static_cast<long long>(m_bytes.size()); }
  /// True at the end of the file or after a read error.
  bool AtEnd() const { return m_bAtEnd; }
  /// The read error; no problem at the end of the file.
  const Problem& Error() const { return m_problem; }

  /// Drops the first nBytes bytes and reads more. A call that drops nothing doubles the window.
  void Advance(long long nBytes) {
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + nBytes);
    More();
  }

 private:
  void More() {
    size_t nFilled = m_bytes.size();
    m_bytes.resize(std::max(kWindow, nFilled * 2));
    while (nFilled < m_bytes.size() && !m_bAtEnd) {
      const ssize_t nRead = read(m_file.Get(), m_bytes.data() + nFilled, m_bytes.size() - nFilled);
      if (nRead < 0 && errno == EINTR) continue;
      if (nRead < 0) m_problem = SystemProblem(Problem::Step::Read, m_strPath, errno);
      if (nRead <= 0) m_bAtEnd = true;
      if (nRead > 0) nFilled += static_cast<size_t>(nRead);
    }
    m_bytes.resize(nFilled);
  }

  const std::string& m_strPath;
  Descriptor m_file;
  std::vector<unsigned char> m_bytes;
  bool m_bAtEnd = false;
  Problem m_problem;
};

void VisitEntries(const std::string& strPath, ManifestWindow& window,
                  const std::function<void(const fileinfo&)>& visit) {
  fileinfo info;
  long long nOffset = 0;
  while (nOffset < window.Size() || !window.AtEnd()) {
    const long long nStart = nOffset;
    ReadEntry(window.Data(), &nOffset, window.Size(), info);
    if (nOffset <= window.Size()) {
      visit(info);
    } else if (!window.AtEnd()) {
      window.Advance(nStart);
      nOffset = 0;
    } else {
      const bool bCut = nStart < window.Size() && !window.Error();
      if (bCut)
        ReportLoss(strPath, "cut short: its last entry isn't whole (the entries before it were read)");
      break;
    }
  }
  if (const Problem& problem = window.Error())
    ReportLoss(strPath, problem.strReason + " (the entries before that were read)");
}

}  // namespace

std::string getstring(const unsigned char* pData, long long* pOffset, long long nSize) {
  const StringBytes bytes = NextString(pData, pOffset, nSize);
  return {reinterpret_cast<const char*>(bytes.pBytes), static_cast<size_t>(bytes.nLength)};
}

namespace orvandel {

std::string gethash(const unsigned char* pData, long long* pOffset, long long nSize) {
  std::string strText;
  ReadHash(pData, pOffset, nSize, strText);
  return strText;
}

int VisitBinaryManifest(const char16_t* pPath, const std::function<void(const fileinfo&)>& visit) {
  if (!pPath) return kStatusMissing;
  const std::string strPath = Unicode2Ansi(pPath);
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) {
    ReportLoss(file.Error());
    return kStatusMissing;
  }
  // The magic is checked first: a file that isn't a manifest may have any size.
  char head[kHeaderSize];
  uint32_t nRead = 0;
  ReadData(file->descriptor.Get(), head, sizeof head, nRead);
  if (nRead < sizeof kMagic || memcmp(head, kMagic, sizeof kMagic) != 0) {
    ReportLoss(strPath, "not a manifest: it doesn't begin with \"mbdb\"");
    return kStatusMissing;
  }
  if (nRead < sizeof head) ReportLoss(strPath, "cut short within its head");
  ManifestWindow window(strPath, std::move(file->descriptor));
  // A device lists some thousand files: a manifest without any was truncated after its header.
  if (window.Size() == 0 && !window.Error() && nRead == sizeof head) ReportProblem(strPath, "lists no files");
  VisitEntries(strPath, window, visit);
  return kStatusOk;
}

}  // namespace orvandel
