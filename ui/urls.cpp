#include "ui/urls.h"

#include <QFileInfo>

// In a domain reserved for documentation (RFC 2606), as the pages have no address yet.
CURLConfig::CURLConfig()
    : m_urls{"https://orvandel.example/", "https://orvandel.example/help.html",
             "https://orvandel.example/about.html", "https://orvandel.example/support.html",
             "https://orvandel.example/more.html"} {}

CURLConfig* CURLConfig::GetInstance() {
  static CURLConfig config;
  return &config;
}

namespace orvandel {

QUrl HelpPage(const QUrl& online, const QString& qstrFolder) {
  const QFileInfo guide(qstrFolder + "/guide.html");
  const bool bPlaceholder = online.host().endsWith(".example");
  return bPlaceholder && guide.isFile() ? QUrl::fromLocalFile(guide.absoluteFilePath()) : online;
}

}  // namespace orvandel
