#pragma once
#include <QImage>

namespace orvandel {

/// Paints a small landscape: sky, sun or moon, hills, sometimes a lake or a wood. Format RGB32. Contains no
/// text, so it needs neither fonts nor a display.
QImage paintLandscape(int seed, int width, int height);

}  // namespace orvandel
