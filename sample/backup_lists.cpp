// The property lists of BackupBuilder: "Info.plist", "Manifest.plist", "Status.plist".
#include <QDateTime>
#include <QStringList>

#include "sample/backup_builder.h"
#include "sample/plist_writer.h"
#include "sample/written_file.h"

namespace orvandel {

namespace {

constexpr quint32 kManifestClass = 4;  // readable at any time
const char* const kApps[] = {"com.example.Sketch", "com.example.Snap", "net.example.Radio",
                             "net.whatsapp.WhatsApp"};

// Omits a key with a null value.
void writeText(PlistWriter& plist, const QString& key, const QString& value) {
  if (!value.isNull()) plist.string(key, value);
}

// Omits a key whose value is no date, which a binary list can't hold.
void writeDate(PlistWriter& plist, const QString& key, const QString& value) {
  if (QDateTime::fromString(value, Qt::ISODate).isValid()) plist.date(key, value);
}

void writeApps(PlistWriter& plist) {
  plist.beginDict("Applications");
  for (const char* app : kApps) {
    plist.beginDict(app);
    plist.string("CFBundleIdentifier", app);
    plist.string("CFBundleVersion", "2.1");
    plist.string("ContainerContentClass", "Data/Application");
    plist.endDict();
  }
  plist.endDict();
}

}  // namespace

void BackupBuilder::writeInfo(const Info& info) {
  m_info = info;
  QStringList apps;
  for (const char* app : kApps) apps.append(app);
  apps.sort();
  PlistWriter plist;
  writeText(plist, "Build Version", info.buildVersion);
  writeText(plist, "Device Name", info.displayName);
  writeText(plist, "Display Name", info.displayName);
  plist.string("GUID", "6F1D0C7A4E2B49D8A1C35B7E90F2D416");
  plist.string("ICCID", "8949020000001234567");
  writeText(plist, "IMEI", info.imei);
  plist.strings("Installed Applications", apps);
  if (!info.lastBackupDate.isNull()) plist.date("Last Backup Date", info.lastBackupDate);
  writeText(plist, "Phone Number", info.phoneNumber);
  writeText(plist, "Product Name", info.productName);
  writeText(plist, "Product Type", info.productType);
  writeText(plist, "Product Version", info.productVersion);
  writeText(plist, "Serial Number", info.serialNumber);
  writeText(plist, "Target Identifier", info.udid);
  plist.string("Target Type", "Device");
  writeText(plist, "Unique Identifier", info.udid.toUpper());
  writeText(plist, "iTunes Version", info.desktopVersion);
  written_file::write(m_folder + "/Info.plist", plist.finish());
}

void BackupBuilder::writeManifestPlist() const {
  const BackupKeys& keys = m_keys ? *m_keys : *m_listedKeys;
  PlistWriter plist;
  writeApps(plist);
  plist.data("BackupKeyBag", keys.keybag());
  writeDate(plist, "Date", m_info.lastBackupDate);
  plist.boolean("IsEncrypted", m_keys != nullptr);
  plist.beginDict("Lockdown");
  writeText(plist, "BuildVersion", m_info.buildVersion);
  writeText(plist, "DeviceName", m_info.displayName);
  writeText(plist, "ProductType", m_info.productType);
  writeText(plist, "ProductVersion", m_info.productVersion);
  writeText(plist, "SerialNumber", m_info.serialNumber);
  writeText(plist, "UniqueDeviceID", m_info.udid);
  plist.endDict();
  if (m_keys && m_keys->age() == Encryption::Age::From102)
    plist.data("ManifestKey", m_keys->wrappedKey(BackupKeys::kManifestName, kManifestClass));
  writeText(plist, "SystemDomainsVersion", m_info.systemDomainsVersion);
  const QString version = m_layout == Layout::Mbdb ? "9.1" : "10.0";
  plist.string("Version", m_info.manifestVersion.isNull() ? version : m_info.manifestVersion);
  plist.boolean("WasPasscodeSet", true);
  written_file::write(m_folder + "/Manifest.plist", plist.finishBinary());
}

void BackupBuilder::writeStatusPlist() const {
  PlistWriter plist;
  plist.string("BackupState", "new");
  writeDate(plist, "Date", m_info.lastBackupDate);
  plist.boolean("IsFullBackup", true);
  plist.string("SnapshotState", "finished");
  plist.string("UUID", "C2A9E1B7-53D0-4F7E-9B0C-8D1E6F2A7B34");
  writeText(plist, "Version", m_info.statusVersion);
  written_file::write(m_folder + "/Status.plist", plist.finishBinary());
}

}  // namespace orvandel
