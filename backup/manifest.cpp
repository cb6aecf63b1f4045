#include "backup/manifest.h"

#include <QString>

#include "backup/digest.h"
#include "backup/mbdb_entries.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"

namespace {

constexpr int kIdentifierDigits = 40;
constexpr uint16_t kKindMask = 0xE000;
constexpr uint16_t kDirectoryKind = 0x4000;

// The connection to "Manifest.db". One manifest is read at a time.
const QString* const pQstrConnName = new QString("mbdb_connection");
const QString* const pQstrConnType = new QString("QSQLITE");
QString* const pQstrDBPath = new QString;  // of the latest call

bool IsListed(const fileinfo& info) {
  if (info.strDomain.empty() || info.strPath.empty()) return false;
  return (info.nMode & kKindMask) != kDirectoryKind;
}

__MBDB_FILE__ MakeEntry(const fileinfo& info) {
  __MBDB_FILE__ entry;
  entry.strFileName.reserve(info.strDomain.size() + 1 + info.strPath.size());
  entry.strFileName.append(info.strDomain).append(1, '-').append(info.strPath);
  char szId[kIdentifierDigits];
  SHA1(reinterpret_cast<const unsigned char*>(entry.strFileName.c_str()), szId, kIdentifierDigits);
  entry.strFileId.assign(szId, kIdentifierDigits);
  return entry;
}

}  // namespace

int process_mbdb_file(const char16_t* pPath, Catalogue& entries) {
  return VisitBinaryManifest(pPath, [&](const fileinfo& info) {
    if (IsListed(info)) entries.push_back(MakeEntry(info));
  });
}

int process_db_file(const char16_t* pPath, Catalogue& entries) {
  entries.clear();
  *pQstrDBPath = FromNarrow(Unicode2Ansi(pPath));
  StoreQuery query(*pQstrConnName, *pQstrConnType, ToNarrow(*pQstrDBPath),
                   "select fileID, domain, relativePath from Files");
  while (query.Next()) {
    __MBDB_FILE__ entry;
    entry.strFileId = query.Narrow(0);
    QString qstrName = query.Text(1);
    const QString qstrPath = query.Text(2);
    if (!qstrPath.isEmpty()) qstrName += '-' + qstrPath;
    entry.strFileName = ToNarrow(qstrName);
    if (!entry.strFileId.empty()) entries.push_back(std::move(entry));
  }
  return kStatusOk;
}
