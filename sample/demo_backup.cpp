#include "sample/demo_backup.h"

#include "sample/demo_parts.h"
#include "sample/plist_writer.h"

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

void addOrdinaryEntries(BackupBuilder& backup, bool omitFiles) {
  for (const Place& place : kDirectories)
    backup.addEntry(place.domain, place.path, BackupBuilder::kDirectory);
  for (const Place& place : kSmallFiles) backup.addFile(place.domain, place.path, smallPlist(place.path));
  if (!omitFiles) {
    for (const Place& place : kWithoutFile) backup.addEntry(place.domain, QString::fromUtf8(place.path));
  }
  for (const Place& place : kLinks) backup.addEntry(place.domain, place.path, BackupBuilder::kLink);
}

/// Adds entries, without a file unless the option demands one; on devices nearly as many precede the media as
/// follow them.
void fillUp(BackupBuilder& backup, const DemoOptions& options, int from, int to) {
  std::vector<std::pair<QString, QString>> patterns;
  for (const Place& place : kFillers) patterns.push_back({place.domain, place.path});
  for (int i = from; i < to; ++i) {
    const auto& [domain, path] = patterns[size_t(i) % patterns.size()];
    const QString name = path.arg(i, 7, 10, QChar('0'));
    if (options.omitFiles) {
      backup.addFile(domain, name, "filler " + QByteArray::number(i) + "\n");
    } else {
      backup.addEntry(domain, name);
    }
  }
}

BackupBuilder::Info infoOf(const DemoOptions& options) {
  const IosVersion& version = options.system();
  BackupBuilder::Info info;
  info.displayName = QString::fromUtf8("Lena’s iPhone");
  info.lastBackupDate = version.backupDate;
  info.productVersion = version.productVersion;
  info.buildVersion = version.buildVersion;
  info.productType = version.productType;
  info.productName = version.productName;
  info.udid = version.udid;
  info.desktopVersion = version.desktopVersion;
  info.manifestVersion = version.manifestVersion;
  info.statusVersion = version.statusVersion;
  info.systemDomainsVersion = version.systemDomainsVersion;
  return info;
}

}  // namespace

DemoSummary writeDemoBackup(const QString& folder, const DemoOptions& options) {
  BackupBuilder backup(folder, options.layout);
  DemoSummary summary;
  const Encryption encryption{options.password, options.systemAge(), options.rounds, options.seed};
  if (!options.password.isNull()) backup.encrypt(encryption);
  backup.writeInfo(infoOf(options));
  backup.writeDeviceLists(encryption);

  addOrdinaryEntries(backup, options.omitFiles);
  const int before = qMax(0, options.entries - options.photos) / 2;
  fillUp(backup, options, 0, before);
  addCameraRoll(backup, options);
  addPhotoStream(backup, options);
  addAppFiles(backup, options);
  const std::vector<SampleAttachment> attachments = addAttachments(backup, options);
  addStores(backup, options, attachments, summary);
  const int missing = options.entries - static_cast<int>(backup.entryCount());
  if (missing > 0) fillUp(backup, options, before, before + missing);

  summary.entries = static_cast<qint64>(backup.entryCount());
  backup.finish(options.layout == BackupBuilder::Layout::Db);
  return summary;
}

}  // namespace orvandel
