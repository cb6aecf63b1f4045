// fuzz_seeds: writes the initial corpus. Deterministic.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cctype>
#include <cstdio>
#include <exception>

#include "sample/backup_builder.h"
#include "sample/encryption.h"
#include "sample/written_file.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/extract/attributed_bytes.h"
#include "tests/extract/file_heads.h"

using namespace orvandel;

using namespace std::string_literals;

namespace {

QString g_folder;

void WriteSeed(const QString& target, const QString& name, const QByteArray& bytes) {
  QDir().mkpath(g_folder + '/' + target);
  written_file::write(g_folder + '/' + target + '/' + name, bytes);
}

void WriteSeed(const QString& target, const QString& name, const std::string& bytes) {
  WriteSeed(target, name, QByteArray(bytes.data(), static_cast<int>(bytes.size())));
}

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) written_file::fail(path, file.errorString());
  return file.readAll();
}

void WriteManifests() {
  const QTemporaryDir folder;
  BackupBuilder backup(folder.path(), BackupBuilder::Layout::Mbdb);
  backup.addEntry("HomeDomain", "", BackupBuilder::kDirectory);
  backup.addEntry("HomeDomain", "Library/SMS", BackupBuilder::kDirectory);
  backup.addFile("HomeDomain", "Library/SMS/sms.db", "content");
  backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", "picture");
  backup.addEntry("AppDomain-com.example.Snap", "Library/Latest Album", BackupBuilder::kLink);
  backup.addEntry("MediaDomain", QString::fromUtf8("Library/SMS/Attachments/0a/10/Grüße.jpg"));
  backup.finish();
  const QByteArray whole = ReadAll(folder.filePath("Manifest.mbdb"));
  WriteSeed("fuzz_manifest", "whole", whole);
  WriteSeed("fuzz_manifest", "header_alone", whole.left(6));
  WriteSeed("fuzz_manifest", "cut_in_magic", whole.left(3));
  WriteSeed("fuzz_manifest", "cut_in_string", whole.left(12));
  WriteSeed("fuzz_manifest", "cut_in_block", whole.left(whole.size() - 20));
  WriteSeed("fuzz_manifest", "text", QByteArray("SQLite format 3 is something else"));

  using namespace manifest_bytes;
  Entry entry;
  entry.strDomain = "HomeDomain";
  entry.strPath = "a";
  entry.strHash = std::string("\0\x0F\x10\xFF", 4);
  entry.properties = {{"name", "value"}, {"", ""}, {"other", std::string(300, 'x')}};
  WriteSeed("fuzz_manifest", "properties", kHeader + Bytes(entry));
  WriteSeed("fuzz_manifest", "missing_properties", kHeader + Bytes(entry).substr(0, 80));
  WriteSeed("fuzz_manifest", "length_beyond_end", kHeader + Number(0xFFFE, 2) + "HomeDomain");
  WriteSeed("fuzz_manifest", "no_strings",
            kHeader + kNoString + kNoString + kNoString + kNoString + kNoString + Block(0x81A4, 0));
}

QByteArray InfoBytes(const BackupBuilder::Info& info) {
  const QTemporaryDir folder;
  BackupBuilder(folder.path(), BackupBuilder::Layout::Db).writeInfo(info);
  return ReadAll(folder.filePath("Info.plist"));
}

void WriteInfos() {
  BackupBuilder::Info info;
  info.displayName = QString::fromUtf8("Lena’s iPhone");
  const QByteArray whole = InfoBytes(info);
  WriteSeed("fuzz_info", "whole", whole);
  WriteSeed("fuzz_info", "cut", whole.left(whole.indexOf("<key>Product Version</key>") + 30));
  WriteSeed("fuzz_info", "key_at_end", QByteArray("<key>Display Name</key>\n"));
  WriteSeed("fuzz_info", "carriage_returns", QByteArray(whole).replace("\n", "\r\n"));
  WriteSeed("fuzz_info", "one_line", QByteArray(whole).replace("\n", ""));
  WriteSeed(
      "fuzz_info", "odd_dates",
      QByteArray("<key>Last Backup Date</key>\n<date>T</date>\n<key>Last Backup Date</key>\n"
                 "<date>2016-05-01T-99999999999Z</date>\n<key>Last Backup Date</key>\n<date>x</date>\n"));
  WriteSeed("fuzz_info", "tags_in_reverse",
            QByteArray("<key>Serial Number</key>\n</string>F2L<string>\n<key>Product Version</key>\n"
                       "<string>99999999999999999999</string>\n"));
  WriteSeed("fuzz_info", "long_line",
            "<key>Display Name</key>\n<string>" + QByteArray(2100, 'n') + "</string>\n" +
                "<key>Phone Number</key>\n<string>1</string>\n");
  WriteSeed("fuzz_info", "zeros", "<key>Display Name</key>\n<string>a\0b</string>\n\0\0\n<key>"s);
  WriteSeed("fuzz_info", "not_utf8",
            QByteArray("<key>Display Name</key>\n<string>\xFF\xC3\xED\xA0\x80</string>\n"));
  WriteSeed("fuzz_info", "binary", "bplist00\xD1\x01\x02\\Display Name\x55Phone"s);
  BackupBuilder::Info empty;
  empty.displayName = empty.lastBackupDate = empty.phoneNumber = empty.productVersion = empty.serialNumber =
      "";
  WriteSeed("fuzz_info", "empty_values", InfoBytes(empty));
}

