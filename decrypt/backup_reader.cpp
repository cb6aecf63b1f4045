#include "decrypt/backup_reader.h"

#include <langinfo.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "backup/mbdb_entries.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"
#include "decrypt/archived_file.h"
#include "decrypt/password.h"
#include "decrypt/property_list.h"
#include "decrypt/protocol.h"
#include "decrypt/written_content.h"

namespace orvandel {

namespace {

constexpr uint64_t kMostOfManifestList = 256 << 20;  // bytes of "Manifest.plist"; devices write some 100 KB

/// Values of Files.flags.
enum Flags { kFileFlag = 1, kFolderFlag = 2, kLinkFlag = 4 };

constexpr char kKeys[] = "select fileID, flags, file from Files";
constexpr char kRecords[] = "select fileID, flags, file, domain, relativePath from Files";
// The record only where the flags tell no kind.
constexpr char kNames[] =
    "select fileID, flags, case when flags in (1, 2, 4) then null else file end, domain, relativePath "
    "from Files";

/// Opens a file of the backup. Throws std::runtime_error on failure.
OpenedFile Opened(const std::string& strPath) {
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) throw std::runtime_error(strPath + ": can't be opened: " + file.Error().strReason);
  return std::move(*file);
}

Bytes ReadWhole(const std::string& strPath) {
  const OpenedFile file = Opened(strPath);
  const auto nSize = static_cast<uint64_t>(file.nSize);
  if (nSize > kMostOfManifestList)
    throw std::runtime_error(strPath + ": is too large: " + std::to_string(nSize) + " bytes");
  Bytes bytes(static_cast<size_t>(nSize));
  uint32_t nRead = 0;
  errno = 0;
  if (ReadData(file.descriptor.Get(), bytes.data(), static_cast<uint32_t>(nSize), nRead) != kStatusOk)
    throw std::runtime_error(strPath + ": can't be read: " + strerror(errno != 0 ? errno : EIO));
  return bytes;
}

std::string ManifestListOf(const std::string& strBackup) {
  return strBackup + "/Manifest.plist";
}

ManifestEntry::Kind KindOfFlags(int nFlags) {
  switch (nFlags) {
    case kFileFlag:
      return ManifestEntry::Kind::File;
    case kFolderFlag:
      return ManifestEntry::Kind::Folder;
    case kLinkFlag:
      return ManifestEntry::Kind::Link;
    default:
      return ManifestEntry::Kind::Unknown;
  }
}

void AddRecord(StoreQuery::Bytes bytes, ManifestEntry& entry) {
  ArchivedFile record = ReadArchivedFile(bytes.pData, bytes.nSize);
  if (entry.kind == ManifestEntry::Kind::Unknown) entry.kind = KindOfMode(record.nMode);
  entry.wrappedKey = std::move(record.wrappedKey);
  entry.nSize = record.nSize;
  entry.nModified = record.nModified;
  entry.nMode = record.nMode;
  entry.strTarget = std::move(record.strTarget);
  entry.bDamaged = !record.bWhole;
}

}  // namespace

bool IsIdentifier(const std::string& strId) {
  IdentifierBytes id;
  return ParseIdentifier(strId, id);
}

bool ParseIdentifier(std::string_view strId, IdentifierBytes& id) {
  const auto valueOf = [](char ch) {
    return ch >= '0' && ch <= '9' ? ch - '0' : ch >= 'a' && ch <= 'f' ? ch - 'a' + 10 : -1;
  };
  if (strId.size() != 2 * id.size()) return false;
  for (size_t i = 0; i < id.size(); ++i) {
    const int nHigh = valueOf(strId[2 * i]), nLow = valueOf(strId[2 * i + 1]);
    if (nHigh < 0 || nLow < 0) return false;
    id[i] = static_cast<unsigned char>(nHigh << 4 | nLow);
  }
  return true;
}

