#include "sample/note_document.h"

#include "sample/gzip_writer.h"

namespace orvandel {

namespace {

// The document is a protocol buffer: field 2 is the document, its field 3 the note, with the text in field 2
// and the runs of its characters in field 5. The first field is a version.
constexpr int kDocument = 2, kNote = 3, kText = 2, kRun = 5, kRunLength = 1, kVersion = 1,
              kDocumentVersion = 2;

QByteArray varint(quint64 number) {
  QByteArray out;
  for (; number >= 0x80; number >>= 7) out.append(static_cast<char>((number & 0x7F) | 0x80));
  return out.append(static_cast<char>(number));
}

QByteArray numberField(int field, quint64 value) {
  return varint(quint64(field) << 3) + varint(value);
}

QByteArray bytesField(int field, const QByteArray& value) {
  return varint(quint64(field) << 3 | 2) + varint(quint64(value.size())) + value;
}

}  // namespace

QByteArray noteDocument(const QString& text) {
  const QByteArray run = numberField(kRunLength, quint64(text.size()));  // in UTF-16 units
  const QByteArray note = bytesField(kText, text.toUtf8()) + bytesField(kRun, run);
  const QByteArray document =
      numberField(kVersion, 0) + numberField(kDocumentVersion, 0) + bytesField(kNote, note);
  return gzipped(numberField(kVersion, 0) + bytesField(kDocument, document));
}

}  // namespace orvandel
