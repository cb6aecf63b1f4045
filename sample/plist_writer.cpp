#include "sample/plist_writer.h"

#include <plist/plist.h>

#include <stdexcept>

namespace orvandel {

PlistWriter::PlistWriter(Style style) : m_xml(&m_bytes) {
  if (style == Style::Indented) {
    m_xml.setAutoFormatting(true);
    m_xml.setAutoFormattingIndent(-1);  // one tab
  }
  m_xml.writeStartDocument();
  if (style == Style::Indented) {
    m_xml.writeDTD(
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">");
  }
  m_xml.writeStartElement("plist");
  m_xml.writeAttribute("version", "1.0");
  m_xml.writeStartElement("dict");
}

void PlistWriter::boolean(const QString& key, bool value) {
  writeKey(key);
  m_xml.writeEmptyElement(value ? "true" : "false");
}

void PlistWriter::strings(const QString& key, const QStringList& values) {
  beginArray(key);
  for (const QString& value : values) string({}, value);
  endArray();
}

void PlistWriter::beginDict(const QString& key) {
  writeKey(key);
  m_xml.writeStartElement("dict");
}

void PlistWriter::endDict() {
  m_xml.writeEndElement();
}

void PlistWriter::beginArray(const QString& key) {
  writeKey(key);
  m_xml.writeStartElement("array");
}

void PlistWriter::endArray() {
  m_xml.writeEndElement();
}

void PlistWriter::element(const QString& key, const QString& kind, const QString& value) {
  writeKey(key);
  m_xml.writeTextElement(kind, value);
}

QByteArray PlistWriter::finish() {
  m_xml.writeEndDocument();
  return m_bytes;
}

QByteArray PlistWriter::finishBinary() {
  const QByteArray xml = finish();
  plist_t root = nullptr;
  plist_from_xml(xml.constData(), uint32_t(xml.size()), &root);
  char* binary = nullptr;
  uint32_t length = 0;
  if (root) plist_to_bin(root, &binary, &length);
  plist_free(root);
  if (!binary) throw std::runtime_error("libplist can't convert a property list");
  const QByteArray out(binary, int(length));
  plist_to_bin_free(binary);
  return out;
}

void PlistWriter::writeKey(const QString& key) {
  if (!key.isNull()) m_xml.writeTextElement("key", key);
}

}  // namespace orvandel
