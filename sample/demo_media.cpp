// The files of the demo backup: camera roll, photo stream, apps, attachments.
#include <functional>

#include "sample/demo_parts.h"
#include "sample/pictures.h"
#include "sample/store_guid.h"

namespace orvandel {

namespace {

using Maker = std::function<QByteArray(int seed)>;

const Maker kJpeg = [](int seed) { return sample_media::jpeg(seed); };
const Maker kTallJpeg = [](int seed) { return sample_media::jpeg(seed, 480, 640); };
const Maker kExifJpeg = [](int seed) { return sample_media::exifJpeg(seed); };
const Maker kPng = [](int seed) { return sample_media::png(seed); };
const Maker kScreenshot = [](int seed) { return sample_media::png(seed, 375, 667); };
const Maker kGif = [](int seed) { return sample_media::gif(seed); };
const Maker kBmp = [](int seed) { return sample_media::bmp(seed); };
const Maker kMov = [](int seed) { return sample_media::mov(seed); };
const Maker kMp4 = [](int seed) { return sample_media::mp4(seed); };
const Maker kThreeGp = [](int seed) { return sample_media::threeGp(seed); };
const Maker kAvi = [](int seed) { return sample_media::avi(seed); };
const Maker kMp3 = [](int seed) { return sample_media::mp3(seed); };
const Maker kWav = [](int seed) { return sample_media::wav(seed); };
const Maker kUnknown = [](int seed) { return sample_media::unknown(seed); };
const Maker kShort = [](int seed) { return sample_media::jpeg(seed, 64, 48).left(300); };
const Maker kEmpty = [](int) { return QByteArray(); };

/// With more photos than this, the camera roll repeats a pool of small pictures.
constexpr int kMostDistinct = 400;
constexpr int kPoolSize = 50;
constexpr int kFirstIosOfHeic = 11;
constexpr int kHeicPictures = 4;
constexpr int kFolderSize = 1000;  // photos per folder, as on devices

struct Kind {
  const char* extension;
  Maker make;
};

// The content of the camera roll, repeated; two have the wrong extension.
const Kind kRoll[] = {
    {"JPG", kExifJpeg}, {"JPG", kJpeg},     {"JPG", kExifJpeg}, {"PNG", kScreenshot}, {"MOV", kMov},
    {"JPG", kTallJpeg}, {"JPG", kExifJpeg}, {"JPG", kPng},      {"MP4", kMp4},        {"JPG", kJpeg},
    {"GIF", kGif},      {"JPG", kExifJpeg}, {"3GP", kThreeGp},  {"JPG", kExifJpeg},   {"JPG", kTallJpeg},
    {"PNG", kJpeg},     {"JPG", kExifJpeg}, {"MOV", kMov},      {"JPG", kJpeg},       {"PNG", kPng},
};

QByteArray poolPicture(int seed) {
  return seed % 5 == 4 ? sample_media::mov(seed, 2048) : sample_media::jpeg(seed, 160, 120);
}

QString rollPath(int index, const QString& extension) {
  // The first folder ends early, so that names are used twice, once in each folder.
  const int firstFolder = 30;
  const bool inFirst = index < firstFolder;
  const int folder = inFirst ? 100 : 101 + (index - firstFolder) / kFolderSize;
  const int number = (inFirst ? index : (index - firstFolder) % kFolderSize) + 1;
  return QString("Media/DCIM/%1APPLE/IMG_%2.%3").arg(folder).arg(number, 4, 10, QChar('0')).arg(extension);
}

struct AwkwardFile {
  const char* path;
  Maker make;
};

const AwkwardFile kAwkwardRoll[] = {
    {"Media/DCIM/102APPLE/IMG_2001.JPG", kShort},
    {"Media/DCIM/102APPLE/IMG_2002.JPG", kEmpty},
    {"Media/DCIM/102APPLE/IMG_2003.JPG", kUnknown},
    {"Media/DCIM/102APPLE/IMG_2004.AAE", kUnknown},
    {"Media/DCIM/102APPLE/Höhenweg über München.JPG", kExifJpeg},
    {"Media/DCIM/102APPLE/京都の秋 🍁.JPG", kJpeg},
};

struct AppFile {
  const char *domain, *path;
  Maker make;
};

const AppFile kAppFiles[] = {
    {"AppDomain-com.example.Snap", "Documents/snap-0001.jpg", kExifJpeg},
    {"AppDomain-com.example.Snap", "Documents/snap-0002.jpg", kJpeg},
    {"AppDomain-com.example.Snap", "Documents/Filme/snap-0003.mp4", kMp4},
    {"AppDomain-com.example.Snap", "Documents/Filme/snap-0004.3gp", kThreeGp},
    {"AppDomain-com.example.Snap", "Library/Stickers/cat.gif", kGif},
    {"AppDomain-com.example.Snap", "Library/Caches/thumb.db", kUnknown},
    {"AppDomain-com.example.Sketch", "Documents/Entwürfe/Skizze 1.png", kPng},
    {"AppDomain-com.example.Sketch", "Documents/Entwürfe/Skizze 2.bmp", kBmp},
    {"AppDomain-com.example.Sketch", "Documents/no-extension", kPng},
    {"AppDomain-com.example.Sketch", "Library/Templates/山水.bmp", kBmp},
    {"AppDomain-com.example.Sketch", "Library/Templates/index.txt", kUnknown},
    {"AppDomain-net.example.Radio", "Documents/jingle.mp3", kMp3},
    {"AppDomain-net.example.Radio", "Documents/bell.wav", kWav},
    {"AppDomain-net.example.Radio", "Documents/show.avi", kAvi},
    {"AppDomain-net.example.Radio", "Library/Covers/cover.jpg", kJpeg},
    {"AppDomain-net.example.Radio", "Library/Recordings/aufnahme.mp3", kMp3},
    {"AppDomain-net.example.Radio", "Library/Recordings/short.wav", kShort},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/4917139200011@s.whatsapp.net/a/b/ab01.jpg", kJpeg},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/4917139200011@s.whatsapp.net/a/c/ac02.jpg", kExifJpeg},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/4917139200011@s.whatsapp.net/c/1/c103.mp4", kMp4},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/447700900123@s.whatsapp.net/0/7/0704.jpg", kJpeg},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/447700900123@s.whatsapp.net/0/7/0704.thumb", kUnknown},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/447700900123@s.whatsapp.net/9/d/9d05.mov", kMov},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/447700900123@s.whatsapp.net/9/e/9e06.jpg", kEmpty},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/Profile/Photo.jpg", kJpeg},
};

