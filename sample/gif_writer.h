#pragma once
#include <QByteArray>
#include <QImage>

namespace orvandel {

/// Encodes a picture as GIF (which Qt can't write). Keeps the 256 most frequent colours and replaces others
/// by the nearest of them. @return a complete file of version "89a".
QByteArray writeGif(const QImage& picture);

}  // namespace orvandel
