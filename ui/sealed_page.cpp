#include "ui/sealed_page.h"

#include <QNetworkReply>
#include <QTimer>
#include <QtWebKit/QWebSettings>

namespace {

/// The answer to every request: an error, and nothing else.
class RefusedReply : public QNetworkReply {
 public:
  RefusedReply(const QNetworkRequest& request, QNetworkAccessManager::Operation operation, QObject* pParent)
      : QNetworkReply(pParent) {
    setRequest(request);
    setUrl(request.url());
    setOperation(operation);
    setError(ContentAccessDenied, "refused");
    open(ReadOnly);
    setFinished(true);
    QTimer::singleShot(0, this, [this] {
      emit errorOccurred(ContentAccessDenied);
      emit finished();
    });
  }
  void abort() override {}

 protected:
  qint64 readData(char*, qint64) override { return -1; }
};

}  // namespace

QNetworkReply* SealedNetwork::createRequest(Operation operation, const QNetworkRequest& request, QIODevice*) {
  ++m_nRefused;
  return new RefusedReply(request, operation, this);
}

SealedPage::SealedPage(QObject* pParent) : QWebPage(pParent) {
  setNetworkAccessManager(&m_network);
  setLinkDelegationPolicy(DelegateAllLinks);  // nobody listens: a click on a link goes nowhere
  QWebSettings* pSettings = settings();
  for (const QWebSettings::WebAttribute attribute :
       {QWebSettings::PluginsEnabled, QWebSettings::JavaEnabled, QWebSettings::LocalStorageEnabled,
        QWebSettings::OfflineStorageDatabaseEnabled, QWebSettings::OfflineWebApplicationCacheEnabled,
        QWebSettings::DeveloperExtrasEnabled, QWebSettings::JavascriptCanOpenWindows,
        QWebSettings::JavascriptCanCloseWindows, QWebSettings::JavascriptCanAccessClipboard,
        QWebSettings::LocalContentCanAccessRemoteUrls, QWebSettings::LocalContentCanAccessFileUrls,
        QWebSettings::DnsPrefetchEnabled, QWebSettings::HyperlinkAuditingEnabled,
        QWebSettings::NotificationsEnabled, QWebSettings::WebGLEnabled})
    pSettings->setAttribute(attribute, false);
  pSettings->setAttribute(QWebSettings::PrivateBrowsingEnabled, true);
}

bool SealedPage::shouldInterruptJavaScript() {
  return true;
}

bool SealedPage::acceptNavigationRequest(QWebFrame*, const QNetworkRequest& request, NavigationType) {
  return request.url() == QUrl("about:blank");  // what the program's own setHtml loads
}

QWebPage* SealedPage::createWindow(WebWindowType) {
  return nullptr;
}

QObject* SealedPage::createPlugin(const QString&, const QUrl&, const QStringList&, const QStringList&) {
  return nullptr;
}

void SealedPage::javaScriptAlert(QWebFrame*, const QString&) {}

bool SealedPage::javaScriptConfirm(QWebFrame*, const QString&) {
  return false;
}

bool SealedPage::javaScriptPrompt(QWebFrame*, const QString&, const QString&, QString*) {
  return false;
}

void SealedPage::javaScriptConsoleMessage(const QString&, int, const QString&) {}

QString SealedPage::chooseFile(QWebFrame*, const QString&) {
  return QString();
}
