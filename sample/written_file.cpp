#include "sample/written_file.h"

#include <QDateTime>
#include <stdexcept>

namespace orvandel {

namespace {

void stampOpen(QFile& file) {
  static const QDateTime kWritten(QDate(2016, 12, 30), QTime(18, 4, 11), Qt::UTC);
  if (!file.setFileTime(kWritten, QFileDevice::FileModificationTime)) {
    written_file::fail(file.fileName(), file.errorString());
  }
}

}  // namespace

namespace written_file {

void write(const QString& path, const QByteArray& content) {
  QFile file(path);
  if (!file.open(kNewFile)) fail(path, file.errorString());
  append(file, content);
  stampOpen(file);
}

void append(QFile& file, const QByteArray& bytes) {
  // A full disk first causes a short write; only the next write reports the error.
  for (qint64 done = 0; done < bytes.size();) {
    const qint64 taken = file.write(bytes.constData() + done, bytes.size() - done);
    if (taken <= 0) fail(file.fileName(), file.errorString());
    done += taken;
  }
}

void stamp(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) fail(path, file.errorString());
  stampOpen(file);
}

void fail(const QString& path, const QString& reason) {
  throw std::runtime_error((path + ": " + reason).toStdString());
}

}  // namespace written_file

}  // namespace orvandel