void WriteHeads() {
  for (const auto* heads : {&WiredHeads(), &UnwiredHeads()}) {
    for (const FileHead& head : *heads) {
      const QString name = QString::fromStdString(head.strName);
      WriteSeed("fuzz_file_type", name, Whole(head));
      // The shortest accepted head, so that its end is close to the bytes examined.
      WriteSeed("fuzz_file_type", name + ".short", Whole(head).substr(0, head.nWholeSize));
    }
  }
}

void WriteKeybags() {
  using Age = Encryption::Age;
  const BackupKeys old({"hashcat", Age::BeforeIos10, 1, 1}), current({"hashcat", Age::From102, 1, 1});
  const QByteArray whole = current.keybag();
  // A key for FileKey is at the end.
  WriteSeed("fuzz_keybag", "old", old.keybag() + old.wrappedKey("file"));
  WriteSeed("fuzz_keybag", "current", whole);
  WriteSeed("fuzz_keybag", "with_key", whole + QByteArray("KEYX\0\0\0\x2C", 8) + current.wrappedKey("file"));
  WriteSeed("fuzz_keybag", "cut_in_item", whole.left(whole.size() - 5));
  WriteSeed("fuzz_keybag", "head_alone", whole.left(whole.indexOf("CLAS") - 24));
  WriteSeed("fuzz_keybag", "endless_item", whole + "UUID\xFF\xFF\xFF\xFF");
}

void WriteRecords() {
  const BackupKeys keys({"hashcat", Encryption::Age::From102, 1, 1});
  const auto seed = [](const char* name, const QByteArray& bytes) {
    WriteSeed("fuzz_archived_key", name, bytes);
  };
  const QByteArray nested = BackupKeys::record(BackupBuilder::kFile, 5000000000, keys.wrappedKey("b"), true);
  seed("direct", BackupKeys::record(BackupBuilder::kFile, 77, keys.wrappedKey("a"), false));
  seed("nested", nested);
  seed("plain", BackupKeys::record(BackupBuilder::kDirectory, 0, {}, false));
  seed("cut", nested.left(nested.size() / 2));
  seed("text",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>$objects</key><array>"
       "<string>$null</string><dict><key>EncryptionKey</key><data>a2V5</data><key>Size</key>"
       "<integer>77</integer></dict></array><key>$top</key><dict><key>root</key><integer>1</integer></dict>"
       "</dict></plist>");
}

QByteArray ManifestBytes(BackupBuilder::Layout layout, Encryption::Age age, const char* name) {
  const QTemporaryDir folder;
  BackupBuilder backup(folder.path(), layout);
  backup.encrypt({"hashcat", age, 1, 1});
  backup.writeInfo({});
  backup.addEntry("HomeDomain", "Library", BackupBuilder::kDirectory);
  backup.addEntry("HomeDomain", "Library/link", BackupBuilder::kLink);
  for (int i = 0; i < 5; ++i) backup.addFile("HomeDomain", QString("Library/%1").arg(i), QByteArray(i, 'x'));
  backup.finish();
  return ReadAll(folder.filePath(name));
}

void WriteBackupManifests() {
  using Layout = BackupBuilder::Layout;
  const QByteArray database = ManifestBytes(Layout::Db, Encryption::Age::Ios10, "Manifest.db");
  WriteSeed("fuzz_backup_manifest", "database", "d" + database);
  WriteSeed("fuzz_backup_manifest", "cut", "d" + database.left(database.size() / 2));
  WriteSeed("fuzz_backup_manifest", "binary",
            "m" + ManifestBytes(Layout::Mbdb, Encryption::Age::BeforeIos10, "Manifest.mbdb"));
}

void WriteBodies() {
  using namespace attributed_bytes;
  WriteSeed("fuzz_typed_stream", "immutable", Immutable("Hello world"));
  WriteSeed("fuzz_typed_stream", "mutable", Mutable("Grüße \xEF\xBF\xBC"));
  WriteSeed("fuzz_typed_stream", "empty", Immutable(""));
  WriteSeed("fuzz_typed_stream", "two_bytes", Immutable(std::string(300, 'x')));
  WriteSeed("fuzz_typed_stream", "four_bytes", kHead + kImmutable + kString + "\x82\x03\0\0\0abc"s + kRest);
  WriteSeed("fuzz_typed_stream", "cut", Mutable("Hello world").substr(0, 90));
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc != 2) {
    fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
    return 1;
  }
  g_folder = QString::fromLocal8Bit(argv[1]);
  try {
    WriteManifests();
    WriteInfos();
    WriteHeads();
    WriteKeybags();
    WriteRecords();
    WriteBackupManifests();
    WriteBodies();
  } catch (const std::exception& error) {
    fprintf(stderr, "fuzz_seeds: %s\n", error.what());
    return 4;
  }
  return 0;
}
