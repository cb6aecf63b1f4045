#pragma once
#include <QByteArray>
#include <QString>

namespace orvandel {

/// What a device stores about a file in the column `file` of "Manifest.db".
struct FileRecord {
  quint16 mode = 0;
  quint64 size = 0;
  QByteArray wrappedKey;   ///< class and wrapped key, 44 bytes; empty for an unencrypted file
  bool nestedKey = false;  ///< NS.data is a reference to the key's bytes, instead of the bytes
  qint64 modified = -1;    ///< seconds since 1970; -1 omits all three times
  QByteArray target;       ///< of a link, UTF-8; empty for none
  QString relativePath;    ///< null omits it
  quint64 inode = 0;
  quint32 owner = 501;  ///< user and group
  quint32 protectionClass = 0;
};

/// @return the record as a binary property list of the keyed archiver. The objects are "$null", the file, its
/// class, the key's object and that one's class, then what the file refers to. Throws std::runtime_error when
/// libplist fails.
QByteArray archivedRecord(const FileRecord& record);

}  // namespace orvandel
