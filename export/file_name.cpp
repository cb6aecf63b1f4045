#include "export/file_name.h"

#include <QString>

#include "common/text.h"

namespace {

constexpr int kLongestExtension = 10;  // characters, with the dot; anything longer is part of the name

bool IsAllowed(QChar character) {
  // Control characters, path separators, and what FAT and NTFS refuse.
  return character.category() != QChar::Other_Control && !QString("/\\:*?\"<>|").contains(character);
}

/// The name without its last characters, whole ones, as many as it takes.
QString Shortened(QString qstrName, size_t nLongest) {
  while (ToNarrow(qstrName).size() > nLongest) {
    const bool bPair = qstrName.size() > 1 && qstrName.at(qstrName.size() - 1).isLowSurrogate();
    qstrName.chop(bPair ? 2 : 1);
  }
  return qstrName;
}

}  // namespace

bool CanBeFileName(const std::string& strName) {
  return !strName.empty() && strName != "." && strName != ".." && strName.size() <= kLongestNamePart &&
         strName.find('/') == std::string::npos && strName.find('\0') == std::string::npos;
}

std::string SafeFileName(const std::string& strName) {
  QString qstrName = FromNarrow(strName);
  for (QChar& character : qstrName) {
    if (!IsAllowed(character)) character = '_';
  }
  const int nDot = qstrName.lastIndexOf('.');
  const bool bExtension = nDot > 0 && qstrName.size() - nDot <= kLongestExtension;
  const QString qstrExtension = bExtension ? qstrName.mid(nDot) : QString();
  qstrName = Shortened(qstrName.left(qstrName.size() - qstrExtension.size()),
                       kLongestNamePart - ToNarrow(qstrExtension).size()) +
             qstrExtension;
  // Windows drops blanks and dots at the end of a name.
  while (qstrName.endsWith('.') || qstrName.endsWith(' ')) qstrName.chop(1);
  return qstrName.isEmpty() ? "_" : ToNarrow(qstrName);
}
