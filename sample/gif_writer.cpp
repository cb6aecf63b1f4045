#include "sample/gif_writer.h"

#include <algorithm>
#include <map>
#include <vector>

namespace orvandel {

namespace {

constexpr int kColors = 256;
constexpr int kPixelBits = 8;
constexpr int kClearCode = 1 << kPixelBits;
constexpr int kEndCode = kClearCode + 1;
constexpr int kMaxCodes = 4096;       // limit of the format: 12 bits
constexpr int kBlockLimit = 255;      // maximum size of a data block
constexpr QRgb kCoarse = 0xfff8f8f8;  // ignores the low three bits of each colour

void appendShort(QByteArray& out, int value) {
  out.append(static_cast<char>(value & 0xff));
  out.append(static_cast<char>(value >> 8));
}

int distance(QRgb a, QRgb b) {
  const int red = qRed(a) - qRed(b), green = qGreen(a) - qGreen(b), blue = qBlue(a) - qBlue(b);
  return 2 * red * red + 4 * green * green + 3 * blue * blue;
}

/// The most frequent colours, at most kColors.
std::vector<QRgb> paletteOf(const QImage& picture) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y) & kCoarse];
  }
  std::vector<std::pair<int, QRgb>> ranked;
  for (const auto& [color, count] : counts) ranked.push_back({-count, color});
  std::sort(ranked.begin(), ranked.end());
  if (ranked.size() > kColors) ranked.resize(kColors);
  std::vector<QRgb> palette;
  for (const auto& [rank, color] : ranked) palette.push_back(color);
  return palette;
}

/// Maps each pixel to the index of the nearest colour.
std::vector<uchar> pixelsOf(const QImage& picture, const std::vector<QRgb>& palette) {
  std::map<QRgb, uchar> nearest;
  std::vector<uchar> pixels;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb color = picture.pixel(x, y) & kCoarse;
      auto found = nearest.find(color);
      if (found == nearest.end()) {
        const auto closer = [color](QRgb a, QRgb b) { return distance(a, color) < distance(b, color); };
        const auto best = std::min_element(palette.begin(), palette.end(), closer);
        found = nearest.emplace(color, static_cast<uchar>(best - palette.begin())).first;
      }
      pixels.push_back(found->second);
    }
  }
  return pixels;
}

/// Packs codes of growing width into bytes, lowest bit first.
class BitPacker {
 public:
  void append(int code, int width) {
    m_bits |= static_cast<quint32>(code) << m_count;
    m_count += width;
    while (m_count >= 8) appendByte();
  }
  QByteArray finish() {
    if (m_count > 0) appendByte();
    return m_bytes;
  }

 private:
  void appendByte() {
    m_bytes.append(static_cast<char>(m_bits & 0xff));
    m_bits >>= 8;
    m_count -= 8;
  }

  QByteArray m_bytes;
  quint32 m_bits = 0;
  int m_count = 0;
};

/// LZW as used by GIF: codes grow from 9 to 12 bits, then the table is cleared.
QByteArray compress(const std::vector<uchar>& pixels) {
  BitPacker out;
  std::map<int, int> codes;  // prefix * kColors + pixel
  int width = kPixelBits + 1;
  int next = kEndCode + 1;
  out.append(kClearCode, width);
  int prefix = pixels.front();
  for (size_t i = 1; i < pixels.size(); ++i) {
    const int key = prefix * kColors + pixels[i];
    const auto found = codes.find(key);
    if (found != codes.end()) {
      prefix = found->second;
      continue;
    }
    out.append(prefix, width);
    prefix = pixels[i];
    if (next < kMaxCodes) {
      if (next == 1 << width) ++width;
      codes[key] = next++;
    } else {
      out.append(kClearCode, width);
      codes.clear();
      width = kPixelBits + 1;
      next = kEndCode + 1;
    }
  }
  out.append(prefix, width);
  if (next == 1 << width && width < 12) ++width;  // the decoder is one code ahead
  out.append(kEndCode, width);
  return out.finish();
}

}  // namespace

QByteArray writeGif(const QImage& picture) {
  const std::vector<QRgb> palette = paletteOf(picture);
  QByteArray out("GIF89a");
  appendShort(out, picture.width());
  appendShort(out, picture.height());
  out.append(static_cast<char>(0xF7));  // a palette of 256 colours, 8 bits each
  out.append(2, '\0');                  // background is colour 0; pixels are square
  for (int i = 0; i < kColors; ++i) {
    const QRgb color = i < static_cast<int>(palette.size()) ? palette[i] : 0;
    for (const int part : {qRed(color), qGreen(color), qBlue(color)}) out.append(static_cast<char>(part));
  }
  out.append(',');
  appendShort(out, 0);
  appendShort(out, 0);
  appendShort(out, picture.width());
  appendShort(out, picture.height());
  out.append('\0');  // not interlaced, no local palette
  out.append(static_cast<char>(kPixelBits));
  const QByteArray data = compress(pixelsOf(picture, palette));
  for (int i = 0; i < data.size(); i += kBlockLimit) {
    const QByteArray block = data.mid(i, kBlockLimit);
    out.append(static_cast<char>(block.size()));
    out.append(block);
  }
  out.append('\0');
  out.append(';');
  return out;
}

}  // namespace orvandel
