#include "backup/layout.h"

#include "common/text.h"

QString BackupLayout::PathOf(const std::string& strFileId) const {
  const QString qstrId = FromNarrow(strFileId);
  if (qstrId.contains('/')) return QString();  // an identifier is a name: it may not lead out of the backup
  QString qstrPath;
  qstrPath.reserve(qstrRoot.size() + qstrId.size() + 4);
  qstrPath += qstrRoot;
  qstrPath += '/';
  if (!bEncrypted && bHasManifestDb) {
    qstrPath += qstrId.leftRef(2);
    qstrPath += '/';
  }
  qstrPath += qstrId;
  return qstrPath;
}
