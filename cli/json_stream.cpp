#include "cli/json_stream.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "cli/output.h"

namespace orvandel {

QByteArray ToJson(const QJsonValue& value) {
  // QJsonDocument accepts only arrays and objects, so the value is wrapped in an array, whose brackets are
  // removed.
  const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
  return array.mid(1, array.size() - 2);
}

JsonStream::JsonStream() {
  Open('{');
}

JsonStream::~JsonStream() {
  Close('}');
  Print("\n");
}

void JsonStream::Separate() {
  if (!m_bFirst) Print(",");
  m_bFirst = false;
}

void JsonStream::Key(const QString& qstrKey) {
  Separate();
  Print(ToJson(qstrKey) + ':');
}

void JsonStream::Open(char nBracket) {
  Print(QByteArray(1, nBracket));
  m_bFirst = true;
}

void JsonStream::Close(char nBracket) {
  Print(QByteArray(1, nBracket));
  m_bFirst = false;
}

void JsonStream::BeginObject(const QString& qstrKey) {
  Key(qstrKey);
  Open('{');
}

void JsonStream::EndObject() {
  Close('}');
}

void JsonStream::BeginArray(const QString& qstrKey) {
  Key(qstrKey);
  Open('[');
}

void JsonStream::EndArray() {
  Close(']');
}

void JsonStream::BeginElement() {
  Separate();
  Open('{');
}

void JsonStream::EndElement() {
  Close('}');
}

void JsonStream::Member(const QString& qstrKey, const QJsonValue& value) {
  Key(qstrKey);
  Print(ToJson(value));
}

void JsonStream::Element(const QJsonValue& value) {
  Separate();
  Print(ToJson(value));
}

void JsonStream::FormattedElement(const std::string& strJson) {
  Separate();
  Print(QByteArray::fromRawData(strJson.data(), static_cast<int>(strJson.size())));
}

}  // namespace orvandel
