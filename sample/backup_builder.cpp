#include "sample/backup_builder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

#include "sample/written_file.h"

namespace orvandel {

BackupBuilder::BackupBuilder(const QString& folder, Layout layout) : m_folder(folder), m_layout(layout) {
  if (!QDir().mkpath(folder)) written_file::fail(folder, "the folder can't be created");
}

BackupBuilder::~BackupBuilder() = default;

void BackupBuilder::encrypt(const Encryption& encryption) {
  const bool isOld = encryption.age == Encryption::Age::BeforeIos10;
  if (isOld != (m_layout == Layout::Mbdb))
    throw std::invalid_argument("the encryption's age doesn't go with the layout");
  m_keys = std::make_unique<BackupKeys>(encryption);
}

void BackupBuilder::leavePlain(const QString& domain, const QString& relativePath) {
  m_plainFiles.insert(fileId(domain, relativePath));
}

void BackupBuilder::writeDeviceLists(const Encryption& keybag) {
  m_listedKeys = std::make_unique<BackupKeys>(keybag);
}

QString BackupBuilder::addFile(const QString& domain, const QString& relativePath,
                               const QByteArray& content) {
  const QString path = makePlace(domain, relativePath);
  written_file::write(path, content);
  m_entries.push_back({domain,
                       relativePath,
                       kFile,
                       quint64(content.size()),
                       QCryptographicHash::hash(content, QCryptographicHash::Sha1),
                       false,
                       {}});
  return path;
}

void BackupBuilder::addEntry(const QString& domain, const QString& relativePath, quint16 mode) {
  m_entries.push_back({domain, relativePath, mode, 0, {}, false, {}});
}

QString BackupBuilder::reserveFile(const QString& domain, const QString& relativePath) {
  const QString path = makePlace(domain, relativePath);
  m_entries.push_back({domain, relativePath, kFile, 0, {}, true, {}});
  return path;
}

void BackupBuilder::finish(bool wal) {
  settleReserved();
  if (m_keys) encryptFiles();
  if (m_layout == Layout::Mbdb) {
    writeMbdb();
  } else {
    writeDb(wal);
  }
  if (m_keys && m_keys->age() == Encryption::Age::From102)
    m_keys->encryptFile(m_folder + "/Manifest.db", BackupKeys::kManifestName, false);
  if (m_keys || m_listedKeys) writeManifestPlist();
  if (m_listedKeys) writeStatusPlist();
}

QString BackupBuilder::fileId(const QString& domain, const QString& relativePath) {
  const QByteArray name = (domain + '-' + relativePath).toUtf8();
  return QString::fromLatin1(QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex());
}

QString BackupBuilder::filePath(const QString& fileId) const {
  if (m_layout == Layout::Mbdb) return m_folder + '/' + fileId;
  return m_folder + '/' + fileId.left(2) + '/' + fileId;
}

/// Creates the folder of an entry's file. @return full path of the file.
QString BackupBuilder::makePlace(const QString& domain, const QString& relativePath) {
  const QString path = filePath(fileId(domain, relativePath));
  const QString parent = path.left(path.lastIndexOf('/'));
  if (!m_madeFolders.contains(parent)) {
    if (!QDir().mkpath(parent)) written_file::fail(parent, "the folder can't be created");
    m_madeFolders.insert(parent);
  }
  return path;
}

/// Sets size and hash of the files written by the caller.
void BackupBuilder::settleReserved() {
  for (Entry& entry : m_entries) {
    if (!entry.reserved) continue;
    const QString path = filePath(fileId(entry.domain, entry.relativePath));
    if (!QFileInfo::exists(path)) continue;
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
      written_file::fail(path, file.errorString());
    }
    entry.size = quint64(file.size());
    entry.dataHash = hash.result();
    file.close();
    written_file::stamp(path);
  }
}

/// Assigns a key to every file and encrypts the existing ones. Two entries of one file share its key.
void BackupBuilder::encryptFiles() {
  QSet<QString> done;
  for (Entry& entry : m_entries) {
    const QString id = fileId(entry.domain, entry.relativePath);
    if (entry.mode != kFile || m_plainFiles.contains(id)) continue;
    entry.wrappedKey = m_keys->wrappedKey(id.toLatin1());
    if (done.contains(id) || !QFileInfo::exists(filePath(id))) continue;
    m_keys->encryptFile(filePath(id), id.toLatin1(), true);
    done.insert(id);
  }
}

}  // namespace orvandel
