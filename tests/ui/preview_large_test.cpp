// Pictures that are large or claim to be: neither memory nor time may depend on the claimed size.

#include <QBuffer>
#include <QElapsedTimer>
#include <QImageWriter>
#include <QtEndian>
#include <fstream>

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

const PictureCategory& Camera() {
  return kPictureCategories[0];
}

constexpr qint64 kMostGrowth = 600LL * 1024;  // peak memory increase for one picture, in KB
constexpr double kMostSeconds = 10;

/// A value of /proc/self/status, in KB; -1 if not available.
qint64 StatusOf(const std::string& strKey) {
  std::ifstream status("/proc/self/status");
  for (std::string strLine; std::getline(status, strLine);)
    if (strLine.rfind(strKey + ":", 0) == 0) return std::stoll(strLine.substr(strKey.size() + 1));
  return -1;
}

/// Measures the peak memory increase of the process during the object's lifetime.
class PeakWatch {
 public:
  PeakWatch() {
    std::ofstream("/proc/self/clear_refs") << 5 << std::flush;  // resets the peak
    m_nBegin = StatusOf("VmRSS");
  }
  qint64 Growth() const { return StatusOf("VmHWM") - m_nBegin; }
  static bool Works() { return std::ofstream("/proc/self/clear_refs").is_open() && StatusOf("VmHWM") > 0; }

 private:
  qint64 m_nBegin;
};

template <typename Number>
std::string BigEndian(Number nValue) {
  const Number nBig = qToBigEndian(nValue);
  return std::string(reinterpret_cast<const char*>(&nBig), sizeof nBig);
}

template <typename Number>
std::string LittleEndian(Number nValue) {
  const Number nLittle = qToLittleEndian(nValue);
  return std::string(reinterpret_cast<const char*>(&nLittle), sizeof nLittle);
}

std::string PngChunk(const std::string& strType, const std::string& strData) {
  quint32 nCrc = 0xffffffff;
  for (const char c : strType + strData) {
    nCrc ^= static_cast<uchar>(c);
    for (int i = 0; i < 8; ++i) nCrc = nCrc & 1 ? nCrc >> 1 ^ 0xedb88320 : nCrc >> 1;
  }
  return BigEndian(static_cast<quint32>(strData.size())) + strType + strData + BigEndian(~nCrc);
}

/// A PNG of zeros, whole or without its data.
std::string Png(int nWidth, int nHeight, int nDepth, int nColourType, bool bInterlaced, bool bWhole = true) {
  const int nBits = nDepth * (nColourType == 6 ? 4 : nColourType == 2 ? 3 : 1);
  const auto bytesOf = [nBits](qint64 nAcross, qint64 nDown) {
    return nAcross == 0 ? 0 : (1 + (nAcross * nBits + 7) / 8) * nDown;
  };
  const qint64 w = bWhole ? nWidth : 0, h = bWhole ? nHeight : 0;
  const qint64 nBytes =
      !bInterlaced ? bytesOf(w, h)
                   : bytesOf((w + 7) / 8, (h + 7) / 8) + bytesOf((w + 3) / 8, (h + 7) / 8) +
                         bytesOf((w + 3) / 4, (h + 3) / 8) + bytesOf((w + 1) / 4, (h + 3) / 4) +
                         bytesOf((w + 1) / 2, (h + 1) / 4) + bytesOf(w / 2, (h + 1) / 2) + bytesOf(w, h / 2);
  std::string strData;
  if (bWhole) {
    const QByteArray packed = qCompress(QByteArray(static_cast<int>(nBytes), '\0'), 1);
    strData.assign(packed.constData() + 4,
                   static_cast<size_t>(packed.size() - 4));  // without Qt's length prefix
  }
  const std::string strHead = BigEndian(static_cast<quint32>(nWidth)) +
                              BigEndian(static_cast<quint32>(nHeight)) + static_cast<char>(nDepth) +
                              static_cast<char>(nColourType) + '\0' + '\0' + static_cast<char>(bInterlaced);
  return std::string("\x89PNG\r\n\x1a\n", 8) + PngChunk("IHDR", strHead) + PngChunk("IDAT", strData) +
         PngChunk("IEND", "");
}

