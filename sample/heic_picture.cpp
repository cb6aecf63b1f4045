#include <QtEndian>

#include "sample/pictures.h"
#include "sample/seeded_random.h"

namespace orvandel {

namespace {

/// A picture of 64 by 48 pixels, encoded by libheif from a drawn sky and meadow.
// clang-format off
const char kPicture[] =
    "AAAAHGZ0eXBoZWljAAAAAG1pZjFoZWljbWlhZgAAAa1tZXRhAAAAAAAAACFoZGxyAAAAAAAAAABwaWN0AAAAAAAAAAAAAAAA"
    "AAAAAA5waXRtAAAAAAACAAAAEGlkYXQAAAAAAEAAMAAAADhpbG9jAQAAAERAAAIAAQAAAAAAAAHRAAEAAAAAAAAAQAACAAEA"
    "AAAAAAAAAQAAAAAAAAAIAAAAOGlpbmYAAAAAAAIAAAAVaW5mZQIAAAEAAQAAaHZjMQAAAAAVaW5mZQIAAAAAAgAAZ3JpZAAA"
    "AADYaXBycAAAALZpcGNvAAAAdmh2Y0MBA3AAAAAAAAAAAAAe8AD8/fj4AAAPAyAAAQAYQAEMAf//A3AAAAMAkAAAAwAAAwAe"
    "ugJAIQABACpCAQEDcAAAAwCQAAADAAADAB6gIIEFlurkprm4EBAwIAAAAwAgAAADACEiAAEABkQBwXPAiQAAABRpc3BlAAAA"
    "AAAAAEAAAABAAAAAFGlzcGUAAAAAAAAAQAAAADAAAAAQcGl4aQAAAAADCAgIAAAAGmlwbWEAAAAAAAAAAgABAoECAAICA4QA"
    "AAAaaXJlZgAAAAAAAAAOZGltZwACAAEAAQAAAEhtZGF0AAAAPCgBr1j5I3DwmHoFDb60SAKRhuN/L9+2P/YcbtZcSwEfL0OC"
    "cdjVKG4L9LDjB3s7qRoCO+w3X8hW1wWXOg==";
// clang-format on

constexpr int kFillerSize = 256;

}  // namespace

namespace sample_media {

QByteArray heic(int seed) {
  // A box of free space at the end, which readers pass over, makes each picture's file its own.
  QByteArray filler(8, '\0');
  qToBigEndian(quint32(kFillerSize), filler.data());
  filler.replace(4, 4, "free");
  SeededRandom random(static_cast<quint32>(seed));
  while (filler.size() < kFillerSize) filler.append(static_cast<char>(random.below(256)));
  return QByteArray::fromBase64(kPicture) + filler;
}

}  // namespace sample_media

}  // namespace orvandel
