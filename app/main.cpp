#include <QApplication>
#include <QDir>

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
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);  // only the window's own close ends the run
  qInstallMessageHandler(customMessageHandler);
  inner_initUnicodeMap("UTF-8");
  if (argc == kSecondStageArguments)
    ShowWindow();
  else
    RelaunchWithRights();
  return 0;
}
