#pragma once
#include <QIODevice>

/// What decoding any one picture of an icon or cursor file takes at most, in pixels of 32 bits. The directory
/// of such a file gives sizes up to 256; a picture itself may have any, which its own header tells.
///
/// @param file open for reading; it is left at its beginning.
/// @return -1 where that can't be told: no icon, one too large to be read, or a picture whose header is
///         damaged. An entry that leads behind the end of the file counts for nothing.
qint64 PixelsOfIcon(QIODevice& file);
