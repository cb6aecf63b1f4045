#include "sample/demo_backup.h"

#include "sample/demo_parts.h"
#include "sample/plist_writer.h"
#include "sample/written_file.h"

namespace orvandel {

namespace {

struct Place {
  const char *domain, *path;
};

const Place kDirectories[] = {
    {"HomeDomain", ""},
    {"HomeDomain", "Library"},
    {"HomeDomain", "Library/Preferences"},
    {"HomeDomain", "Library/SMS"},
    {"CameraRollDomain", ""},
    {"CameraRollDomain", "Media"},
    {"CameraRollDomain", "Media/DCIM"},
    {"CameraRollDomain", "Media/DCIM/100APPLE"},
    {"MediaDomain", "Library/SMS/Attachments"},
    {"AppDomain-com.example.Snap", "Documents"},
    {"KeychainDomain", ""},
};

const Place kSmallFiles[] = {
    {"HomeDomain", "Library/Preferences/com.apple.mobilesafari.plist"},
    {"HomeDomain", "Library/Preferences/com.apple.Preferences.plist"},
    {"HomeDomain", "Library/Preferences/com.apple.springboard.plist"},
    {"HomeDomain", "Library/Preferences/com.apple.weather.plist"},
    {"SystemPreferencesDomain", "SystemConfiguration/com.apple.wifi.plist"},
    {"SystemPreferencesDomain", "SystemConfiguration/preferences.plist"},
    {"WirelessDomain", "Library/Preferences/com.apple.commcenter.plist"},
    {"KeychainDomain", "keychain-backup.plist"},
    {"ManagedPreferencesDomain", "mobile/com.apple.purplebuddy.plist"},
    {"RootDomain", "Library/Preferences/com.apple.preferences.network.plist"},
};

const Place kWithoutFile[] = {
    {"HomeDomain", "Library/Safari/Bookmarks.db"},
    {"HomeDomain", "Library/Voicemail/voicemail.db"},
    {"HomeDomain", "Library/Calendar/Calendar.sqlitedb"},
    {"DatabaseDomain", "timezone.db"},
    {"TonesDomain", "iTunes/Ringtones/Ringtones.plist"},
    {"BooksDomain", "Media/Books/Purchases/Bücher.plist"},
};

const Place kLinks[] = {
    {"SystemPreferencesDomain", "SystemConfiguration/current"},
    {"AppDomain-com.example.Snap", "Library/Latest Album"},
};

// Filler entries: domain, and a path with a placeholder for a running number.
const Place kFillers[] = {
    {"HomeDomain", "Library/Preferences/com.example.setting%1.plist"},
    {"HomeDomain", "Library/Mail/Envelope/%1.emlx"},
    {"AppDomain-com.example.Sketch", "Library/Application Support/strokes/%1.dat"},
    {"AppDomain-net.example.Radio", "Library/Caches/chunks/%1.bin"},
    {"AppDomain-com.example.Snap", "Library/WebKit/LocalStorage/%1.localstorage"},
    {"MediaDomain", "Media/Recordings/Metadata/%1.plist"},
    {"KeyboardDomain", "Library/Keyboard/model-%1.lm"},
    {"HealthDomain", "Health/samples-%1.hfd"},
    {"CameraRollDomain", "Media/PhotoData/Metadata/%1.plist"},
};

QByteArray smallPlist(const QString& name) {
  PlistWriter plist;
  plist.string("Name", name);
  plist.integer("Version", 3);
  plist.boolean("Enabled", true);
  return plist.finish();
}

void addOrdinaryEntries(BackupBuilder& backup) {
  for (const Place& place : kDirectories)
    backup.addEntry(place.domain, place.path, BackupBuilder::kDirectory);
  for (const Place& place : kSmallFiles) backup.addFile(place.domain, place.path, smallPlist(place.path));
  for (const Place& place : kWithoutFile) backup.addEntry(place.domain, QString::fromUtf8(place.path));
  for (const Place& place : kLinks) backup.addEntry(place.domain, place.path, BackupBuilder::kLink);
}

/// Adds entries without a file; on devices nearly as many precede the media as follow them.
void fillUp(BackupBuilder& backup, int from, int to) {
  std::vector<std::pair<QString, QString>> patterns;
  for (const Place& place : kFillers) patterns.push_back({place.domain, place.path});
  for (int i = from; i < to; ++i) {
    const auto& [domain, path] = patterns[size_t(i) % patterns.size()];
    backup.addEntry(domain, path.arg(i, 7, 10, QChar('0')));
  }
}

BackupBuilder::Info infoOf(const DemoOptions& options) {
  BackupBuilder::Info info;
  info.displayName = QString::fromUtf8("Lena’s iPhone");
  info.lastBackupDate = "2016-12-30T18:04:11Z";
  switch (options.systemAge()) {
    case Encryption::Age::BeforeIos10:
      info.productVersion = "9.3.5";
      break;
    case Encryption::Age::Ios10:
      info.productVersion = "10.1.1";
      break;
    case Encryption::Age::From102:  // 11, since the messages have dates in nanoseconds
      info.productVersion = "11.0.3";
      info.lastBackupDate = "2017-10-15T07:41:09Z";
      break;
  }
  return info;
}

void writeStatus(const QString& folder, const QString& date) {
  PlistWriter plist;
  plist.string("BackupState", "new");
  plist.date("Date", date);
  plist.boolean("IsFullBackup", true);
  plist.string("SnapshotState", "finished");
  plist.string("UUID", "C2A9E1B7-53D0-4F7E-9B0C-8D1E6F2A7B34");
  plist.string("Version", "2.4");
  written_file::write(folder + "/Status.plist", plist.finish());
}

void writeManifestPlist(const QString& folder, const BackupBuilder::Info& info) {
  PlistWriter plist;
  plist.beginDict("Applications");
  for (const char* app :
       {"com.example.Sketch", "com.example.Snap", "net.example.Radio", "net.whatsapp.WhatsApp"}) {
    plist.beginDict(app);
    plist.string("CFBundleIdentifier", app);
    plist.string("CFBundleVersion", "2.1");
    plist.endDict();
  }
  plist.endDict();
  plist.date("Date", info.lastBackupDate);
  plist.boolean("IsEncrypted", false);
  plist.beginDict("Lockdown");
  plist.string("DeviceName", info.displayName);
  plist.string("ProductType", "iPhone7,2");
  plist.string("ProductVersion", info.productVersion);
  plist.string("SerialNumber", info.serialNumber);
  plist.endDict();
  plist.string("Version", "9.1");
  plist.boolean("WasPasscodeSet", false);
  written_file::write(folder + "/Manifest.plist", plist.finish());
}

}  // namespace

DemoSummary writeDemoBackup(const QString& folder, const DemoOptions& options) {
  BackupBuilder backup(folder, options.layout);
  DemoSummary summary;
  if (!options.password.isNull())
    backup.encrypt({options.password, options.systemAge(), options.rounds, options.seed});
  const BackupBuilder::Info info = infoOf(options);
  backup.writeInfo(info);
  writeStatus(folder, info.lastBackupDate);
  if (options.password.isNull()) writeManifestPlist(folder, info);

  addOrdinaryEntries(backup);
  const int before = qMax(0, options.entries - options.photos) / 2;
  fillUp(backup, 0, before);
  addCameraRoll(backup, options);
  addPhotoStream(backup, options);
  addAppFiles(backup, options);
  const std::vector<SampleAttachment> attachments = addAttachments(backup, options);
  addStores(backup, options, attachments, summary);
  const int missing = options.entries - static_cast<int>(backup.entryCount());
  if (missing > 0) fillUp(backup, before, before + missing);

  summary.entries = static_cast<qint64>(backup.entryCount());
  backup.finish(options.layout == BackupBuilder::Layout::Db);
  return summary;
}

}  // namespace orvandel
