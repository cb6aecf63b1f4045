#pragma once
#include <QNetworkAccessManager>
#include <QtWebKitWidgets/QWebPage>

/// Refuses every request, to the network and to files alike, and counts them.
class SealedNetwork : public QNetworkAccessManager {
  Q_OBJECT

 public:
  using QNetworkAccessManager::QNetworkAccessManager;
  int RefusedRequests() const { return m_nRefused; }

 protected:
  QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                               QIODevice* pData) override;

 private:
  int m_nRefused = 0;
};

/// The page behind a chat view. The texts of strangers go into it as markup and into its scripts as they
/// stand, in a program with administrator rights: so it reaches nothing, opens nothing and asks nothing, and
/// nobody's scripts run in it but the program's.
///
/// The engine has no means to end a script that runs on, so that none may begin: the page's policy forbids
/// all that stand in markup, scripts are on during Run alone, and a text that would end its string in a
/// script is told by StaysInString before the script is run.
class SealedPage : public QWebPage {
  Q_OBJECT

 public:
  explicit SealedPage(QObject* pParent = nullptr);
  const SealedNetwork& GetNetwork() const { return *m_pNetwork; }

  /// Loads a page, under a policy that forbids all requests and all scripts in markup.
  void SetContent(const QString& qstrHtml);
  /// Runs a script of the program in the main frame. One that fails does so without a word.
  QVariant Run(const QString& qstrScript);
  /// Whether the page is styled and laid out at all. What scripts see of its elements is the same.
  void SetLaidOut(bool bLaidOut);
  /// Takes the names from all elements below the body: scripts that look something up would meet them
  /// instead.
  void RemoveNames();
  /// True when a text can stand between double quotes in a script without ending the string.
  static bool StaysInString(const QString& qstrText);

  /// None: one of the engine's own asks for several files by a dialog.
  bool supportsExtension(Extension extension) const override;
  bool extension(Extension extension, const ExtensionOption* pOption, ExtensionReturn* pOutput) override;

 public slots:
  bool shouldInterruptJavaScript();

 protected:
  bool acceptNavigationRequest(QWebFrame* pFrame, const QNetworkRequest& request,
                               NavigationType type) override;
  QWebPage* createWindow(WebWindowType type) override;
  QObject* createPlugin(const QString& classId, const QUrl& url, const QStringList& names,
                        const QStringList& values) override;
  void javaScriptAlert(QWebFrame* pFrame, const QString& message) override;
  bool javaScriptConfirm(QWebFrame* pFrame, const QString& message) override;
  bool javaScriptPrompt(QWebFrame* pFrame, const QString& message, const QString& defaultValue,
                        QString* pResult) override;
  void javaScriptConsoleMessage(const QString& message, int nLine, const QString& source) override;
  QString chooseFile(QWebFrame* pFrame, const QString& oldFile) override;

 private:
  bool m_bLoading = false;    // the program's own page is being loaded; nothing else may be
  SealedNetwork* m_pNetwork;  // a child, so that it outlives the engine, which may ask to the last
};
