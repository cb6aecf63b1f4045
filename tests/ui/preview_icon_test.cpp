// Icons: sizes in their directory are at most 256, the pictures themselves may have any.
#include <QBuffer>
#include <QElapsedTimer>
#include <QImageWriter>
#include <QtEndian>

#include "tests/ui/preview_fixture.h"
#include "ui/icon_file.h"

using namespace orvandel;

namespace {

const PictureCategory& Camera() {
  return kPictureCategories[0];
}

template <typename Number>
std::string LittleEndian(Number nValue) {
  const Number nLittle = qToLittleEndian(nValue);
  return std::string(reinterpret_cast<const char*>(&nLittle), sizeof nLittle);
}

std::string BigEndian(quint32 nValue) {
  const quint32 nBig = qToBigEndian(nValue);
  return std::string(reinterpret_cast<const char*>(&nBig), sizeof nBig);
}

QImage Colourful(const QSize& size, QImage::Format nFormat = QImage::Format_ARGB32) {
  QImage image(size, QImage::Format_ARGB32);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) image.setPixel(x, y, qRgb(x % 256, y % 256, (x + y) % 256));
  }
  return image.convertToFormat(nFormat);
}

std::string Encoded(const QImage& image, const char* pszFormat) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  EXPECT_TRUE(QImageWriter(&buffer, pszFormat).write(image)) << pszFormat;
  return bytes.toStdString();
}

/// A PNG whose header claims another size. Only the header is valid.
std::string PngHead(quint32 nWidth, quint32 nHeight, char nDepth = 8) {
  std::string strBytes = Encoded(Colourful({8, 8}), "png");
  return strBytes.replace(16, 9, BigEndian(nWidth) + BigEndian(nHeight) + nDepth);
}

/// A valid PNG of a few bytes with more pixels than are decoded.
std::string GreatPng() {
  QImage image(8000, 8000, QImage::Format_Mono);
  image.fill(0);
  return Encoded(image, "png");
}

/// A 32-bit icon bitmap with any size in its header and a few pixels.
std::string Bitmap(qint32 nWidth, qint32 nHeight) {
  return LittleEndian(quint32(40)) + LittleEndian(nWidth) + LittleEndian(nHeight) + LittleEndian(quint16(1)) +
         LittleEndian(quint16(32)) + std::string(24, '\0') + std::string(16 * 16 * 4 + 16 * 4, '\x7f');
}

struct Entry {
  uchar nSize;  ///< 0 for 256
  quint32 nOffset;
  quint32 nBytes;
};

std::string Directory(const std::vector<Entry>& entries, quint16 nCount) {
  std::string strBytes = std::string("\0\0\1\0", 4) + LittleEndian(nCount);
  for (const Entry& entry : entries)
    strBytes += std::string(2, static_cast<char>(entry.nSize)) + std::string("\0\0\1\0\x20\0", 6) +
                LittleEndian(entry.nBytes) + LittleEndian(entry.nOffset);
  return strBytes;
}

/// An icon file with consecutive pictures.
std::string Icon(const std::vector<std::string>& pictures, uchar nSize = 0) {
  std::vector<Entry> entries;
  std::string strPictures;
  for (const std::string& strPicture : pictures) {
    const size_t nOffset = 6 + 16 * pictures.size() + strPictures.size();
    entries.push_back({nSize, static_cast<quint32>(nOffset), static_cast<quint32>(strPicture.size())});
    strPictures += strPicture;
  }
  return Directory(entries, static_cast<quint16>(entries.size())) + strPictures;
}

class PreviewIcon : public PreviewTest {};

TEST_F(PreviewIcon, ShowsThePngInside) {
  struct Case {
    QSize size;
    QImage::Format nFormat;
    QSize shown;
  };
  const Case cases[] = {
      {{16, 16}, QImage::Format_ARGB32, {16, 16}},     {{256, 256}, QImage::Format_ARGB32, {256, 256}},
      {{512, 512}, QImage::Format_RGB32, {512, 512}},  {{64, 64}, QImage::Format_RGBA64, {64, 64}},
      {{1000, 500}, QImage::Format_RGB32, {600, 300}},
  };
  for (const Case& one : cases) {
    const QImage image = Colourful(one.size, one.nFormat);

    const QSize shown = ShowFile(Camera(), m_folder.Write("icon.ico", Icon({Encoded(image, "png")})));

    EXPECT_EQ(one.shown, shown) << one.size.width();
    if (one.size == one.shown) {
      EXPECT_EQ(image.convertToFormat(Picture(Camera()).format()), Picture(Camera())) << one.size.width();
    }
  }
}

