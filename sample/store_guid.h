#pragma once
#include <QString>
#include <QUuid>

namespace orvandel {

/// @return a GUID as written by devices, upper case with dashes, derived from the name.
inline QString storeGuid(const QString& name) {
  static const QUuid kSpace("{7d3f7d0e-43f1-4c36-8f0b-2b7f0f4f1a11}");
  return QUuid::createUuidV5(kSpace, name).toString(QUuid::WithoutBraces).toUpper();
}

}  // namespace orvandel
