// The signatures that CFileTypeJudge tests. Offsets are from the start of the file; no read exceeds the given
// length.

#include <initializer_list>

#include "extract/file_type.h"

namespace {

constexpr int kUnknown = CFileTypeJudge::kUnknown;

/// A head in memory. Bytes beyond its end read as zero and match nothing.
class Head {
 public:
  Head(const void* pData, uint32_t nLength)
      : m_pData(static_cast<const unsigned char*>(pData)), m_nLength(pData ? nLength : 0) {}

  /// True when there are at least nLength bytes; null has none.
  bool Has(uint32_t nLength) const { return m_nLength >= nLength; }

  uint32_t Length() const { return m_nLength; }

  unsigned Byte(uint64_t nOffset) const { return nOffset < m_nLength ? m_pData[nOffset] : 0; }

  bool Bytes(uint64_t nOffset, std::initializer_list<unsigned char> bytes) const {
    if (nOffset + bytes.size() > m_nLength) return false;
    for (unsigned char nByte : bytes) {
      if (m_pData[nOffset++] != nByte) return false;
    }
    return true;
  }

  template <size_t kSize>
  bool Text(uint64_t nOffset, const char (&szText)[kSize]) const {
    if (nOffset + kSize - 1 > m_nLength) return false;
    for (size_t i = 0; i + 1 < kSize; ++i) {
      if (m_pData[nOffset + i] != static_cast<unsigned char>(szText[i])) return false;
    }
    return true;
  }

  /// True when the first nSpan bytes contain the sequence.
  bool BytesWithin(uint32_t nSpan, std::initializer_list<unsigned char> bytes) const {
    const uint32_t nEnd = nSpan < m_nLength ? nSpan : m_nLength;
    for (uint64_t i = 0; i + bytes.size() <= nEnd; ++i) {
      if (Bytes(i, bytes)) return true;
    }
    return false;
  }

  uint32_t Little16(uint64_t nOffset) const { return Byte(nOffset) | Byte(nOffset + 1) << 8; }
  uint32_t Little32(uint64_t nOffset) const { return Little16(nOffset) | Little16(nOffset + 2) << 16; }
  uint32_t Big16(uint64_t nOffset) const { return Byte(nOffset) << 8 | Byte(nOffset + 1); }

 private:
  const unsigned char* m_pData;
  uint32_t m_nLength;
};

int TypeIf(bool bHit, int nType) {
  return bHit ? nType : kUnknown;
}

}  // namespace

int CFileTypeJudge::IsMpgType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  if (!head.Has(16)) return kUnknown;
  const bool bVideo = head.Bytes(0, {0, 0, 1, 0xB3}) && head.BytesWithin(32, {0, 0, 1, 0xB8});
  const bool bSystem = head.Bytes(0, {0, 0, 1, 0xBA}) && head.BytesWithin(32, {0, 0, 1, 0xBB});
  return TypeIf(bVideo || bSystem, 15);
}

int CFileTypeJudge::IsMp4Type(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(32) && head.Text(4, "ftyp") && (head.Text(8, "iso") || head.Text(8, "mp42")), 18);
}

int CFileTypeJudge::IsRmvbType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(4) && head.Text(0, ".RMF"), 23);
}

int CFileTypeJudge::IsAsfType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(24) && head.Bytes(0, {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11, 0xA6, 0xD9,
                                               0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C}),
                24);
}

int CFileTypeJudge::IsAviType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Text(0, "RIFF") && head.Text(8, "AVI ") && head.Text(12, "LIST"), 22);
}

int CFileTypeJudge::Is3pgType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(32) && head.Text(4, "ftyp") && head.Text(8, "3gp"), 16);
}

int CFileTypeJudge::IsMp3Type(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  // The first check is for "ID3"; a head shorter than the ten bytes examined doesn't match either.
  if (!head.Has(3) || !head.Has(10) || !head.Text(0, "ID3")) return kUnknown;
  const bool bVersion = head.Byte(3) != 0xFF && head.Byte(4) != 0xFF;
  const bool bFlags = (head.Byte(5) & 0x1F) == 0;
  const bool bSize = head.Byte(6) < 0x80 && head.Byte(7) < 0x80 && head.Byte(8) < 0x80 && head.Byte(9) < 0x80;
  return TypeIf(bVersion && bFlags && bSize, 12);
}

