// decrypt_data: writes backups for benchmarks/decrypt_speed and benchmarks/in_place_speed.
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "sample/backup_builder.h"

using namespace orvandel;

namespace {

constexpr char kPassword[] = "benchmark";

/// A part of the mixed backup: number of files of one size per gigabyte.
struct Share {
  int nFiles;
  int nSize;
};

constexpr Share kMixed[] = {
    {4, 128 << 20}, {16, 16 << 20}, {64, 2 << 20}, {512, 128 << 10}, {1024, 16 << 10},
};

constexpr char kPictureHead[] = "\xFF\xD8\xFF\xE0\0\x10JFIF";

/// Bytes that a walk takes for a picture.
QByteArray SomeBytes(int nSize) {
  QByteArray bytes(nSize, '\0');
  quint32 nState = 12345;
  memcpy(bytes.data(), kPictureHead, sizeof kPictureHead);
  for (int i = sizeof kPictureHead; i + 4 <= nSize; i += 4) {
    nState = nState * 1664525 + 1013904223;
    memcpy(bytes.data() + i, &nState, 4);
  }
  return bytes;
}

void Write(const QString& folder, int nGigabytes, int nSmallFiles, bool bPlain) {
  const Encryption encryption{kPassword, Encryption::Age::From102, 1000, 1};
  const BackupKeys keys(encryption);
  BackupBuilder backup(folder, BackupBuilder::Layout::Db);
  if (!bPlain) backup.encrypt(encryption);
  backup.writeInfo({});
  const auto add = [&](const QString& path, const QByteArray& bytes) {
    const QString place = "Media/DCIM/" + path + ".JPG";
    const QString file = backup.addFile("CameraRollDomain", place, bytes);
    const QByteArray id = BackupBuilder::fileId("CameraRollDomain", place).toLatin1();
    printf("%s %s\n", keys.key(id).toHex().constData(), qPrintable(file));  // input for openssl
  };
  for (int i = 0; i < nGigabytes; ++i) {
    for (const Share& share : kMixed) {
      const QByteArray bytes = SomeBytes(share.nSize);
      for (int j = 0; j < share.nFiles; ++j) add(QString("%1/%2/%3").arg(i).arg(share.nSize).arg(j), bytes);
    }
  }
  const QByteArray small = SomeBytes(3000);
  for (int i = 0; i < nSmallFiles; ++i) add(QString("small/%1").arg(i), small);
  backup.finish();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const bool bPlain = argc == 5 && strcmp(argv[4], "plain") == 0;
  if (argc != 4 && !bPlain) {
    fprintf(stderr,
            "usage: decrypt_data FOLDER GIGABYTES SMALLFILES [plain]\n"
            "Writes a backup of pictures, encrypted unless \"plain\" is given. Prints key and path of each "
            "file. The password is \"%s\".\n",
            kPassword);
    return 1;
  }
  try {
    Write(QString::fromLocal8Bit(argv[1]), atoi(argv[2]), atoi(argv[3]), bPlain);
  } catch (const std::exception& error) {
    fprintf(stderr, "decrypt_data: %s\n", error.what());
    return 4;
  }
  return 0;
}
