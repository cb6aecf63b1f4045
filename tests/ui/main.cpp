#include <gmock/gmock.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>

#include "tests/app/endless_wait.h"
#include "tests/support.h"
#include "ui/styles.h"

namespace {

QtMessageHandler g_pfnTestHandler = nullptr;

/// Ignores warnings that the program doesn't cause: the offscreen platform's about features of real screens,
/// and the chat engine's about the missing shared OpenGL context, which is disabled.
void DropPlatformTalk(QtMsgType type, const QMessageLogContext& context, const QString& qstrMessage) {
  for (const char* pszBeginning :
       {"This plugin does not support ", "Qt WebEngine seems to be initialized from a plugin.",
        "No suitable graphics backend found"}) {
    if (qstrMessage.startsWith(pszBeginning)) return;
  }
  g_pfnTestHandler(type, context, qstrMessage);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");  // the engine's sandbox refuses root
  QApplication application(argc, argv);  // also sets the locale from the environment
  QApplication::setQuitOnLastWindowClosed(false);
  QDir::setCurrent(QCoreApplication::applicationDirPath());  // the chat page is opened by a relative path
  InitResources();
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  g_pfnTestHandler = qInstallMessageHandler(DropPlatformTalk);
  if (argc == 3 && std::string(argv[1]) == kEndlessWaitArgument) return WaitAfterCancel(std::stoi(argv[2]));
  return RUN_ALL_TESTS();
}
