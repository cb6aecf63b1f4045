#pragma once
#include <QImage>

/// Paints a little landscape: sky, sun or moon, hills, sometimes a lake or a wood. Format RGB32, nothing of
/// it is text, so that neither fonts nor a display are needed.
QImage paintLandscape(int seed, int width, int height);
