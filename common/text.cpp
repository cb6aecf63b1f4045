#include "common/text.h"

#include <cstdint>
#include <cstring>

#include "common/utf8.h"

using namespace orvandel;

namespace {
const iconv_t kNoHandle = reinterpret_cast<iconv_t>(-1);
QStringConverter::Encoding g_narrowEncoding = QStringConverter::Utf8;
}  // namespace

std::string g_language;
iconv_t sz2uni_handle = kNoHandle;
iconv_t uni2sz_handle = kNoHandle;

namespace orvandel {

QStringConverter::Encoding NarrowEncoding() {
  return g_narrowEncoding;
}

void SetNarrowEncoding(QStringConverter::Encoding encoding) {
  g_narrowEncoding = encoding;
}

bool NarrowIsUtf8() {
  return g_narrowEncoding == QStringConverter::Utf8;
}

std::string ToNarrow(const QString& qstrText) {
  if (NarrowIsUtf8()) return qstrText.toStdString();
  const QByteArray bytes = QStringEncoder(g_narrowEncoding)(qstrText);
  return bytes.toStdString();
}

bool IsValidUtf8(std::string_view bytes) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const size_t nSize = bytes.size();
  for (size_t i = 0; i < nSize;) {
    const unsigned char n = p[i];
    if (n < 0x80) {
      uint64_t nEight = 0;
      for (++i; i + sizeof nEight <= nSize; i += sizeof nEight) {
        memcpy(&nEight, p + i, sizeof nEight);
        if (nEight & 0x8080808080808080) break;
      }
      continue;
    }
    const size_t nLength = Utf8Length(p + i, nSize - i);
    if (nLength == 0 || (n == 0xEF && p[i + 1] == 0xBF && p[i + 2] >= 0xBE)) return false;
    i += nLength;
  }
  return true;
}

std::string Utf8ToNarrow(std::string_view utf8) {
  if (NarrowIsUtf8() && IsValidUtf8(utf8)) return std::string(utf8);
  return ToNarrow(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

QString FromNarrow(const std::string& strNarrow) {
  if (NarrowIsUtf8()) return QString::fromStdString(strNarrow);
  return QStringDecoder(g_narrowEncoding)(QByteArrayView(strNarrow));
}

QString FromNarrow(const char* pszNarrow) {
  return pszNarrow ? FromNarrow(std::string(pszNarrow)) : QString();
}

std::u16string ToWide(const QString& qstrText) {
  return qstrText.toStdU16String();
}

QString FromWide(const std::u16string& wstrText) {
  return QString::fromStdU16String(wstrText);
}

}  // namespace orvandel

std::string Unicode2Ansi(const char16_t* pWide) {
  return pWide ? ToNarrow(QString::fromUtf16(pWide)) : std::string();
}

std::u16string Ansi2Unicode(const char* pszNarrow) {
  return ToWide(FromNarrow(pszNarrow));
}

int inner_uni2str(std::string& strNarrow, const char16_t* pWide) {
  // Same result as QString::toLatin1 without its two copies; called for each file of a walk.
  strNarrow.clear();
  if (!pWide) return 0;
  strNarrow.resize(std::char_traits<char16_t>::length(pWide));
  for (char& nByte : strNarrow) {
    nByte = *pWide < 0x100 ? static_cast<char>(*pWide) : '?';
    ++pWide;
  }
  return static_cast<int>(strNarrow.size());
}

int inner_initUnicodeMap(const char* pszEncoding) {
  // UTF-16 in the byte order of all supported platforms.
  static constexpr char kWideEncoding[] = "UNICODELITTLE";
  if (!pszEncoding) return -1;
  g_language = pszEncoding;
  sz2uni_handle = iconv_open(kWideEncoding, pszEncoding);
  if (sz2uni_handle == kNoHandle) return -1;
  uni2sz_handle = iconv_open(pszEncoding, kWideEncoding);
  if (uni2sz_handle == kNoHandle) {
    iconv_close(sz2uni_handle);
    sz2uni_handle = kNoHandle;
    return -1;
  }
  return 0;
}

char* GetCharLowerA(char* pszText) {
  for (char* p = pszText; p && *p; ++p) {
    if (*p >= 'A' && *p <= 'Z') *p = static_cast<char>(*p - 'A' + 'a');
  }
  return pszText;
}