std::string Encoded(const char* pszFormat, const QSize& size, bool bProgressive = false) {
  QImage image(size, QImage::Format_Grayscale8);
  image.fill(Qt::gray);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, pszFormat);
  writer.setProgressiveScanWrite(bProgressive);
  EXPECT_TRUE(writer.write(image)) << pszFormat;
  return bytes.toStdString();
}

/// A small JPEG whose header claims another size.
std::string JpegHead(quint16 nWidth, quint16 nHeight, bool bProgressive) {
  std::string strBytes = Encoded("jpg", {64, 64}, bProgressive);
  const size_t nFrame = strBytes.find(bProgressive ? "\xff\xc2" : "\xff\xc0");
  EXPECT_NE(std::string::npos, nFrame);
  return strBytes.replace(nFrame + 5, 4, BigEndian(nHeight) + BigEndian(nWidth));
}

/// A small BMP whose header claims another size.
std::string BmpHead(qint32 nWidth, qint32 nHeight) {
  return Encoded("bmp", {64, 64}).replace(18, 8, LittleEndian(nWidth) + LittleEndian(nHeight));
}

std::string GifHead(quint16 nScreen, quint16 nPicture) {
  return "GIF89a" + LittleEndian(nScreen) + LittleEndian(nScreen) +
         std::string("\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0", 14) + LittleEndian(nPicture) +
         LittleEndian(nPicture) + std::string("\0\2\2\x4c\1\0;", 7);
}

/// An icon that claims to be small, containing another picture.
std::string Icon(uchar nSize, const std::string& strPicture) {
  return std::string("\0\0\1\0\1\0", 6) + static_cast<char>(nSize) + static_cast<char>(nSize) +
         std::string("\0\0\1\0\x20\0", 6) + LittleEndian(static_cast<quint32>(strPicture.size())) +
         LittleEndian(quint32(22)) + strPicture;
}

struct LargePicture {
  const char* pszName;
  std::string (*pfnBytes)();
  bool bBlank;  ///< whether the preview must be blank; otherwise the picture is scaled
  bool bWarns;  ///< whether the reader warns about missing data
};

