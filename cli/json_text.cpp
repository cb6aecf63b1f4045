#include "cli/json_text.h"

#include "cli/json_stream.h"
#include "common/text.h"
#include "common/utf8.h"

namespace orvandel {

namespace {

/// True for ASCII that stands for itself in a JSON string.
bool IsPlain(unsigned char nByte) {
  return nByte >= ' ' && nByte < 0x80 && nByte != '"' && nByte != '\\';
}

/// Appends an ASCII character that isn't plain.
void AppendEscape(unsigned char nByte, std::string& strOut) {
  static constexpr char kHex[] = "0123456789abcdef";
  static constexpr struct {
    unsigned char nByte;
    char nLetter;
  } kLetters[] = {{'"', '"'}, {'\\', '\\'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}};
  strOut += '\\';
  for (const auto& letter : kLetters) {
    if (letter.nByte != nByte) continue;
    strOut += letter.nLetter;
    return;
  }
  strOut.append("u00").append(1, kHex[nByte >> 4]).append(1, kHex[nByte & 0xF]);
}

/// Appends a text that is valid UTF-8. @return false for any other, of which a part may be appended.
bool AppendUtf8(const std::string& strText, std::string& strOut) {
  const auto* pText = reinterpret_cast<const unsigned char*>(strText.data());
  const size_t nSize = strText.size();
  size_t nStart = 0;  // of what is to be appended as it is
  for (size_t i = 0; i < nSize;) {
    if (IsPlain(pText[i])) {
      ++i;
    } else if (pText[i] < 0x80) {
      strOut.append(strText, nStart, i - nStart);
      AppendEscape(pText[i], strOut);
      nStart = ++i;
    } else if (const size_t nLength = NarrowIsUtf8() ? Utf8Length(pText + i, nSize - i) : 0) {
      i += nLength;
    } else {
      return false;
    }
  }
  strOut.append(strText, nStart, nSize - nStart);
  return true;
}

/// A byte order mark at the beginning isn't part of the text.
bool HasByteOrderMark(const std::string& strText) {
  return strText.compare(0, 3, "\xEF\xBB\xBF") == 0;
}

}  // namespace

void AppendJsonText(const std::string& strText, std::string& strOut) {
  const size_t nBefore = strOut.size();
  strOut += '"';
  if (!HasByteOrderMark(strText) && AppendUtf8(strText, strOut)) {
    strOut += '"';
    return;
  }
  strOut.resize(nBefore);
  strOut += ToJson(FromNarrow(strText)).toStdString();
}

}  // namespace orvandel
