#include "chat/sealed_page.h"

#include <QWebEngineFullScreenRequest>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <cstring>

namespace orvandel {

namespace {

constexpr char kPolicy[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">";

}  // namespace

void RefuseRequests::interceptRequest(QWebEngineUrlRequestInfo& info) {
  // The page itself is a data URL; acceptNavigationRequest decides whether it may be loaded.
  if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame &&
      info.requestUrl().scheme() == "data")
    return;
  ++m_nRefused;
  info.block(true);
}

SealedPage::SealedPage(QWebEngineProfile* pProfile, QObject* pParent)
    : QWebEnginePage(pProfile, pParent), m_pRequests(new RefuseRequests(this)) {
  setUrlRequestInterceptor(m_pRequests);
  for (const QWebEngineSettings::WebAttribute attribute :
       {QWebEngineSettings::JavascriptEnabled,
        QWebEngineSettings::JavascriptCanOpenWindows,
        QWebEngineSettings::JavascriptCanAccessClipboard,
        QWebEngineSettings::JavascriptCanPaste,
        QWebEngineSettings::LocalStorageEnabled,
        QWebEngineSettings::LocalContentCanAccessRemoteUrls,
        QWebEngineSettings::LocalContentCanAccessFileUrls,
        QWebEngineSettings::AutoLoadImages,
        QWebEngineSettings::AutoLoadIconsForPage,
        QWebEngineSettings::HyperlinkAuditingEnabled,
        QWebEngineSettings::PluginsEnabled,
        QWebEngineSettings::FullScreenSupportEnabled,
        QWebEngineSettings::ScreenCaptureEnabled,
        QWebEngineSettings::WebGLEnabled,
        QWebEngineSettings::Accelerated2dCanvasEnabled,
        QWebEngineSettings::AllowRunningInsecureContent,
        QWebEngineSettings::AllowGeolocationOnInsecureOrigins,
        QWebEngineSettings::AllowWindowActivationFromJavaScript,
        QWebEngineSettings::DnsPrefetchEnabled,
        QWebEngineSettings::PdfViewerEnabled,
        QWebEngineSettings::FocusOnNavigationEnabled,
        QWebEngineSettings::NavigateOnDropEnabled})
    settings()->setAttribute(attribute, false);
  settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
  settings()->setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
  settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
  setAudioMuted(true);
  RefuseFeatures();
}

void SealedPage::RefuseFeatures() {
  connect(this, &QWebEnginePage::featurePermissionRequested, this,
          [this](const QUrl& origin, QWebEnginePage::Feature feature) {
            setFeaturePermission(origin, feature, PermissionDeniedByUser);
          });
  connect(this, &QWebEnginePage::fullScreenRequested, this,
          [](QWebEngineFullScreenRequest request) { request.reject(); });
}

void SealedPage::SetContent(const QString& qstrHtml) {
  // The policy must come first in the head.
  QString qstrSealed = qstrHtml;
  const qsizetype nHead = qstrSealed.indexOf("<head>", 0, Qt::CaseInsensitive);
  qstrSealed.insert(nHead < 0 ? 0 : nHead + static_cast<qsizetype>(strlen("<head>")), kPolicy);
  m_bLoading = true;
  setHtml(qstrSealed, QUrl());
}

void SealedPage::Run(const QString& qstrScript, std::function<void(const QVariant&)> done) {
  runJavaScript(
      qstrScript, QWebEngineScript::ApplicationWorld, done ? std::move(done) : [](const QVariant&) {});
}

bool SealedPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool bMainFrame) {
  // SetContent loads its page as a data URL.
  const bool bOwn = m_bLoading && bMainFrame && url.scheme() == "data";
  m_bLoading = false;
  return bOwn;
}

QWebEnginePage* SealedPage::createWindow(WebWindowType) {
  return nullptr;
}

QStringList SealedPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) {
  return {};
}

void SealedPage::javaScriptAlert(const QUrl&, const QString&) {}

bool SealedPage::javaScriptConfirm(const QUrl&, const QString&) {
  return false;
}

bool SealedPage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) {
  return false;
}

void SealedPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                          const QString&) {}

}  // namespace orvandel
