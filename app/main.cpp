#include <QApplication>
#include <QDir>
#include <csignal>

#include "app/message_handler.h"
#include "app/relaunch.h"
#include "app/user_session.h"
#include "common/text.h"
#include "ui/styles.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

constexpr int kSecondStageArguments = 2;  // the program name and one argument of any value

void ShowWindow(const UserSession& session) {
  // The dialog that asks for a destination starts in the working directory.
  QDir::setCurrent(session.Home());
  UseLightColours();
  DRUI window;
  window.setVisible(true);
  QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  // Started by another process, the program may outlive whoever reads its output: the toolkit already warns
  // at start.
  signal(SIGPIPE, SIG_IGN);
  UserSession session;
  session.JoinDisplay();
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);  // the window quits explicitly
  qInstallMessageHandler(customMessageHandler);
  inner_initUnicodeMap("UTF-8");
  if (argc == kSecondStageArguments) {
    session.ServeLinks();
    ShowWindow(session);
  } else {
    RelaunchWithRights();
  }
  return 0;
}
