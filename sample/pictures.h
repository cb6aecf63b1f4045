#pragma once
#include <QByteArray>

// Media files for backups. Deterministic; no display is needed. Pictures are valid files of at least 512
// bytes.

namespace orvandel::sample_media {
QByteArray jpeg(int seed, int width = 640, int height = 480);  ///< JFIF
QByteArray exifJpeg(int seed);                                 ///< begins with an Exif segment
QByteArray png(int seed, int width = 320, int height = 240);
QByteArray gif(int seed);
QByteArray bmp(int seed);
QByteArray heic(int seed);                  ///< the same picture for every seed
QByteArray mov(int seed, int size = 4096);  ///< headers of films and sounds, followed by filler
QByteArray mp4(int seed, int size = 4096);
QByteArray threeGp(int seed, int size = 4096);
QByteArray avi(int seed, int size = 4096);
QByteArray mp3(int seed, int size = 4096);
QByteArray wav(int seed, int size = 4096);
QByteArray unknown(int seed, int size = 4096);  ///< text that no type test accepts
}  // namespace orvandel::sample_media
