#pragma once
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <atomic>

namespace orvandel {

/// Blocks and counts every request, to the network or to files, except for the page itself.
class RefuseRequests : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override;
  int RefusedRequests() const { return m_nRefused; }

 private:
  std::atomic<int> m_nRefused{0};
};

/// The page of a chat view. Untrusted texts are inserted into its markup and its scripts without escaping, in
/// a process with administrator rights. So all requests, windows and dialogs are blocked, and only scripts of
/// the program run in it.
///
/// JavaScript is disabled in the main world. The program's scripts run in a separate world, which shares only
/// the document.
class SealedPage : public QWebEnginePage {
  Q_OBJECT

 public:
  /// @param pProfile off the record; used only by this page.
  explicit SealedPage(QWebEngineProfile* pProfile, QObject* pParent = nullptr);
  const RefuseRequests& Requests() const { return *m_pRequests; }

  /// Loads a page with a content security policy that forbids all requests and all scripts in markup. Emits
  /// loadFinished.
  void SetContent(const QString& qstrHtml);
  /// Runs a script of the program in the main frame. Failures are silent.
  /// @param done receives its result, an invalid QVariant on failure; may be empty.
  void Run(const QString& qstrScript, std::function<void(const QVariant&)> done = {});

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool bMainFrame) override;
  QWebEnginePage* createWindow(WebWindowType type) override;
  QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                          const QStringList& types) override;
  void javaScriptAlert(const QUrl& origin, const QString& message) override;
  bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
  bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& defaultValue,
                        QString* pResult) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int nLine,
                                const QString& source) override;

 private:
  void RefuseFeatures();

  bool m_bLoading = false;  // SetContent is loading its page; nothing else may load
  RefuseRequests* m_pRequests;
};

}  // namespace orvandel
