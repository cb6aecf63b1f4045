#include <gmock/gmock.h>
#include <unistd.h>

#include <QApplication>
#include <QQuickWindow>

#include "tests/support.h"

using namespace orvandel;

namespace {

QtMessageHandler g_pfnTestHandler = nullptr;

/// Ignores the engine's message about software rendering, which is enabled deliberately.
void DropEngineTalk(QtMsgType type, const QMessageLogContext& context, const QString& qstrMessage) {
  if (!qstrMessage.startsWith("No suitable graphics backend found"))
    g_pfnTestHandler(type, context, qstrMessage);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");  // the engine's sandbox refuses root
  QQuickWindow::setSceneGraphBackend("software");
  QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  g_pfnTestHandler = qInstallMessageHandler(DropEngineTalk);
  return RUN_ALL_TESTS();
}
