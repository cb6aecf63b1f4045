#include "ui/icon_file.h"

#include <QtEndian>
#include <algorithm>
#include <cstdlib>

namespace orvandel {

namespace {

// Offsets in bytes. The file begins with a 6-byte header and a 16-byte entry for each picture, all
// little-endian. A picture is a PNG, or a bitmap without file header and with its height doubled.
constexpr qint64 kMostBytes = 16 << 20;
constexpr int kHeadSize = 6;
constexpr int kCountOffset = 4;
constexpr int kEntrySize = 16;
constexpr int kPictureOffset =
    12;                          // in an entry, whose first two bytes are width and height, 0 for 256 or more
constexpr int kBitmapWidth = 4;  // in a bitmap's header
constexpr int kBitmapHeight = 8;
constexpr int kBitmapHead = 12;
// A PNG's 8-byte signature, then length and name of its first chunk; its numbers are big-endian.
constexpr int kPngChunkName = 12;
constexpr int kPngWidth = 16;
constexpr int kPngHeight = 20;
constexpr int kPngDepth = 24;
constexpr int kPngHead = 25;
constexpr char kPngSignature[] = "\x89PNG\r\n\x1a\n";

qint64 PixelsOfPng(const QByteArray& head) {
  if (head.size() < kPngHead || head.mid(kPngChunkName, 4) != "IHDR") return -1;
  const qint64 nWidth = qFromBigEndian<quint32>(head.constData() + kPngWidth);
  const qint64 nHeight = qFromBigEndian<quint32>(head.constData() + kPngHeight);
  constexpr qint64 kMostSide = 0x7fffffff;
  if (nWidth > kMostSide || nHeight > kMostSide) return -1;
  const bool bDeep = head[kPngDepth] == 16;
  return nWidth * nHeight * (bDeep ? 2 : 1);
}

qint64 PixelsOfBitmap(const QByteArray& head, int nEntryWidth, int nEntryHeight) {
  if (head.size() < kBitmapHead) return 0;
  const qint64 nWidth = std::abs(qint64{qFromLittleEndian<qint32>(head.constData() + kBitmapWidth)});
  const qint64 nHeight = std::abs(qint64{qFromLittleEndian<qint32>(head.constData() + kBitmapHeight)}) / 2;
  return (nEntryWidth == 0 ? nWidth : nEntryWidth) * (nEntryHeight == 0 ? nHeight : nEntryHeight);
}

}  // namespace

qint64 PixelsOfIcon(QIODevice& file) {
  if (file.size() > kMostBytes || !file.seek(0)) return -1;
  const QByteArray bytes = file.read(kMostBytes);
  file.seek(0);
  if (bytes.size() < kHeadSize) return -1;
  const int nCount = qFromLittleEndian<quint16>(bytes.constData() + kCountOffset);
  qint64 nMost = 0;
  for (int i = 0; i < nCount; ++i) {
    const int nEntry = kHeadSize + i * kEntrySize;
    if (nEntry + kEntrySize > bytes.size()) break;
    const quint32 nOffset = qFromLittleEndian<quint32>(bytes.constData() + nEntry + kPictureOffset);
    if (nOffset >= static_cast<quint32>(bytes.size())) continue;
    const QByteArray head = bytes.mid(static_cast<int>(nOffset), kPngHead);
    const qint64 nPixels =
        head.startsWith(kPngSignature)
            ? PixelsOfPng(head)
            : PixelsOfBitmap(head, static_cast<uchar>(bytes[nEntry]), static_cast<uchar>(bytes[nEntry + 1]));
    if (nPixels < 0) return -1;
    nMost = std::max(nMost, nPixels);
  }
  return nMost;
}

}  // namespace orvandel
