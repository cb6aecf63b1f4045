#pragma once
#include <QByteArray>

namespace orvandel {

/// @return content as a gzip file with one member, without name and time stamp.
QByteArray gzipped(const QByteArray& content);

}  // namespace orvandel
