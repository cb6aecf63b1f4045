#pragma once
#include <QIODevice>

namespace orvandel {

/// Returns the upper bound for decoding any single picture of an icon or cursor file, in 32-bit pixels. Sizes
/// in the file's directory are at most 256; a picture's own header may declare any.
///
/// @param file open for reading; its position is reset to the beginning.
/// @return -1 if unknown: not an icon, too large to read, or a damaged picture header. Entries that point
///         beyond the end of the file are ignored.
qint64 PixelsOfIcon(QIODevice& file);

}  // namespace orvandel
