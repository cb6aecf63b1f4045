#include "sample/gzip_writer.h"

#include <QtEndian>

namespace orvandel {

namespace {

quint32 crc32(const QByteArray& content) {
  constexpr quint32 kPolynomial = 0xEDB88320;
  quint32 crc = ~quint32{0};
  for (const char byte : content) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? kPolynomial : 0);
  }
  return ~crc;
}

QByteArray littleEndian(quint32 number) {
  char bytes[sizeof number];
  qToLittleEndian(number, bytes);
  return QByteArray(bytes, sizeof bytes);
}

}  // namespace

QByteArray gzipped(const QByteArray& content) {
  // Deflate, no flags, no time, no extra flags, system 19 (Darwin).
  static const QByteArray kHead("\x1F\x8B\x08\0\0\0\0\0\0\x13", 10);
  // qCompress() puts a length in front of a zlib stream, which is deflated data between head and checksum.
  constexpr int kLength = 4, kZlibHead = 2, kZlibTail = 4;
  const QByteArray compressed = qCompress(content);
  const QByteArray deflated =
      compressed.mid(kLength + kZlibHead, compressed.size() - kLength - kZlibHead - kZlibTail);
  return kHead + deflated + littleEndian(crc32(content)) + littleEndian(quint32(content.size()));
}

}  // namespace orvandel
