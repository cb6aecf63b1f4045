#include "backup/manifest.h"

#include <QString>

#include "backup/digest.h"
#include "backup/mbdb_entries.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"

using namespace orvandel;

namespace {

constexpr int kIdentifierDigits = 40;
constexpr uint16_t kKindMask = 0xE000;
constexpr uint16_t kDirectoryKind = 0x4000;

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
  StoreQuery query(Unicode2Ansi(pPath), "select fileID, domain, relativePath from Files");
  while (query.Next()) {
    __MBDB_FILE__ entry;
    entry.strFileId = query.Narrow(0);
    entry.strFileName = query.Narrow(1);
    const std::string strPath = query.Narrow(2);
    if (!strPath.empty()) entry.strFileName.append(1, '-').append(strPath);
    if (!entry.strFileId.empty()) entries.push_back(std::move(entry));
  }
  return kStatusOk;
}
