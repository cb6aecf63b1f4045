#include "backup/layout.h"

#include "common/text.h"

QString BackupLayout::PathOf(const std::string& strFileId) const {
  const QString qstrId = FromNarrow(strFileId);
  if (bEncrypted || !bHasManifestDb) return qstrRoot + '/' + qstrId;
  return qstrRoot + '/' + qstrId.left(2) + '/' + qstrId;
}