struct AttachmentKind {
  const char *name, *mimeType;
  Maker make;
};

const AttachmentKind kAttachments[] = {
    {"IMG_0007.jpeg", "image/jpeg", kJpeg},    {"IMG_0012.JPG", "image/jpeg", kExifJpeg},
    {"IMG_0031.PNG", "image/png", kPng},       {"laugh.gif", "image/gif", kGif},
    {"IMG_0044.MOV", "video/quicktime", kMov}, {"clip.mp4", "video/mp4", kMp4},
    {"IMG_0007.jpeg", "image/jpeg", kJpeg},    {"Grüße aus Köln.jpg", "image/jpeg", kJpeg},
    {"Kontakt.vcf", "text/vcard", kUnknown},   {"Audio.3gp", "video/3gpp", kThreeGp},
};

const AttachmentKind kGroupPictures[kGroupAttachments] = {
    {"Gipfel 1.jpeg", "image/jpeg", kJpeg},
    {"Gipfel 2.jpeg", "image/jpeg", kTallJpeg},
};

}  // namespace

void addCameraRoll(BackupBuilder& backup, const DemoOptions& options) {
  static const QString kDomain = "CameraRollDomain";
  if (options.photos <= 0) return;
  const bool usesPool = options.photos > kMostDistinct;
  std::vector<QByteArray> pool;
  for (int i = 0; usesPool && i < kPoolSize; ++i) pool.push_back(poolPicture(options.seed * 1000 + i));

  for (int i = 0; i < options.photos; ++i) {
    if (usesPool) {
      const size_t which = size_t(i) % pool.size();
      backup.addFile(kDomain, rollPath(i, which % 5 == 4 ? "MOV" : "JPG"), pool[which]);
      continue;
    }
    const Kind& kind = kRoll[size_t(i) % std::size(kRoll)];
    backup.addFile(kDomain, rollPath(i, kind.extension), kind.make(options.seed * 1000 + i));
  }

  int seed = options.seed * 1000 + kMostDistinct;
  for (const AwkwardFile& file : kAwkwardRoll) {
    backup.addFile(kDomain, QString::fromUtf8(file.path), file.make(seed++));
  }
  if (options.ios >= kFirstIosOfHeic) {
    for (int i = 0; i < kHeicPictures; ++i)
      backup.addFile(kDomain, QString("Media/DCIM/102APPLE/IMG_%1.HEIC").arg(2010 + i),
                     sample_media::heic(seed++));
  }
  if (!options.omitFiles) backup.addEntry(kDomain, "Media/DCIM/102APPLE/IMG_2005.JPG");  // without a file
  backup.addEntry(kDomain, "Media/DCIM/102APPLE/IMG_2006.JPG", BackupBuilder::kLink);
  backup.addEntry(kDomain, "Media/DCIM/102APPLE", BackupBuilder::kDirectory);
}

void addPhotoStream(BackupBuilder& backup, const DemoOptions& options) {
  static const int kNumbers[] = {12, 3, 8, 1, 27, 5, 19, 2};  // devices don't sort these
  int seed = options.seed * 1000 + 500;
  for (const int number : kNumbers) {
    const QString path =
        QString("Media/PhotoStreamsData/1234567/100APPLE/IMG_%1.JPG").arg(number, 4, 10, QChar('0'));
    backup.addFile("MediaDomain", path, number % 3 ? sample_media::exifJpeg(seed) : sample_media::jpeg(seed));
    ++seed;
  }
}

void addAppFiles(BackupBuilder& backup, const DemoOptions& options) {
  int seed = options.seed * 1000 + 600;
  for (const AppFile& file : kAppFiles) {
    backup.addFile(file.domain, QString::fromUtf8(file.path), file.make(seed++));
  }
}

std::vector<SampleAttachment> addAttachments(BackupBuilder& backup, const DemoOptions& options) {
  std::vector<SampleAttachment> attachments;
  int seed = options.seed * 1000 + 700;
  const auto add = [&](const AttachmentKind& kind) {
    const int place = seed % 256;
    const QString path = QString("Library/SMS/Attachments/%1/%2/%3/%4")
                             .arg(place, 2, 16, QChar('0'))
                             .arg(place % 16, 2, 10, QChar('0'))
                             .arg(storeGuid(QString("place %1").arg(seed)), QString::fromUtf8(kind.name));
    const QByteArray content = kind.make(seed++);
    backup.addFile("MediaDomain", path, content);
    attachments.push_back({path, kind.mimeType, static_cast<int>(content.size())});
  };
  for (const AttachmentKind& kind : kAttachments) add(kind);
  for (int i = 0; options.ios && i < kGroupAttachments; ++i) add(kGroupPictures[i]);
  return attachments;
}

}  // namespace orvandel