void PrintTo(const LargePicture& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class PreviewLarge : public PreviewTest, public testing::WithParamInterface<LargePicture> {};

TEST_P(PreviewLarge, IsBlankOrScaledWithinBounds) {
  if (!PeakWatch::Works()) GTEST_SKIP() << "the system doesn't tell the peak";
  if (GetParam().bWarns) ExpectQtWarning(".");
  const std::string strPath = m_folder.Write("large", GetParam().pfnBytes());
  OpenDataScreen();
  PutFiles(Camera(), {strPath, WritePicture("good.png", {20, 30})});
  QElapsedTimer timer;
  timer.start();
  const PeakWatch peak;

  SelectNode(0);

  EXPECT_LT(peak.Growth(), kMostGrowth) << "KB";
  EXPECT_LT(static_cast<double>(timer.elapsed()) / 1000, kMostSeconds);
  const QSize shown = Shown(Camera());
  EXPECT_LE(shown.width(), 750);
  if (GetParam().bBlank)
    EXPECT_EQ(QSize(0, 0), shown);
  else
    EXPECT_TRUE(shown.width() == 750 || shown.height() == 300) << shown.width() << " by " << shown.height();
  Table("m_pCameraTable")->selectRow(1);
  EXPECT_EQ(QSize(20, 30), Shown(Camera()));
}

const std::vector<LargePicture> kLargePictures = {
    {"JpegHead", [] { return JpegHead(20000, 20000, false); }, true, false},
    {"JpegHeadProgressive", [] { return JpegHead(20000, 20000, true); }, true, false},
    {"JpegHeadLargest", [] { return JpegHead(65500, 65500, false); }, true, false},
    {"PngHead", [] { return Png(20000, 20000, 8, 6, false, false); }, true, false},
    {"PngHeadLargest", [] { return Png(2147483647, 2147483647, 16, 6, false, false); }, true, false},
    {"GifHead", [] { return GifHead(20000, 20000); }, true, false},
    {"GifHeadOfThePictureAlone", [] { return GifHead(0, 20000); }, true, false},
    {"BmpHead", [] { return BmpHead(20000, 20000); }, true, false},
    {"BmpHeadUpsideDown", [] { return BmpHead(20000, -20000); }, true, false},
    {"PpmHead", [] { return std::string("P6 20000 20000 255\nxxxx"); }, true, false},
    {"IconAroundAPng", [] { return Icon(16, Png(20000, 20000, 1, 0, false)); }, true, false},
    {"IconAroundABitmap",
     [] {
       return Icon(0, LittleEndian(quint32(40)) + LittleEndian(qint32(20000)) + LittleEndian(qint32(40000)) +
                          std::string("\1\0\x20\0", 4) + std::string(1000, '\0'));
     },
     true, false},
    {"Jpeg",
     [] {
       return Encoded("jpg", {9000, 9000});
     },
     false, false},
    {"JpegProgressive",
     [] {
       return Encoded("jpg", {9400, 9400}, true);
     },
     false, false},
    {"JpegWide",
     [] {
       return Encoded("jpg", {60000, 1000});
     },
     false, false},
    {"JpegTall",
     [] {
       return Encoded("jpg", {1000, 60000});
     },
     false, false},
    {"Png", [] { return Png(7000, 7000, 8, 6, false); }, false, false},
    {"BmpOfTwoColours",
     [] {
       return Encoded("bmp", {6900, 6900});
     },
     false, false},
};
INSTANTIATE_TEST_SUITE_P(Of, PreviewLarge, testing::ValuesIn(kLargePictures), NameOf<LargePicture>);

// Formats whose reader decodes at full size before scaling, or needs two copies. Memory is bounded in any
// case.
class PreviewLargeDecoded : public PreviewTest, public testing::WithParamInterface<LargePicture> {};

TEST_P(PreviewLargeDecoded, StaysWithinBounds) {
  if (!PeakWatch::Works()) GTEST_SKIP() << "the system doesn't tell the peak";
  const std::string strPath = m_folder.Write("large", GetParam().pfnBytes());
  OpenDataScreen();
  PutFiles(Camera(), {strPath});
  QElapsedTimer timer;
  timer.start();
  const PeakWatch peak;

  SelectNode(0);

  EXPECT_LT(peak.Growth(), kMostGrowth) << "KB";
  EXPECT_LT(static_cast<double>(timer.elapsed()) / 1000, kMostSeconds);
}

const std::vector<LargePicture> kDecodedPictures = {
    {"Png100Million", [] { return Png(10000, 10000, 8, 6, false); }, false, false},
    {"PngOf16Bits", [] { return Png(10000, 10000, 16, 6, false); }, false, false},
    {"PngInterlaced", [] { return Png(10000, 10000, 8, 6, true); }, false, false},
    {"PngInterlacedOf16Bits", [] { return Png(10000, 10000, 16, 6, true); }, false, false},
    {"PngNarrow", [] { return Png(700, 140000, 8, 6, false); }, false, false},
    {"PngNarrowOf16Bits", [] { return Png(700, 140000, 16, 6, false); }, false, false},
    {"PngOfOneBit", [] { return Png(10000, 10000, 1, 0, false); }, false, false},
};
INSTANTIATE_TEST_SUITE_P(Of, PreviewLargeDecoded, testing::ValuesIn(kDecodedPictures), NameOf<LargePicture>);

}  // namespace
