#include "ui/sealed_page.h"

#include <QNetworkReply>
#include <QTimer>
#include <QtWebKit/QWebElement>
#include <QtWebKit/QWebSettings>
#include <QtWebKitWidgets/QWebFrame>
#include <cstring>

namespace {

constexpr char kPolicy[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">";

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

SealedPage::SealedPage(QObject* pParent) : QWebPage(pParent), m_pNetwork(new SealedNetwork(this)) {
  setNetworkAccessManager(m_pNetwork);
  setLinkDelegationPolicy(DelegateAllLinks);  // nobody listens: a click on a link goes nowhere
  QWebSettings* pSettings = settings();
  for (const QWebSettings::WebAttribute attribute :
       {QWebSettings::JavascriptEnabled, QWebSettings::PluginsEnabled, QWebSettings::JavaEnabled,
        QWebSettings::LocalStorageEnabled, QWebSettings::OfflineStorageDatabaseEnabled,
        QWebSettings::OfflineWebApplicationCacheEnabled, QWebSettings::DeveloperExtrasEnabled,
        QWebSettings::JavascriptCanOpenWindows, QWebSettings::JavascriptCanCloseWindows,
        QWebSettings::JavascriptCanAccessClipboard, QWebSettings::LocalContentCanAccessRemoteUrls,
        QWebSettings::LocalContentCanAccessFileUrls, QWebSettings::DnsPrefetchEnabled,
        QWebSettings::HyperlinkAuditingEnabled, QWebSettings::NotificationsEnabled,
        QWebSettings::WebGLEnabled})
    pSettings->setAttribute(attribute, false);
  pSettings->setAttribute(QWebSettings::PrivateBrowsingEnabled, true);
}

void SealedPage::SetContent(const QString& qstrHtml) {
  // The policy has to stand in the head; before the first tag inside it, so that nothing comes before it.
  QString qstrSealed = qstrHtml;
  const int nHead = qstrSealed.indexOf("<head>", 0, Qt::CaseInsensitive);
  qstrSealed.insert(nHead < 0 ? 0 : nHead + static_cast<int>(strlen("<head>")), kPolicy);
  m_bLoading = true;
  mainFrame()->setHtml(qstrSealed, QUrl());
  m_bLoading = false;
}

QVariant SealedPage::Run(const QString& qstrScript) {
  settings()->setAttribute(QWebSettings::JavascriptEnabled, true);
  const QVariant result = mainFrame()->evaluateJavaScript(qstrScript);
  settings()->setAttribute(QWebSettings::JavascriptEnabled, false);
  return result;
}

void SealedPage::SetLaidOut(bool bLaidOut) {
  // A sheet of the user's goes above all that a page says. The engine knows it by this beginning alone.
  QUrl sheet;
  if (!bLaidOut)
    sheet =
        QUrl("data:text/css;charset=utf-8;base64," + QByteArray("html{display:none!important}").toBase64());
  settings()->setUserStyleSheetUrl(sheet);
}

void SealedPage::RemoveNames() {
  const QWebElement root = mainFrame()->documentElement();
  for (QWebElement element : root.findAll("body [name]")) element.removeAttribute("name");
  for (QWebElement element : root.findAll("body object[id], body applet[id], body embed[id], body img[id], "
                                          "body form[id], body iframe[id]"))
    element.removeAttribute("id");
}

bool SealedPage::StaysInString(const QString& qstrText) {
  for (int i = 0; i < qstrText.size(); ++i) {
    switch (qstrText[i].unicode()) {
      case '\\':
        // With what it escapes; a line break of two characters is one.
        i += qstrText.midRef(i + 1, 2) == QLatin1String("\r\n") ? 2 : 1;
        break;
      case '"':
      case '\n':
      case '\r':
      case 0x2028:  // the separators of lines and paragraphs end a string as well
      case 0x2029:
        return false;
      default:
        break;
    }
  }
  return true;
}

// Asked for by engines that watch their scripts.
bool SealedPage::shouldInterruptJavaScript() {
  return true;
}

bool SealedPage::acceptNavigationRequest(QWebFrame*, const QNetworkRequest&, NavigationType) {
  return m_bLoading;
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

bool SealedPage::supportsExtension(Extension) const {
  return false;
}

bool SealedPage::extension(Extension, const ExtensionOption*, ExtensionReturn*) {
  return false;
}
