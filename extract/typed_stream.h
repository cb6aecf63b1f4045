#pragma once
#include <string_view>

namespace orvandel {

/// Returns the text of an archived attributed string, as in `message.attributedBody`.
///
/// The archive is a typed stream ("streamtyped", version 1000), documented in docs/stores.md. It is read up
/// to the end of the text; the attributes behind it aren't needed.
/// @param stream the bytes of the archive.
/// @return the text as stored, in UTF-8 but unchecked; it refers to the bytes of the stream. Empty for an
/// empty text, and for a stream that is damaged or holds anything else.
std::string_view AttributedText(std::string_view stream);

}  // namespace orvandel