ManifestEntry::Kind KindOfMode(uint32_t nMode) {
  switch (nMode & 0xF000) {
    case 0x8000:
      return ManifestEntry::Kind::File;
    case 0x4000:
      return ManifestEntry::Kind::Folder;
    case 0xA000:
      return ManifestEntry::Kind::Link;
    default:
      return ManifestEntry::Kind::Unknown;
  }
}

std::optional<bool> EncryptionMark(const std::string& strBackup) {
  try {
    const Bytes bytes = ReadWhole(ManifestListOf(strBackup));
    const PropertyList list(bytes.data(), bytes.size());
    if (!list.Root()) return std::nullopt;
    return BooleanOf(Member(list.Root(), "IsEncrypted"));
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

BackupReader::BackupReader(const std::string& strBackup)
    : m_strBackup(strBackup), m_bHasManifestDb(EntryExists(strBackup + "/Manifest.db")) {
  if (m_bHasManifestDb) DeclareSharded(strBackup);
  const std::string strPath = ManifestListOf(strBackup);
  try {
    const Bytes bytes = ReadWhole(strPath);
    const PropertyList list(bytes.data(), bytes.size());
    if (!list.Root()) throw std::runtime_error(strPath + ": isn't a property list");
    m_bEncrypted = BooleanOf(Member(list.Root(), "IsEncrypted"));
    if (!m_bEncrypted) throw std::runtime_error(strPath + ": the backup isn't encrypted");
    m_keybagData = DataOf(Member(list.Root(), "BackupKeyBag"));
    if (m_keybagData.empty()) throw std::runtime_error(strPath + ": contains no keybag");
    m_manifestKey = DataOf(Member(list.Root(), "ManifestKey"));
  } catch (const std::runtime_error& error) {
    m_strRefusal = error.what();
  }
}

void BackupReader::RequireEncrypted() const {
  if (!m_strRefusal.empty()) throw std::runtime_error(m_strRefusal);
}

bool BackupReader::Unlock(const Secret& password) {
  RequireEncrypted();
  try {
    Keybag keybag(m_keybagData);
    for (const Secret& form : PasswordForms(password, nl_langinfo(CODESET))) {
      if (!keybag.Unlock(form)) continue;
      m_keybag = std::move(keybag);
      return true;
    }
    return false;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(ManifestListOf(m_strBackup) + ": " + error.what());
  }
}

std::string BackupReader::OpenManifest(const std::string& strFolder, const std::string& strOtherFolder) {
  m_strManifest = m_strBackup + (m_bHasManifestDb ? "/Manifest.db" : "/Manifest.mbdb");
  if (!EntryExists(m_strManifest)) throw std::runtime_error(m_strManifest + ": is missing");
  if (!m_bHasManifestDb || !m_bEncrypted) return {};
  std::string strProblem;
  try {
    const Secret key = m_manifestKey.empty() ? Secret() : m_keybag->FileKey(m_manifestKey);
    // The manifest isn't padded: its size is the database's.
    const auto write = [&](const std::string& strTarget) {
      Result<OpenedFile> file = OpenBackupFile(m_strManifest);
      const uint64_t nSize = file ? static_cast<uint64_t>(file->nSize) : 0;
      ContentStream content(std::move(file), key, nSize);
      WriteContent(content, strTarget);
    };
    std::string strDecrypted = strFolder + "/" + kDecryptedManifestName;
    try {
      write(strDecrypted);
    } catch (const std::runtime_error& error) {
      if (strOtherFolder == strFolder) throw;
      strProblem = m_strManifest + ": " + error.what();
      strDecrypted = strOtherFolder + "/" + kDecryptedManifestName;
      write(strDecrypted);
    }
    m_strManifest = strDecrypted;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(m_strManifest + ": " + error.what());
  }
  return strProblem;
}

uint64_t BackupReader::CountFiles() const {
  if (!m_bHasManifestDb) {
    uint64_t nCount = 0;
    VisitBinary([&](ManifestEntry&& entry) {
      nCount += entry.kind == ManifestEntry::Kind::File ? 1 : 0;
      return true;
    });
    return nCount;
  }
  StoreQuery query(m_strManifest, "select count(*) from Files where flags is not 2 and flags is not 4",
                   StoreQuery::Failure::Expected);
  const bool bRow = query.Next();
  if (query.Error()) throw std::runtime_error(m_strManifest + ": " + query.Error().strReason);
  return bRow ? static_cast<uint64_t>(query.Text(0).toLongLong()) : 0;
}

void BackupReader::Visit(Detail detail, const Visitor& visit) const {
  if (m_bHasManifestDb)
    VisitDatabase(detail, visit);
  else
    VisitBinary(visit);
}

void BackupReader::VisitDatabase(Detail detail, const Visitor& visit) const {
  const char* pszStatement = detail == Detail::Names ? kNames : detail == Detail::Keys ? kKeys : kRecords;
  StoreQuery query(m_strManifest, pszStatement, StoreQuery::Failure::Expected);
  while (query.Next()) {
    ManifestEntry entry;
    entry.strId = query.Narrow(0);
    entry.kind = KindOfFlags(query.Integer(1));
    if (detail != Detail::Names || entry.kind == ManifestEntry::Kind::Unknown)
      AddRecord(query.Blob(2), entry);
    if (detail != Detail::Keys) {
      entry.strDomain = query.Narrow(3);
      entry.strPath = query.Narrow(4);
    }
    if (!visit(std::move(entry))) return;
  }
  if (query.Error()) throw std::runtime_error(m_strManifest + ": " + query.Error().strReason);
  if (query.IsCutShort())
    throw std::runtime_error(m_strManifest +
                             ": cut short: its last page isn't whole (other entries were read)");
}

void BackupReader::VisitBinary(const Visitor& visit) const {
  bool bContinue = true;
  const int nStatus =
      VisitBinaryManifest(Ansi2Unicode(m_strManifest.c_str()).c_str(), [&](const fileinfo& info) {
        if (!bContinue) return;
        ManifestEntry entry;
        entry.strId = Sha1Hex(info.strDomain + "-" + info.strPath);
        entry.strDomain = info.strDomain;
        entry.strPath = info.strPath;
        entry.kind = KindOfMode(info.nMode);
        entry.wrappedKey.assign(info.strEncryptionKey.begin(), info.strEncryptionKey.end());
        entry.nSize = static_cast<uint64_t>(info.nFileSizeHigh) << 32 | info.nFileSize;
        entry.nModified = info.nModificationTime;
        entry.nMode = info.nMode;
        entry.strTarget = info.strLinkTarget;
        entry.strDataHash = info.strDataHash;
        bContinue = visit(std::move(entry));
      });
  if (nStatus != 0) throw std::runtime_error(m_strManifest + ": isn't a manifest");
}

bool BackupReader::IsFile(const ManifestEntry& entry) const {
  if (!IsIdentifier(entry.strId)) return false;
  if (entry.kind != ManifestEntry::Kind::Unknown) return entry.kind == ManifestEntry::Kind::File;
  return EntryExists(PathOf(entry.strId));
}

std::string BackupReader::PathOf(const std::string& strId) const {
  return m_strBackup + "/" + (m_bHasManifestDb ? strId.substr(0, 2) + "/" : "") + strId;
}

ContentStream BackupReader::Open(const ManifestEntry& entry) const {
  return Open(entry, OpenBackupFile(PathOf(entry.strId)));
}

ContentStream BackupReader::Open(const ManifestEntry& entry, Result<OpenedFile> file) const {
  // A missing file is missing whatever its record says.
  const bool bEncrypted = m_bEncrypted && file;
  if (bEncrypted && entry.bDamaged)
    throw ContentError(Problem::Step::Read, EIO, "its record in the manifest is damaged");
  Secret key;
  try {
    if (bEncrypted && !entry.wrappedKey.empty()) key = m_keybag->FileKey(entry.wrappedKey);
  } catch (const std::runtime_error& error) {
    throw ContentError(Problem::Step::Read, EIO, error.what());
  }
  return ContentStream(std::move(file), key, entry.nSize);
}

}  // namespace orvandel
