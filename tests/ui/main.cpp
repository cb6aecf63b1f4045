#include <gmock/gmock.h>

#include <QApplication>
#include <QDir>
#include <QTextCodec>

#include "tests/app/endless_wait.h"
#include "tests/support.h"
#include "ui/styles.h"

namespace {

QtMessageHandler g_pfnTestHandler = nullptr;

/// The offscreen platform tells of each thing that only a real screen can do. That isn't the program's fault.
void DropPlatformTalk(QtMsgType type, const QMessageLogContext& context, const QString& qstrMessage) {
  if (!qstrMessage.startsWith("This plugin does not support ")) g_pfnTestHandler(type, context, qstrMessage);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);  // also takes the locale from the environment
  QApplication::setQuitOnLastWindowClosed(false);
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  QDir::setCurrent(QCoreApplication::applicationDirPath());  // the chat page is found by its name alone
  InitResources();
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  g_pfnTestHandler = qInstallMessageHandler(DropPlatformTalk);
  if (argc == 3 && std::string(argv[1]) == kEndlessWaitArgument) return WaitAfterCancel(std::stoi(argv[2]));
  return RUN_ALL_TESTS();
}
