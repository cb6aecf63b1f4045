#include "tests/ui/url_recorder.h"

#include <QDesktopServices>

namespace orvandel {

UrlRecorder::UrlRecorder() {
  for (const char* pszScheme : {"https", "http", "file"})
    QDesktopServices::setUrlHandler(pszScheme, this, "Open");
}

UrlRecorder::~UrlRecorder() {
  for (const char* pszScheme : {"https", "http", "file"}) QDesktopServices::unsetUrlHandler(pszScheme);
}

void UrlRecorder::Open(const QUrl& url) {
  m_opened << url.toString();
}

}  // namespace orvandel
