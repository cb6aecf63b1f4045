#include "common/layout.h"

#include <algorithm>

#include "common/file.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// An identifier must not lead to another folder, not even with its first two characters, and paths end at
/// the first NUL.
bool IsFileName(const QString& qstrId) {
  return !qstrId.contains('/') && !qstrId.contains(QChar('\0')) && qstrId != "." && !qstrId.startsWith("..");
}

bool IsPlainByte(char ch) {
  return ch > 0 && ch != '/';
}

/// True for an ASCII identifier that is a valid file name.
bool IsPlainFileName(const std::string& strId) {
  return !strId.empty() && strId[0] != '.' && std::all_of(strId.begin(), strId.end(), IsPlainByte);
}

}  // namespace

QString BackupLayout::PathOf(const std::string& strFileId) const {
  const QString qstrId = FromNarrow(strFileId);
  if (!IsFileName(qstrId)) return QString();
  QString qstrPath;
  qstrPath.reserve(qstrRoot.size() + qstrId.size() + 4);
  qstrPath += qstrRoot;
  qstrPath += '/';
  if (IsSharded()) {
    DeclareSharded(ToNarrow(qstrRoot));
    qstrPath += QStringView(qstrId).left(2);
    qstrPath += '/';
  }
  qstrPath += qstrId;
  return qstrPath;
}

FileLocator::FileLocator(const BackupLayout& layout) : m_layout(layout) {
  const auto isPlain = [](QChar ch) { return ch.unicode() > 0 && ch.unicode() < 0x80; };
  const QString& qstrRoot = layout.qstrRoot;
  if (!std::all_of(qstrRoot.begin(), qstrRoot.end(), isPlain)) return;
  m_strPrefix = ToNarrow(qstrRoot) + '/';
  if (layout.IsSharded()) DeclareSharded(ToNarrow(qstrRoot));
}

bool FileLocator::Locate(const std::string& strFileId, std::string& strPath) const {
  if (m_strPrefix.empty() || !IsPlainFileName(strFileId)) {
    strPath = ToNarrow(m_layout.PathOf(strFileId));
    return false;
  }
  strPath = m_strPrefix;
  if (m_layout.IsSharded()) strPath.append(strFileId, 0, 2).append(1, '/');
  strPath += strFileId;
  return true;
}

}  // namespace orvandel
