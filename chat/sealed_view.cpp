#include "chat/sealed_view.h"

#include <unistd.h>

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QWebEngineProfile>

#include "chat/sealed_page.h"

namespace {

/// The engine ends the whole process when root starts it with its sandbox on. Only who runs the program may
/// turn the sandbox off, by the engine's own means.
bool CanStart() {
#ifdef Q_OS_LINUX
  return geteuid() != 0 || qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") == 1 ||
         qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--no-sandbox");
#else
  return true;
#endif
}

}  // namespace

SealedView::SealedView(QWidget* pParent) : QWebEngineView(pParent) {
  // Children go after the view's own page, which has to go before its profile.
  auto* pProfile = new QWebEngineProfile(this);  // without a name it is off the record
  m_pPage = new SealedPage(pProfile, this);
  setPage(m_pPage);
  setContextMenuPolicy(Qt::NoContextMenu);
  setAcceptDrops(false);
}

SealedView::~SealedView() {
  delete m_pPage;
}

void SealedView::Load(const QString& qstrHtml, std::function<void()> done) {
  connect(m_pPage, &QWebEnginePage::loadFinished, this, done, Qt::SingleShotConnection);
  m_pPage->SetContent(qstrHtml);
}

void SealedView::Run(const QString& qstrScript, std::function<void(const QVariant&)> done) {
  m_pPage->Run(qstrScript, std::move(done));
}

SealedViewFactory::SealedViewFactory() {
  // The program has no OpenGL context that could be shared, which the engine's report of its settings relies
  // on.
  QLoggingCategory::setFilterRules("qt.webenginecontext*=false");
  QQuickWindow::setSceneGraphBackend("software");
}

ChatEngine* SealedViewFactory::Create(QWidget* pParent) {
  if (CanStart()) return new SealedView(pParent);
  qWarning("a chat can't be shown: its sandbox doesn't work for the superuser");
  return nullptr;
}
