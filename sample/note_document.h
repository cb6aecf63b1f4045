#pragma once
#include <QByteArray>
#include <QString>

namespace orvandel {

/// @return the value of ZICNOTEDATA.ZDATA for a note: the compressed document, whose first line is the title.
QByteArray noteDocument(const QString& text);

}  // namespace orvandel
