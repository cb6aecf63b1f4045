// The two manifest formats of BackupBuilder.
#include <QFile>
#include <QtEndian>

#include "sample/backup_builder.h"
#include "sample/file_record.h"
#include "sample/stores.h"
#include "sample/written_file.h"

namespace orvandel {

namespace {

constexpr quint16 kTypeMask = 0xF000;           // file type bits of a mode
constexpr quint32 kFirstTime = 1388577600;      // 2014-01-01T12:00:00Z, in seconds from 1970-01-01
constexpr quint32 kTimeSpan = 3 * 365 * 86400;  // dates are spread over three years
constexpr quint32 kMobileUser = 501;            // owner and group of nearly all files on a device
constexpr quint64 kFirstInode = 1000;
constexpr qint64 kBufferSize = 1 << 20;

template <typename Number>
void appendNumber(QByteArray& out, Number number) {
  char bytes[sizeof(Number)];
  qToBigEndian(number, bytes);
  out.append(bytes, sizeof(Number));
}

void appendAbsent(QByteArray& out) {
  appendNumber<quint16>(out, 0xFFFF);
}

void appendString(QByteArray& out, const QByteArray& text) {
  if (text.size() >= 0xFFFF)
    written_file::fail("Manifest.mbdb", "a string is longer than the format can hold");
  appendNumber<quint16>(out, quint16(text.size()));
  out.append(text);
}

/// The modification time of an entry, in seconds since 1970.
quint32 timeOf(size_t number) {
  return kFirstTime + quint32(quint64{number} * 7919 % kTimeSpan);
}

QByteArray targetOf(const QString& relativePath) {
  return "/private/var/mobile/" + relativePath.toUtf8();
}

struct Property {
  const char* name;
  QByteArray value;
};

/// The properties of an entry. Devices add them to pictures of the photo library; the values are any bytes.
std::vector<Property> propertiesOf(const QString& domain, quint16 mode, const QByteArray& id, quint32 time) {
  if (domain != "CameraRollDomain" || (mode & kTypeMask) == (BackupBuilder::kDirectory & kTypeMask))
    return {};
  QByteArray added(8, '\0');
  qToLittleEndian(double(time) - 978307200, added.data());  // seconds from 2001-01-01
  return {{"com.apple.assetsd.UUID", QByteArray::fromHex(id).left(16)},
          {"com.apple.assetsd.addedDate", added},
          {"com.apple.assetsd.hidden", QByteArray(1, '\0')}};
}

int flagsOfMode(quint16 mode) {
  if ((mode & kTypeMask) == (BackupBuilder::kDirectory & kTypeMask)) return 2;
  if ((mode & kTypeMask) == (BackupBuilder::kLink & kTypeMask)) return 4;
  return 1;
}

}  // namespace

/// The class under which a device protects a file; 0 for a directory.
quint32 BackupBuilder::protectionClassOf(const Entry& entry) {
  if (flagsOfMode(entry.mode) == 2) return 0;
  if (!entry.wrappedKey.isEmpty()) return qFromLittleEndian<quint32>(entry.wrappedKey.constData());
  return entry.domain == "HomeDomain" ? 3 : 4;
}

void BackupBuilder::writeMbdb() const {
  const QString path = m_folder + "/Manifest.mbdb";
  QFile file(path);
  if (!file.open(written_file::kNewFile)) written_file::fail(path, file.errorString());
  const auto flush = [&](QByteArray& out) {
    written_file::append(file, out);
    out.resize(0);
  };

  QByteArray out("mbdb\x05\x00", 6);
  out.reserve(kBufferSize + 4096);
  quint32 number = 0;
  for (const Entry& entry : m_entries) {
    const bool isLink = flagsOfMode(entry.mode) == 4;
    appendString(out, entry.domain.toUtf8());
    appendString(out, entry.relativePath.toUtf8());
    isLink ? appendString(out, targetOf(entry.relativePath)) : appendAbsent(out);
    entry.dataHash.isEmpty() ? appendAbsent(out) : appendString(out, entry.dataHash);
    entry.wrappedKey.isEmpty() ? appendAbsent(out) : appendString(out, entry.wrappedKey);

    const quint32 time = timeOf(number);
    appendNumber<quint16>(out, entry.mode);
    appendNumber<quint64>(out, kFirstInode + number);
    appendNumber<quint32>(out, kMobileUser);
    appendNumber<quint32>(out, kMobileUser);
    for (int i = 0; i < 3; ++i) appendNumber<quint32>(out, time);
    appendNumber<quint64>(out, entry.size);
    appendNumber<quint8>(out, quint8(protectionClassOf(entry)));

    const QByteArray id = fileId(entry.domain, entry.relativePath).toLatin1();
    const std::vector<Property> properties = propertiesOf(entry.domain, entry.mode, id, time);
    appendNumber<quint8>(out, quint8(properties.size()));
    for (const Property& property : properties) {
      appendString(out, property.name);
      appendString(out, property.value);
    }
    ++number;
    if (out.size() >= kBufferSize) flush(out);
  }
  flush(out);
  file.close();
  written_file::stamp(path);
}

void BackupBuilder::writeDb(bool wal) const {
  static const QString kInsert = "INSERT OR IGNORE INTO Files VALUES (?, ?, ?, ?, ?)";
  const QString path = m_folder + "/Manifest.db";
  SampleStore store(path, wal);
  store.run(
      "CREATE TABLE Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags INTEGER, "
      "file BLOB)");
  store.run("CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB)");
  store.run("INSERT INTO Properties VALUES (?, ?)", {"salt", QByteArray::fromHex("5b0e9c2f7a61d384")});
  quint32 number = 0;
  const auto recordOf = [&](const Entry& entry) {
    FileRecord record;
    record.mode = entry.mode;
    record.size = entry.size;
    record.wrappedKey = entry.wrappedKey;
    record.nestedKey = number % 2 == 1;  // both forms occur
    record.modified = timeOf(number);
    if (flagsOfMode(entry.mode) == 4) record.target = targetOf(entry.relativePath);
    record.relativePath = entry.relativePath.isNull() ? QString("") : entry.relativePath;
    record.inode = kFirstInode + number;
    record.owner = kMobileUser;
    record.protectionClass = protectionClassOf(entry);
    ++number;
    return archivedRecord(record);
  };
  for (const Entry& entry : m_entries) {
    store.run(kInsert, {fileId(entry.domain, entry.relativePath), entry.domain, entry.relativePath,
                        flagsOfMode(entry.mode), recordOf(entry)});
  }
  // Created after the rows, which is much faster.
  store.run("CREATE INDEX FilesDomainIdx ON Files(domain)");
  store.run("CREATE INDEX FilesRelativePathIdx ON Files(relativePath)");
  store.run("CREATE INDEX FilesFlagsIdx ON Files(flags)");
  store.close();
  written_file::stamp(path);
}

}  // namespace orvandel