int CFileTypeJudge::IsMidType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  // The header length is read as little-endian, so a standard file (00 00 00 06) doesn't match.
  if (!head.Has(16) || !head.Text(0, "MThd") || head.Little32(4) != 6) return kUnknown;
  // The track's mark is at 14, so it doesn't fit into 16 or 17 bytes.
  return TypeIf(head.Text(14, "MTrk"), 13);
}

int CFileTypeJudge::IsWavType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Text(0, "RIFF") && head.Text(8, "WAVE") && head.Text(12, "fmt "), 21);
}

int CFileTypeJudge::IsMovType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && (head.Text(0, "moov") || (head.Text(4, "ftyp") && head.Text(8, "qt  "))), 17);
}

int CFileTypeJudge::IsGifType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  const auto isDigit = [](unsigned nByte) { return nByte >= '0' && nByte <= '9'; };
  const bool bHead = head.Has(8) && head.Text(0, "GIF") && isDigit(head.Byte(3)) && isDigit(head.Byte(4));
  return TypeIf(bHead && head.Byte(5) >= 'a' && head.Byte(5) <= 'z', 31);
}

int CFileTypeJudge::IsBmpType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  const bool bHead = head.Has(40) && (head.Text(0, "BM") || head.Text(0, "BA"));
  return TypeIf(bHead && head.Little16(6) == 0 && head.Little16(8) == 0 && head.Little32(14) == 40, 29);
}

int CFileTypeJudge::IsJpgType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  const bool bJfif = head.Bytes(0, {0xFF, 0xD8, 0xFF, 0xE0}) && head.Text(6, "JFIF");
  const bool bExif = head.Bytes(0, {0xFF, 0xD8, 0xFF, 0xE1}) && head.Text(6, "Exif");
  return TypeIf(head.Has(16) && (bJfif || bExif), 10);
}

int CFileTypeJudge::IsPngType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(8) && head.Bytes(0, {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A}), 30);
}

int CFileTypeJudge::IsIcoType(const void* pData, uint32_t nLength) {
  static constexpr uint32_t kHeader = 6;
  static constexpr uint32_t kEntry = 16;
  const Head head(pData, nLength);
  if (!head.Has(16) || !head.Bytes(0, {0, 0, 1, 0})) return kUnknown;
  const uint32_t nImages = head.Little16(4);
  if (nImages == 0 || kHeader + kEntry * nImages > nLength) return kUnknown;
  uint32_t nExpected = kHeader + kEntry * nImages;  // the images follow the directory without gaps
  for (uint32_t i = 0; i < nImages; ++i) {
    const uint32_t nEntry = kHeader + kEntry * i;
    if (head.Byte(nEntry + 3) != 0 || head.Little32(nEntry + 12) != nExpected) return kUnknown;
    nExpected += head.Little32(nEntry + 8);
  }
  return 46;
}

int CFileTypeJudge::IsOffice2003Type(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(8) && head.Bytes(0, {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1}), 2);
}

int CFileTypeJudge::IsOffice2007Type(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(31) && (head.Bytes(0, {'P', 'K', 3, 4}) || head.Text(31, "[Content_Types].xml")), 7);
}

int CFileTypeJudge::IsPdfType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(5) && head.Text(0, "%PDF-"), 8);
}

int CFileTypeJudge::IsGhoType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(2) && head.Bytes(0, {0xFE, 0xEF, 0, 0}), 9);
}

int CFileTypeJudge::IsMp2Type(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(4) && head.Bytes(0, {0xFF, 0xFD, 0xE4, 0}), 11);
}

int CFileTypeJudge::IsMmfType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(4) && head.Text(0, "MMMD"), 14);
}

int CFileTypeJudge::IsMkvType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Bytes(0, {0x1A, 0x45, 0xDF, 0xA3}), 19);
}

int CFileTypeJudge::IsApeType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(4) && head.Text(0, "MAC "), 25);
}

