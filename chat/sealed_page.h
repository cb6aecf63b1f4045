#pragma once
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <atomic>

/// Refuses every request, to the network and to files alike, and counts them.
class RefuseRequests : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override;
  int RefusedRequests() const { return m_nRefused; }

 private:
  std::atomic<int> m_nRefused{0};
};

/// The page behind a chat view. The texts of strangers go into it as markup and into its scripts as they
/// stand, in a program with administrator rights: so it reaches nothing, opens nothing and asks nothing, and
/// nobody's scripts run in it but the program's.
///
/// Scripts are off for good in the world of the page. The program's run in a world of their own, which shares
/// the document alone.
class SealedPage : public QWebEnginePage {
  Q_OBJECT

 public:
  /// @param pProfile off the record; used by this page alone.
  explicit SealedPage(QWebEngineProfile* pProfile, QObject* pParent = nullptr);
  const RefuseRequests& Requests() const { return *m_pRequests; }

  /// Loads a page, under a policy that forbids all requests and all scripts in markup. loadFinished follows.
  void SetContent(const QString& qstrHtml);
  /// Runs a script of the program in the main frame. One that fails does so silently.
  /// @param done receives its value, an invalid one after a failure; may be empty.
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

  bool m_bLoading = false;  // the program's own page is being loaded; nothing else may be
  RefuseRequests* m_pRequests;
};
