#pragma once
#include <iconv.h>

#include <QString>
#include <QStringConverter>
#include <string>

// The two string forms of the system, and every conversion between them.
// A narrow string is text in the locale's encoding. A wide string carries UTF-16.
// A conversion to narrow keeps what the encoding can express and puts its replacement for the rest.

/// The encoding of narrow text. The toolkit runs in a UTF-8 locale alone (it changes any other at its start),
/// so that this is UTF-8 unless a test sets something else. Not thread-safe: set it while no other thread
/// converts.
QStringConverter::Encoding NarrowEncoding();
void SetNarrowEncoding(QStringConverter::Encoding encoding);

/// True when the locale's encoding is UTF-8, so that valid UTF-8 is narrow text as it stands.
bool NarrowIsUtf8();

/// QString to narrow.
std::string ToNarrow(const QString& qstrText);

/// Narrow to QString.
QString FromNarrow(const std::string& strNarrow);
QString FromNarrow(const char* pszNarrow);

/// QString to wide and back. Neither loses anything.
std::u16string ToWide(const QString& qstrText);
QString FromWide(const std::u16string& wstrText);

/// Wide to narrow. Reads up to the terminator; null gives an empty text.
std::string Unicode2Ansi(const char16_t* pWide);

/// Narrow to wide. Reads up to the terminator; null gives an empty text.
std::u16string Ansi2Unicode(const char* pszNarrow);

/// Wide to Latin-1, with a "?" for what Latin-1 lacks.
/// @param strNarrow receives the text. @return its length in bytes.
int inner_uni2str(std::string& strNarrow, const char16_t* pWide);

/// Opens the two handles below for an encoding name such as "UTF-8". Not thread-safe: call it once, at start.
/// @return 0, or -1 when iconv doesn't know the pair; a handle that isn't open holds (iconv_t)-1.
int inner_initUnicodeMap(const char* pszEncoding);

extern std::string g_language;  ///< the name last given to inner_initUnicodeMap
extern iconv_t sz2uni_handle;   ///< that encoding to UTF-16, little-endian
extern iconv_t uni2sz_handle;   ///< and back

/// Lowers the letters A to Z in place and leaves every other byte alone. @return the argument.
char* GetCharLowerA(char* pszText);
