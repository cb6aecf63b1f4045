#include "cli/index_text.h"

#include <QByteArrayList>
#include <QUrl>

#include "cli/json_stream.h"
#include "export/replace.h"

namespace orvandel {

std::string Html(const QString& qstrText) {
  return qstrText.toHtmlEscaped().toStdString();
}

std::string RelativeLink(const QString& qstrPath) {
  QByteArrayList segments;
  for (const QString& qstrSegment : qstrPath.split('/', Qt::SkipEmptyParts))
    segments << QUrl::toPercentEncoding(qstrSegment);
  return "./" + segments.join('/').toStdString();
}

std::string ScriptString(const QString& qstrText) {
  static constexpr const char* kEscapes[][2] = {
      {"<", "\\u003c"}, {">", "\\u003e"}, {"&", "\\u0026"}, {"\u2028", "\\u2028"}, {"\u2029", "\\u2029"}};
  std::string strJson = ToJson(qstrText).toStdString();
  for (const auto& [pszFrom, pszTo] : kEscapes) ReplaceEvery(strJson, pszFrom, pszTo);
  return strJson;
}

}  // namespace orvandel
