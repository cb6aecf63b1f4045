#include "decrypt/backup_files.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "backup/mbdb_entries.h"
#include "common/descriptor.h"
#include "common/file.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"
#include "decrypt/property_list.h"
#include "decrypt/protocol.h"

namespace orvandel {

namespace {

constexpr int kFileFlag = 1;  // value of Files.flags for a regular file
constexpr uint16_t kKindMask = 0xF000;
constexpr uint16_t kRegularFile = 0x8000;
constexpr uint64_t kMostOfManifestList = 256 << 20;  // bytes of "Manifest.plist"; devices write some 100 KB

/// Opens a file of the backup. Throws std::runtime_error on failure.
Descriptor Open(const std::string& strPath) {
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) throw std::runtime_error(strPath + ": can't be opened: " + file.Error().strReason);
  return std::move(file->descriptor);
}

uint64_t SizeOf(const Descriptor& file, const std::string& strPath) {
  struct stat attributes;
  if (fstat(file.Get(), &attributes) != 0)
    throw std::runtime_error(strPath + ": can't be read: " + strerror(errno));
  return static_cast<uint64_t>(attributes.st_size);
}

Bytes ReadWhole(const std::string& strPath) {
  const Descriptor file = Open(strPath);
  const uint64_t nSize = SizeOf(file, strPath);
  if (nSize > kMostOfManifestList)
    throw std::runtime_error(strPath + ": is too large: " + std::to_string(nSize) + " bytes");
  Bytes bytes(static_cast<size_t>(nSize));
  uint32_t nRead = 0;
  if (ReadData(file.Get(), bytes.data(), static_cast<uint32_t>(nSize), nRead) != kStatusOk)
    throw std::runtime_error(strPath + ": can't be read: " + strerror(errno != 0 ? errno : EIO));
  return bytes;
}

/// Validates an identifier of the manifest, since it is used as a file name in the backup and in the output.
bool IsIdentifier(const std::string& strId) {
  return strId.size() == 40 && strId.find_first_not_of("0123456789abcdef") == std::string::npos;
}

}  // namespace

bool IsMarkedEncrypted(const std::string& strBackup) {
  try {
    const Bytes bytes = ReadWhole(strBackup + "/Manifest.plist");
    return BooleanOf(Member(PropertyList(bytes.data(), bytes.size()).Root(), "IsEncrypted"));
  } catch (const std::runtime_error&) {
    return false;
  }
}

BackupFiles::BackupFiles(const std::string& strBackup)
    : m_strBackup(strBackup), m_bHasManifestDb(EntryExists(strBackup + "/Manifest.db")) {
  const std::string strPath = strBackup + "/Manifest.plist";
  const Bytes bytes = ReadWhole(strPath);
  const PropertyList manifest(bytes.data(), bytes.size());
  if (!manifest.Root()) throw std::runtime_error(strPath + ": isn't a property list");
  if (!BooleanOf(Member(manifest.Root(), "IsEncrypted")))
    throw std::runtime_error(strPath + ": the backup isn't encrypted");
  m_keybag = DataOf(Member(manifest.Root(), "BackupKeyBag"));
  if (m_keybag.empty()) throw std::runtime_error(strPath + ": contains no keybag");
  m_manifestKey = DataOf(Member(manifest.Root(), "ManifestKey"));
  if (m_bHasManifestDb) DeclareSharded(strBackup);
}

std::string BackupFiles::OpenManifest(const Keybag& keybag, const std::string& strFolder,
                                      const std::string& strOtherFolder) {
  m_strManifest = m_strBackup + (m_bHasManifestDb ? "/Manifest.db" : "/Manifest.mbdb");
  if (!EntryExists(m_strManifest)) throw std::runtime_error(m_strManifest + ": is missing");
  if (!m_bHasManifestDb) return {};
  std::string strProblem;
  try {
    // The manifest isn't padded: its size is the database's.
    const uint64_t nSize = SizeOf(Open(m_strManifest), m_strManifest);
    const Secret key = m_manifestKey.empty() ? Secret() : keybag.FileKey(m_manifestKey);
    std::string strDecrypted = strFolder + "/" + kDecryptedManifestName;
    try {
      WriteDecrypted(m_strManifest, strDecrypted, key, nSize);
    } catch (const std::runtime_error& error) {
      if (strOtherFolder == strFolder) throw;
      strProblem = m_strManifest + ": " + error.what();
      strDecrypted = strOtherFolder + "/" + kDecryptedManifestName;
      WriteDecrypted(m_strManifest, strDecrypted, key, nSize);
    }
    m_strManifest = strDecrypted;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(m_strManifest + ": " + error.what());
  }
  return strProblem;
}

uint64_t BackupFiles::Count() const {
  if (!m_bHasManifestDb) {
    uint64_t nCount = 0;
    VisitBinary([&](FileJob&&) { ++nCount; });
    return nCount;
  }
  StoreQuery query(m_strManifest, "select count(*) from Files where flags = 1",
                   StoreQuery::Failure::Expected);
  const bool bRow = query.Next();
  if (query.Error()) throw std::runtime_error(m_strManifest + ": " + query.Error().strReason);
  return bRow ? static_cast<uint64_t>(query.Text(0).toLongLong()) : 0;
}

void BackupFiles::Visit(const std::function<void(FileJob&& job)>& visit) const {
  if (m_bHasManifestDb)
    VisitDatabase(visit);
  else
    VisitBinary(visit);
}

void BackupFiles::VisitDatabase(const std::function<void(FileJob&& job)>& visit) const {
  StoreQuery query(m_strManifest, "select fileID, flags, file from Files", StoreQuery::Failure::Expected);
  while (query.Next()) {
    FileJob job;
    job.strId = query.Narrow(0);
    if (query.Integer(1) != kFileFlag || !IsIdentifier(job.strId)) continue;
    job.strSource = m_strBackup + "/" + job.strId.substr(0, 2) + "/" + job.strId;
    const StoreQuery::Bytes bytes = query.Blob(2);
    ArchivedFile record = ReadArchivedFile(bytes.pData, bytes.nSize);
    job.wrappedKey = std::move(record.wrappedKey);
    job.nSize = record.nSize;
    job.bDamaged = !record.bWhole;
    visit(std::move(job));
  }
  if (query.Error()) throw std::runtime_error(m_strManifest + ": " + query.Error().strReason);
}

void BackupFiles::VisitBinary(const std::function<void(FileJob&& job)>& visit) const {
  const int nStatus =
      VisitBinaryManifest(Ansi2Unicode(m_strManifest.c_str()).c_str(), [&](const fileinfo& info) {
        if ((info.nMode & kKindMask) != kRegularFile) return;
        FileJob job;
        job.strId = Sha1Hex(info.strDomain + "-" + info.strPath);  // the file's name in the backup
        job.strSource = m_strBackup + "/" + job.strId;
        job.wrappedKey.assign(info.strEncryptionKey.begin(), info.strEncryptionKey.end());
        job.nSize = static_cast<uint64_t>(info.nFileSizeHigh) << 32 | info.nFileSize;
        visit(std::move(job));
      });
  if (nStatus != 0) throw std::runtime_error(m_strManifest + ": isn't a manifest");
}

}  // namespace orvandel
