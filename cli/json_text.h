#pragma once
#include <string>

namespace orvandel {

/// Appends a text as a JSON string with quotes, the same bytes as ToJson(FromNarrow(strText)). Fast, since a
/// manifest may have a million names. @param strText narrow.
void AppendJsonText(const std::string& strText, std::string& strOut);

}  // namespace orvandel
