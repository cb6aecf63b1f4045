#include "chat/sealed_view.h"

#include <unistd.h>

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QWebEngineProfile>

#include "chat/sealed_page.h"

namespace orvandel {

namespace {

/// Run by root with its sandbox enabled, the engine terminates the process. Only the user may disable the
/// sandbox, with the engine's own environment variables.
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
  // The page must be destroyed before its profile, a child of the view.
  auto* pProfile = new QWebEngineProfile(this);  // off the record, since it has no name
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
  // Silences the engine's report of its settings, which needs a shared OpenGL context.
  QLoggingCategory::setFilterRules("qt.webenginecontext*=false");
  QQuickWindow::setSceneGraphBackend("software");
}

ChatEngine* SealedViewFactory::Create(QWidget* pParent) {
  if (CanStart()) return new SealedView(pParent);
  qWarning("a chat can't be shown: its sandbox doesn't work for the superuser");
  return nullptr;
}

}  // namespace orvandel
