#include "sample/pictures.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>
#include <stdexcept>

#include "sample/gif_writer.h"
#include "sample/landscape.h"

namespace orvandel {

namespace {

constexpr int kJpegQuality = 82;
constexpr int kMinimumSize = 512;  // shorter files aren't recognised as media
constexpr int kStartOfImage = 2;   // length of the marker that begins a JPEG

QByteArray encode(const QImage& image, const char* format, int quality = -1) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  writer.setQuality(quality);
  if (!writer.write(image)) {
    throw std::runtime_error(("picture as " + QString(format) + ": " + writer.errorString()).toStdString());
  }
  return buffer.data();
}

/// Builds the TIFF block of an Exif segment: little-endian, one directory for the camera, one for the shot.
class ExifBlock {
 public:
  QByteArray build(int seed) {
    const QByteArray taken = QString("20%1:%2:%3 14:%4:00")
                                 .arg(14 + seed % 3)
                                 .arg(1 + seed % 12, 2, 10, QChar('0'))
                                 .arg(1 + seed % 28, 2, 10, QChar('0'))
                                 .arg(seed % 60, 2, 10, QChar('0'))
                                 .toLatin1();
    m_bytes = QByteArray("II*\0\x08\0\0\0", 8);
    // A directory: count, 12 bytes per field, offset of the next directory. Texts follow the second one.
    constexpr int kShotAt = 8 + 2 + 5 * 12 + 4;
    m_texts = kShotAt + 2 + 1 * 12 + 4;
    number<quint16>(5);
    text(0x010F, "Apple");
    text(0x0110, "iPhone 6");
    field(0x0112, 3, 1, 1);  // orientation: upright
    text(0x0132, taken);
    field(0x8769, 4, 1, kShotAt);
    number<quint32>(0);
    number<quint16>(1);
    text(0x9003, taken);
    number<quint32>(0);
    return m_bytes + m_tail;
  }

 private:
  template <typename Number>
  void number(Number value) {
    char bytes[sizeof(Number)];
    qToLittleEndian(value, bytes);
    m_bytes.append(bytes, sizeof(Number));
  }

  void field(quint16 tag, quint16 type, quint32 count, quint32 value) {
    number(tag);
    number(type);
    number(count);
    number(value);
  }

  void text(quint16 tag, const QByteArray& value) {
    const int length = value.size() + 1;  // with the NUL
    field(tag, 2, quint32(length), quint32(m_texts + m_tail.size()));
    m_tail += value;
    m_tail += QByteArray(1 + length % 2, '\0');  // at even positions
  }

  QByteArray m_bytes, m_tail;
  int m_texts = 0;
};

int segmentLength(const QByteArray& jpeg, int at) {
  return qFromBigEndian<quint16>(jpeg.constData() + at + 2) + 2;  // including the marker
}

}  // namespace

namespace sample_media {

QByteArray jpeg(int seed, int width, int height) {
  return encode(paintLandscape(seed, width, height), "jpg", kJpegQuality);
}

QByteArray exifJpeg(int seed) {
  const QByteArray plain = jpeg(seed);
  const int rest = kStartOfImage + segmentLength(plain, kStartOfImage);  // after the JFIF segment
  const QByteArray block = QByteArray("Exif\0\0", 6) + ExifBlock().build(seed);
  char length[2];
  qToBigEndian<quint16>(quint16(block.size() + 2), length);
  return plain.left(kStartOfImage) + "\xFF\xE1" + QByteArray(length, 2) + block + plain.mid(rest);
}

QByteArray png(int seed, int width, int height) {
  QImage image = paintLandscape(seed, width, height);
  QByteArray bytes = encode(image, "png");
  // Tiny pictures are padded with texts; Qt stores up to 40 characters uncompressed.
  for (int i = 0; bytes.size() < kMinimumSize; ++i) {
    image.setText(QString("Comment%1").arg(i), QString(40, QChar('.')));
    bytes = encode(image, "png");
  }
  return bytes;
}

QByteArray gif(int seed) {
  return writeGif(paintLandscape(seed, 160, 120));
}

QByteArray bmp(int seed) {
  return encode(paintLandscape(seed, 128, 96), "bmp");
}

}  // namespace sample_media

}  // namespace orvandel
