#pragma once
#include <QByteArray>

// Media content to put into backups. The same arguments give the same bytes. No display is needed.
// Pictures are real ones that any viewer opens, at least 512 bytes each.

namespace sample_media {
QByteArray jpeg(int seed, int width = 640, int height = 480);  ///< JFIF
QByteArray exifJpeg(int seed);                                 ///< begins with an Exif segment
QByteArray png(int seed, int width = 320, int height = 240);
QByteArray gif(int seed);
QByteArray bmp(int seed);
QByteArray mov(int seed, int size = 4096);  ///< heads of films and sounds, with filler behind
QByteArray mp4(int seed, int size = 4096);
QByteArray threeGp(int seed, int size = 4096);
QByteArray avi(int seed, int size = 4096);
QByteArray mp3(int seed, int size = 4096);
QByteArray wav(int seed, int size = 4096);
QByteArray unknown(int seed, int size = 4096);  ///< text that no test accepts
}  // namespace sample_media
