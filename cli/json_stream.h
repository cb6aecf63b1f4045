#pragma once
#include <QJsonValue>
#include <QString>
#include <string>

namespace orvandel {

/// Prints one large JSON object on standard output piece by piece, so that a million records needn't be in
/// memory as JSON at once. The pieces are formatted by QJsonDocument; this class adds brackets and commas.
class JsonStream {
 public:
  JsonStream();   ///< opens the outermost object
  ~JsonStream();  ///< closes it
  JsonStream(const JsonStream&) = delete;
  JsonStream& operator=(const JsonStream&) = delete;

  void BeginObject(const QString& qstrKey);
  void EndObject();
  void BeginArray(const QString& qstrKey);
  void EndArray();
  void BeginElement();  ///< begins an object that is an element of the array
  void EndElement();
  /// Prints a complete value, with a key or as an element of the array.
  void Member(const QString& qstrKey, const QJsonValue& value);
  void Element(const QJsonValue& value);
  /// Prints an element of the array that is formatted already.
  void FormattedElement(const std::string& strJson);

 private:
  void Separate();
  void Key(const QString& qstrKey);
  void Open(char nBracket);
  void Close(char nBracket);

  bool m_bFirst = true;  // nothing was printed yet inside the innermost brackets
};

/// Formats a value as compact JSON.
QByteArray ToJson(const QJsonValue& value);

}  // namespace orvandel