TEST_F(PreviewIcon, ShowsABitmapInside) {
  const QImage image = Colourful({32, 32});

  const QSize shown = ShowFile(Camera(), m_folder.Write("icon.ico", Encoded(image, "ico")));
  const QSize ofManyShown =
      ShowFile(Camera(), m_folder.Write("many.ico", Icon({Encoded(image, "png"), Bitmap(16, 32)}, 16)));

  EXPECT_EQ(image.size(), shown);
  EXPECT_EQ(image.size(), ofManyShown) << "the first of several";
}

namespace {

qint64 PixelsOf(const std::string& strBytes) {
  QBuffer file;
  file.setData(QByteArray::fromStdString(strBytes));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return PixelsOfIcon(file);
}

}  // namespace

TEST(IconFile, ReturnsTheMostPixelsOfAnyPicture) {
  EXPECT_EQ(300 * 200, PixelsOf(Icon({PngHead(300, 200)})));
  EXPECT_EQ(2 * 300 * 200, PixelsOf(Icon({PngHead(300, 200, 16)})));
  EXPECT_EQ(300 * 200, PixelsOf(Icon({PngHead(30, 20), Bitmap(16, 32), PngHead(300, 200)})));
  EXPECT_EQ(16 * 16, PixelsOf(Icon({Bitmap(5000, 5000)}, 16))) << "the directory's size counts";
  EXPECT_EQ(5000 * 2500, PixelsOf(Icon({Bitmap(5000, 5000)}, 0))) << "unless it is 0";
  EXPECT_EQ(5000 * 2500, PixelsOf(Icon({Bitmap(-5000, -5000)}, 0)));
  EXPECT_EQ(qint64{0x7fffffff} * 0x7fffffff * 2, PixelsOf(Icon({PngHead(0x7fffffff, 0x7fffffff, 16)})));
}

TEST(IconFile, DamagedFileHasNoPixelCount) {
  std::string strOtherChunk = PngHead(30, 20);
  strOtherChunk.replace(12, 4, "gAMA");

  EXPECT_EQ(-1, PixelsOf(""));
  EXPECT_EQ(-1, PixelsOf("\0\0\1"));
  EXPECT_EQ(-1, PixelsOf(Icon({strOtherChunk})));
  EXPECT_EQ(-1, PixelsOf(Icon({PngHead(30, 20).substr(0, 20)})));
  EXPECT_EQ(-1, PixelsOf(Icon({PngHead(0xffffffff, 20)})));
  EXPECT_EQ(-1, PixelsOf(Icon({PngHead(30, 20)}) + std::string(16 << 20, '\0'))) << "too large a file";
}

TEST(IconFile, IgnoresEntriesBeyondTheEndOfTheFile) {
  const Entry beyond[] = {{16, 22, 0}, {16, 1 << 20, 100}, {16, 0xffffffff, 0xffffffff}, {0, 0x80000000, 1}};

  for (const Entry& entry : beyond) EXPECT_EQ(0, PixelsOf(Directory({entry}, 1))) << entry.nOffset;
  EXPECT_EQ(0, PixelsOf(Directory({}, 65535)));
  EXPECT_EQ(40 * 30, PixelsOf(Directory({{0, 22, 33}}, 65535) + PngHead(40, 30)))
      << "a directory that is cut short";
}

struct Hostile {
  const char* pszName;
  std::string (*pfnBytes)();
};

class PreviewHostileIcon : public PreviewTest, public testing::WithParamInterface<Hostile> {};

TEST_P(PreviewHostileIcon, IsBlankAtOnce) {
  QElapsedTimer timer;
  timer.start();

  const QSize shown = ShowFile(Camera(), m_folder.Write("icon.ico", GetParam().pfnBytes()));

  EXPECT_EQ(QSize(0, 0), shown);
  EXPECT_LT(timer.elapsed(), 10000);
}

INSTANTIATE_TEST_SUITE_P(
    Of, PreviewHostileIcon,
    testing::Values(Hostile{"PngOfGreatSize", [] { return Icon({GreatPng()}); }},
                    Hostile{"PngOfGreatestSize", [] { return Icon({PngHead(0x7fffffff, 0x7fffffff)}); }},
                    Hostile{"GreatPngBehindASmallOne",
                            [] {
                              return Icon({Encoded(Colourful({16, 16}), "png"), GreatPng()});
                            }},
                    Hostile{"BitmapOfGreatSize", [] { return Icon({Bitmap(20000, 40000)}); }},
                    Hostile{"OffsetBehindTheEnd",
                            [] {
                              return Directory({{16, 0x7fffffff, 0xffffffff}}, 1);
                            }},
                    Hostile{"OffsetIntoTheDirectory",
                            [] {
                              return Directory({{16, 6, 16}}, 1);
                            }},
                    Hostile{"EntriesThatOverlap",
                            [] {
                              return Directory(std::vector<Entry>(65535, {0, 6 + 16 * 65535, 0xffffffff}),
                                               65535) +
                                     GreatPng();
                            }}),
    [](const auto& info) { return std::string(info.param.pszName); });

}  // namespace
