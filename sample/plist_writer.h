#pragma once
#include <QByteArray>
#include <QString>
#include <QXmlStreamWriter>

namespace orvandel {

/// Writes one property list in XML: a dictionary, which may be nested. Keys are in the order of the calls.
class PlistWriter {
 public:
  enum class Style {
    Indented,  ///< with document type, one line per element
    Compact    ///< one line, without document type
  };

  explicit PlistWriter(Style style = Style::Indented);

  void string(const QString& key, const QString& value) { element(key, "string", value); }
  /// @param value written as given; not checked.
  void date(const QString& key, const QString& value) { element(key, "date", value); }
  void integer(const QString& key, qint64 value) { element(key, "integer", QString::number(value)); }
  void data(const QString& key, const QByteArray& value) {
    element(key, "data", QString::fromLatin1(value.toBase64()));
  }
  void boolean(const QString& key, bool value);
  void strings(const QString& key, const QStringList& values);
  void beginDict(const QString& key);
  void endDict();

  // For arrays of anything but strings: elements in between have a null key.
  void beginArray(const QString& key);
  void endArray();

  /// An element of any kind. @param key null in an array.
  void element(const QString& key, const QString& kind, const QString& value);

  /// Ends the list. Nothing may be added afterwards. @return the file in UTF-8.
  QByteArray finish();
  /// Same as finish(). @return the file in binary form. Throws std::runtime_error when libplist can't convert
  /// it, such as for a date in another format than ISO 8601.
  QByteArray finishBinary();

 private:
  void writeKey(const QString& key);

  QByteArray m_bytes;
  QXmlStreamWriter m_xml;
};

}  // namespace orvandel
