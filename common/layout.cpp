#include "common/layout.h"

#include "common/file.h"
#include "common/text.h"

namespace {

/// An identifier is a file name: it may not lead to another folder, and the system's paths end at a zero.
bool IsFileName(const QString& qstrId) {
  return !qstrId.contains('/') && !qstrId.contains(QChar('\0')) && qstrId != "." && qstrId != "..";
}

}  // namespace

QString BackupLayout::PathOf(const std::string& strFileId) const {
  const QString qstrId = FromNarrow(strFileId);
  if (!IsFileName(qstrId)) return QString();
  QString qstrPath;
  qstrPath.reserve(qstrRoot.size() + qstrId.size() + 4);
  qstrPath += qstrRoot;
  qstrPath += '/';
  if (!bEncrypted && bHasManifestDb) {
    DeclareSharded(ToNarrow(qstrRoot));
    qstrPath += QStringView(qstrId).left(2);
    qstrPath += '/';
  }
  qstrPath += qstrId;
  return qstrPath;
}
