// Films, sounds and unknown content: headers like those of real files, followed by filler.
#include <QtEndian>

#include "sample/pictures.h"
#include "sample/seeded_random.h"

namespace orvandel {

namespace {

template <typename Number>
QByteArray bigEndian(Number value) {
  char bytes[sizeof(Number)];
  qToBigEndian(value, bytes);
  return {bytes, static_cast<int>(sizeof(Number))};
}

template <typename Number>
QByteArray littleEndian(Number value) {
  char bytes[sizeof(Number)];
  qToLittleEndian(value, bytes);
  return {bytes, static_cast<int>(sizeof(Number))};
}

QByteArray filler(int seed, int size) {
  SeededRandom random(static_cast<quint32>(seed));
  QByteArray bytes;
  bytes.reserve(qMax(size, 0));
  for (int i = 0; i < size; ++i) bytes.append(static_cast<char>(random.below(256)));
  return bytes;
}

/// @return head followed by filler, `size` bytes in total; truncated if the head is longer.
QByteArray filled(const QByteArray& head, int seed, int size) {
  return (head + filler(seed, size - head.size())).left(size);
}

/// The boxes of an MPEG-4 film: type with brands, then a data box up to the end.
QByteArray film(const QByteArray& brand, const QByteArray& compatible, int seed, int size) {
  const QByteArray type = bigEndian<quint32>(quint32(16 + compatible.size())) + "ftyp" + brand +
                          bigEndian<quint32>(0) + compatible;
  const QByteArray data = bigEndian<quint32>(quint32(qMax(8, size - type.size()))) + "mdat";
  return filled(type + data, seed, size);
}

QByteArray riffHead(int size) {
  return "RIFF" + littleEndian<quint32>(quint32(qMax(0, size - 8)));
}

}  // namespace

namespace sample_media {

QByteArray mov(int seed, int size) {
  return film("qt  ", "qt  ", seed, size);
}

QByteArray mp4(int seed, int size) {
  return seed % 2 == 0 ? film("mp42", "mp42isom", seed, size) : film("isom", "isommp41", seed, size);
}

QByteArray threeGp(int seed, int size) {
  return film("3gp4", "3gp4isom", seed, size);
}

QByteArray avi(int seed, int size) {
  const QByteArray list = "LIST" + littleEndian<quint32>(quint32(qMax(4, size - 20))) + "hdrl" + "avih" +
                          littleEndian<quint32>(56) +
                          littleEndian<quint32>(40000);  // microseconds per picture
  return filled(riffHead(size) + "AVI " + list, seed, size);
}

QByteArray mp3(int seed, int size) {
  // The length of the tag uses seven bits of each byte.
  constexpr int kTag = 256;
  const QByteArray length = bigEndian<quint32>((kTag >> 7) << 8 | (kTag & 0x7F));
  return filled(QByteArray("ID3\x03\0\0", 6) + length + QByteArray(kTag, '\0') + "\xFF\xFB\x90\x64", seed,
                size);
}

QByteArray wav(int seed, int size) {
  constexpr int kRate = 8000;
  const QByteArray format = "fmt " + littleEndian<quint32>(16) + littleEndian<quint16>(1) +
                            littleEndian<quint16>(1) + littleEndian<quint32>(kRate) +
                            littleEndian<quint32>(kRate) + littleEndian<quint16>(1) +
                            littleEndian<quint16>(8);
  return filled(
      riffHead(size) + "WAVE" + format + "data" + littleEndian<quint32>(quint32(qMax(0, size - 44))), seed,
      size);
}

QByteArray unknown(int seed, int size) {
  QByteArray text;
  for (int line = 1; text.size() < size; ++line) {
    text +=
        "note " + QByteArray::number(seed) + ", line " + QByteArray::number(line) + ": nothing to see here\n";
  }
  return text.left(size);
}

}  // namespace sample_media

}  // namespace orvandel