int CFileTypeJudge::IsSwfType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  const bool bPlain = head.Text(0, "FWS") && head.Byte(3) < 6;
  const bool bPacked = head.Text(0, "CWS") && head.Byte(3) >= 6 && head.Byte(3) <= 15;
  return TypeIf(head.Has(8) && (bPlain || bPacked), 26);
}

int CFileTypeJudge::IsFlvType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Bytes(0, {'F', 'L', 'V', 1}) && head.Bytes(5, {0, 0, 0, 9}), 27);
}

int CFileTypeJudge::IsPsdType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(40) && head.Text(0, "8BPS"), 28);
}

int CFileTypeJudge::IsTifType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(4) && (head.Bytes(0, {'I', 'I', '*', 0}) || head.Bytes(0, {'M', 'M', 0, '*'})), 32);
}

int CFileTypeJudge::IsCabType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(36) && head.Text(0, "MSCF"), 33);
}

int CFileTypeJudge::Is7zType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(2) && head.Bytes(0, {0x37, 0x7A, 0xBC, 0xAF, 0x27}), 34);
}

int CFileTypeJudge::IsZipType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(48) && head.Bytes(0, {'P', 'K', 3, 4}), 35);
}

int CFileTypeJudge::IsGzipType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  if (!head.Has(16) || !head.Bytes(0, {0x1F, 0x8B, 0x08})) return kUnknown;
  const bool bFlags = head.Byte(3) == 0 || head.Byte(3) == 8;
  const bool bLevel = head.Byte(8) == 2 || head.Byte(8) == 4;
  const bool bSystem = head.Byte(9) <= 0x0D || head.Byte(9) == 0xFF;
  return TypeIf(bFlags && bLevel && bSystem, 36);
}

int CFileTypeJudge::IsRarType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(7) && head.Bytes(0, {'R', 'a', 'r', '!', 0x1A, 0x07, 0x00}), 37);
}

int CFileTypeJudge::IsPstEmailType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Text(0, "!BDN") && head.Text(8, "SM"), 38);
}

int CFileTypeJudge::IsSqlType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Text(0, "SQLite format 3") && head.Byte(15) == 0, 39);
}

int CFileTypeJudge::IsDbxEmailType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Bytes(0, {0xCF, 0xAD, 0x12, 0xFE}), 40);
}

int CFileTypeJudge::IsPeType(const void* pData, uint32_t nLength) {
  static constexpr uint32_t kFlagsOffset = 22;
  static constexpr uint32_t kLastPlace = 489;  // keeps the fields examined within the first 512 bytes
  const Head head(pData, nLength);
  if (!head.Has(512) || !head.Text(0, "MZ")) return kUnknown;
  const uint32_t nPlace = head.Little32(60);
  if (nPlace >= kLastPlace || !head.Bytes(nPlace, {'P', 'E', 0, 0})) return kUnknown;
  const uint32_t nFlags = head.Little16(nPlace + kFlagsOffset);
  if (!(nFlags & 0x0002)) return kUnknown;
  if (nFlags & 0x1000) return 43;
  return nFlags & 0x2000 ? 42 : 41;
}

int CFileTypeJudge::IsFlaType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Bytes(0, {0xD0, 0xCF, 0x11, 0xE0}), 44);
}

int CFileTypeJudge::IsTtfType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  if (!head.Has(16) || !head.Bytes(0, {0, 1, 0, 0})) return kUnknown;
  for (uint32_t nField : {4, 6, 8, 10}) {
    if (head.Little16(nField) == 0) return kUnknown;
  }
  const uint32_t nTables = head.Big16(4);
  if (16 * nTables + 16 > nLength) return kUnknown;
  return TypeIf(head.Bytes((16 * nTables) | 12, {0, 1, 0, 0}), 45);
}

int CFileTypeJudge::IsMtsType(const void* pData, uint32_t nLength) {
  const Head head(pData, nLength);
  return TypeIf(head.Has(16) && head.Bytes(8, {0, 0, 0xB0, 0x11, 0, 0, 0xC1, 0}), 47);
}
