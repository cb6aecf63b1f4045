#pragma once
#include <QString>
#include <string>

// Texts of a backup, made safe for the front page. All results are UTF-8.

namespace orvandel {

/// Text as HTML, for content and for attributes in double quotes.
std::string Html(const QString& qstrText);
/// A relative link: "./" and the percent-encoded segments. @param qstrPath relative, with "/" as separator.
std::string RelativeLink(const QString& qstrPath);
/// A string as JSON without "<", ">", "&", U+2028 and U+2029, so it can't end a script element.
std::string ScriptString(const QString& qstrText);

}  // namespace orvandel
