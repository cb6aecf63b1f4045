#pragma once
#include <QJsonValue>
#include <QString>

/// Prints one large JSON object on standard output piece by piece, so that a million records needn't stand in
/// memory as JSON at once. Each piece is made by QJsonDocument; this class only sets the brackets and commas
/// around them.
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
  void BeginElement();  ///< an object as an element of the array
  void EndElement();
  /// A whole value, under a key or as an element of the array.
  void Member(const QString& qstrKey, const QJsonValue& value);
  void Element(const QJsonValue& value);

 private:
  void Separate();
  void Key(const QString& qstrKey);
  void Open(char nBracket);
  void Close(char nBracket);

  bool m_bFirst = true;  // nothing stands yet in the innermost brackets
};

/// A value as compact JSON.
QByteArray ToJson(const QJsonValue& value);
