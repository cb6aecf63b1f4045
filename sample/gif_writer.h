#pragma once
#include <QByteArray>
#include <QImage>

/// Writes a picture as GIF (Qt reads these, but doesn't write them). The 256 most frequent colours are kept,
/// all others become the nearest of them. @return a whole file of version "89a".
QByteArray writeGif(const QImage& picture);
