#pragma once
#include <iconv.h>

#include <QString>
#include <QStringConverter>
#include <string>
#include <string_view>

// The two string types of the program and all conversions between them. A narrow string is in the locale's
// encoding. A wide string is in UTF-16. Conversion to narrow replaces characters that the encoding can't
// represent.

namespace orvandel {

/// The encoding of narrow text. Always UTF-8, since Qt switches to a UTF-8 locale at start, unless a test
/// sets another. Not thread-safe: set it only while no other thread converts.
QStringConverter::Encoding NarrowEncoding();
void SetNarrowEncoding(QStringConverter::Encoding encoding);

/// True when the locale's encoding is UTF-8, so valid UTF-8 is narrow text without conversion.
bool NarrowIsUtf8();

/// QString to narrow.
std::string ToNarrow(const QString& qstrText);

/// True for strict UTF-8: no overlong forms, no surrogates, and neither U+FFFE nor U+FFFF, which SQLite
/// replaces.
bool IsValidUtf8(std::string_view bytes);

/// UTF-8 to narrow. Bytes that aren't valid UTF-8 become U+FFFD.
std::string Utf8ToNarrow(std::string_view utf8);

/// Narrow to QString.
QString FromNarrow(const std::string& strNarrow);
QString FromNarrow(const char* pszNarrow);

/// QString to wide and back, both lossless.
std::u16string ToWide(const QString& qstrText);
QString FromWide(const std::u16string& wstrText);

}  // namespace orvandel

/// Wide to narrow. Reads up to the terminator; null gives an empty string.
std::string Unicode2Ansi(const char16_t* pWide);

/// Narrow to wide. Reads up to the terminator; null gives an empty string.
std::u16string Ansi2Unicode(const char* pszNarrow);

/// Wide to Latin-1, with "?" for characters that Latin-1 lacks.
/// @param strNarrow receives the result. @return its length in bytes.
int inner_uni2str(std::string& strNarrow, const char16_t* pWide);

/// Opens the two iconv handles below for an encoding such as "UTF-8". Not thread-safe: call once at start.
/// @return 0, or -1 when iconv doesn't support the pair; a handle that isn't open is (iconv_t)-1.
int inner_initUnicodeMap(const char* pszEncoding);

extern std::string g_language;  ///< last argument of inner_initUnicodeMap
extern iconv_t sz2uni_handle;   ///< that encoding to UTF-16, little-endian
extern iconv_t uni2sz_handle;   ///< UTF-16 to that encoding

/// Converts A to Z to lower case, in place; other bytes are unchanged. @return the argument.
char* GetCharLowerA(char* pszText);
