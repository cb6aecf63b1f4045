#include "export/file_name.h"

#include <QString>

#include "common/text.h"

namespace orvandel {

namespace {

constexpr int kLongestExtension = 10;  // in characters, with the dot; anything longer is part of the name

bool IsAllowed(QChar character) {
  // Control characters, path separators, and characters invalid on FAT and NTFS.
  return character.category() != QChar::Other_Control && !QString("/\\:*?\"<>|").contains(character);
}

/// Removes whole characters from the end until the name fits.
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
  // Windows removes trailing blanks and dots.
  while (qstrName.endsWith('.') || qstrName.endsWith(' ')) qstrName.chop(1);
  return qstrName.isEmpty() ? "_" : ToNarrow(qstrName);
}

}  // namespace orvandel
