#include "decrypt/binary_list.h"

#include <QString>
#include <cstring>

namespace orvandel {

namespace {

constexpr char kMagic[] = "bplist";
constexpr size_t kHeadSize = 8;  // magic and version
constexpr size_t kTrailerSize = 32;
// Offsets in the trailer.
constexpr size_t kOffsetSizeAt = 6, kNumberSizeAt = 7, kObjectsAt = 8, kRootAt = 16, kTableAt = 24;
constexpr unsigned int kLongCount = 0xF;  // low half of a marker: the count follows as a number

constexpr unsigned int kTextMarker = 0x50;

}  // namespace

uint64_t BinaryList::Number(size_t nOffset, size_t nBytes) const {
  uint64_t nValue = 0;
  for (size_t i = 0; i < nBytes; ++i) nValue = nValue << 8 | m_pData[nOffset + i];
  return nValue;
}

std::optional<BinaryList> BinaryList::Open(const void* pData, size_t nSize) {
  BinaryList list;
  list.m_pData = static_cast<const unsigned char*>(pData);
  if (nSize < kHeadSize + kTrailerSize || memcmp(pData, kMagic, sizeof kMagic - 1) != 0) return std::nullopt;
  const size_t nTrailer = nSize - kTrailerSize;
  list.m_nOffsetSize = list.m_pData[nTrailer + kOffsetSizeAt];
  list.m_nNumberSize = list.m_pData[nTrailer + kNumberSizeAt];
  list.m_nObjects = list.Number(nTrailer + kObjectsAt, 8);
  list.m_nRoot = list.Number(nTrailer + kRootAt, 8);
  const uint64_t nTable = list.Number(nTrailer + kTableAt, 8);
  const auto isWidth = [](size_t nWidth) { return nWidth >= 1 && nWidth <= 8; };
  if (!isWidth(list.m_nOffsetSize) || !isWidth(list.m_nNumberSize)) return std::nullopt;
  if (nTable < kHeadSize || nTable > nTrailer || list.m_nObjects > (nTrailer - nTable) / list.m_nOffsetSize)
    return std::nullopt;
  list.m_nTable = static_cast<size_t>(nTable);
  list.m_nEnd = list.m_nTable;
  return list;
}

BinaryList::Object BinaryList::At(uint64_t nNumber) const {
  if (nNumber >= m_nObjects) return {};
  const uint64_t nStart = Number(m_nTable + static_cast<size_t>(nNumber) * m_nOffsetSize, m_nOffsetSize);
  if (nStart < kHeadSize || nStart >= m_nEnd) return {};
  const unsigned int nMarker = m_pData[nStart];
  const unsigned int nHigh = nMarker >> 4, nLow = nMarker & 0xF;
  Object object;
  object.nOffset = static_cast<size_t>(nStart) + 1;
  const auto hasBytes = [&](uint64_t nBytes) { return nBytes <= m_nEnd - object.nOffset; };

  if (nHigh == 1 || nHigh == 8) {
    // Of a number of 16 bytes the lower eight count.
    const size_t nBytes = nHigh == 8 ? nLow + 1 : size_t{1} << nLow;
    if (nBytes > 16 || !hasBytes(nBytes)) return {};
    object.type = nHigh == 1 ? Type::Number : Type::Reference;
    object.nValue = nBytes > 8 ? Number(object.nOffset + nBytes - 8, 8) : Number(object.nOffset, nBytes);
    return object;
  }
  uint64_t nCount = nLow;
  if (nLow == kLongCount) {
    const size_t nBytes =
        hasBytes(1) && m_pData[object.nOffset] >> 4 == 1 ? size_t{1} << (m_pData[object.nOffset] & 0xF) : 0;
    if (nBytes == 0 || nBytes > 8 || !hasBytes(1 + nBytes)) return {};
    nCount = Number(object.nOffset + 1, nBytes);
    object.nOffset += 1 + nBytes;
  }
  struct Kind {
    unsigned int nHigh;
    Type type;
    size_t nElementSize;
  };
  const Kind kinds[] = {{0x4, Type::Data, 1},
                        {0x5, Type::Text, 1},
                        {0x6, Type::WideText, 2},
                        {0xA, Type::Array, m_nNumberSize},
                        {0xD, Type::Dictionary, 2 * m_nNumberSize}};
  for (const Kind& kind : kinds) {
    if (kind.nHigh != nHigh) continue;
    if (!hasBytes(nCount) || !hasBytes(nCount * kind.nElementSize)) return {};
    object.type = kind.type;
    object.nCount = static_cast<size_t>(nCount);
    return object;
  }
  return {};
}

bool BinaryList::IsText(uint64_t nNumber, const char* pszText, size_t nLength) const {
  if (nNumber >= m_nObjects) return false;
  const uint64_t nStart = Number(m_nTable + static_cast<size_t>(nNumber) * m_nOffsetSize, m_nOffsetSize);
  if (nStart >= m_nEnd || nLength >= kLongCount) return false;
  return m_pData[nStart] == (kTextMarker | nLength) && nLength < m_nEnd - nStart &&
         memcmp(m_pData + nStart + 1, pszText, nLength) == 0;
}

std::optional<size_t> BinaryList::PlaceOf(const Object& dictionary, const char* pszKey) const {
  if (dictionary.type != Type::Dictionary) return std::nullopt;
  const size_t nLength = strlen(pszKey);
  for (size_t i = 0; i < dictionary.nCount; ++i) {
    if (IsText(Number(dictionary.nOffset + i * m_nNumberSize, m_nNumberSize), pszKey, nLength)) return i;
  }
  return std::nullopt;
}

BinaryList::Object BinaryList::Member(const Object& dictionary, const char* pszKey) const {
  const std::optional<size_t> place = PlaceOf(dictionary, pszKey);
  if (!place) return {};
  return At(Number(dictionary.nOffset + (dictionary.nCount + *place) * m_nNumberSize, m_nNumberSize));
}

bool BinaryList::HasMember(const Object& dictionary, const char* pszKey) const {
  return PlaceOf(dictionary, pszKey).has_value();
}

BinaryList::Object BinaryList::Element(const Object& array, uint64_t nPlace) const {
  if (array.type != Type::Array || nPlace >= array.nCount) return {};
  return At(Number(array.nOffset + static_cast<size_t>(nPlace) * m_nNumberSize, m_nNumberSize));
}

Bytes BinaryList::DataOf(const Object& data) const {
  if (data.type != Type::Data) return {};
  return Bytes(m_pData + data.nOffset, m_pData + data.nOffset + data.nCount);
}

std::string BinaryList::TextOf(const Object& text) const {
  if (text.type == Type::Text)
    return std::string(m_pData + text.nOffset, m_pData + text.nOffset + text.nCount);
  if (text.type != Type::WideText) return {};
  QString qstrText;
  for (size_t i = 0; i < text.nCount; ++i)
    qstrText += QChar(static_cast<char16_t>(Number(text.nOffset + 2 * i, 2)));
  return qstrText.toStdString();
}

}  // namespace orvandel
