#include <gmock/gmock.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>

#include "tests/app/endless_wait.h"
#include "tests/support.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

QtMessageHandler g_pfnTestHandler = nullptr;

/// The offscreen platform reports each thing that only a real screen can do, and the engine of the chat views
/// that it has no context of OpenGL to share, which it doesn't use. Neither is the program's fault.
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
  QApplication application(argc, argv);  // also takes the locale from the environment
  QApplication::setQuitOnLastWindowClosed(false);
  QDir::setCurrent(QCoreApplication::applicationDirPath());
  InitResources();
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  g_pfnTestHandler = qInstallMessageHandler(DropPlatformTalk);
  if (argc == 3 && std::string(argv[1]) == kEndlessWaitArgument) return WaitAfterCancel(std::stoi(argv[2]));
  return RUN_ALL_TESTS();
}
