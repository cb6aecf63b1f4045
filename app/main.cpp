#include <QApplication>
#include <QDir>
#include <QTextCodec>

#include "app/message_handler.h"
#include "app/relaunch.h"
#include "common/text.h"
#include "ui/window.h"

namespace {

constexpr int kSecondStageArguments = 2;  // the program and one argument of any value

void ShowWindow() {
  // The page of the chat views is found by its name alone.
  QDir::setCurrent(QCoreApplication::applicationDirPath());
  DRUI window;
  window.setVisible(true);
  QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);  // only the window's own close ends the run
  // Narrow texts are in the locale's encoding: what they are converted by is what codecForLocale says.
  QTextCodec::setCodecForLocale(QTextCodec::codecForLocale());
  qInstallMessageHandler(customMessageHandler);
  inner_initUnicodeMap("UTF-8");
  if (argc == kSecondStageArguments)
    ShowWindow();
  else
    RelaunchWithRights();
  return 0;
}
