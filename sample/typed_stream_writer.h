#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <map>
#include <vector>

namespace orvandel {

/// Writes a typed stream ("streamtyped", version 1000), the archive format of message bodies.
///
/// The stream refers back to what it has named before by numbers from 0x92 on, in two separate tables: shared
/// strings (type descriptions and class names), and objects (objects, classes and C strings). A caller
/// writes values in the order of the archive; the writer decides what is new and what is a reference.
class TypedStreamWriter {
 public:
  struct Class {
    QByteArray name;
    int version;
  };
  /// A class and its base classes, up to the root.
  using ClassChain = std::vector<Class>;

  TypedStreamWriter();

  /// Announces the types of the values that follow, such as "@" for an object or "iI" for two numbers.
  void type(const QByteArray& description);
  void number(qint64 value);
  /// A counted run of bytes, for the type "+".
  void bytes(const QByteArray& value);
  /// A C string, for the type "*".
  void cString(const QByteArray& value);
  /// Begins a new object, after type("@"). @return its number, for reference().
  int begin(const ClassChain& classes);
  void end();
  /// An object that was written before.
  void reference(int object);

  const QByteArray& stream() const { return m_out; }

 private:
  void sharedString(const QByteArray& text);
  void referTo(int place);

  QByteArray m_out;
  std::map<QByteArray, int> m_strings, m_classes, m_cStrings;
  int m_objects = 0;
};

/// @return the value of message.attributedBody for a text: an attributed string in which each U+FFFC is a
/// part of the message with one of the attachments, and what is between them is a part as well.
/// @param isMutable writes the mutable classes, as devices do for texts that were typed on them.
/// @param attachments GUIDs, for one U+FFFC after the other; those beyond the end have none.
QByteArray attributedBody(const QString& text, bool isMutable, const QStringList& attachments = {});

}  // namespace orvandel
