#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>

#include "app/relaunch.h"

namespace orvandel {

void RelaunchWithRights() {
  const QString qstrProgram = QCoreApplication::applicationFilePath();
  if (geteuid() == 0)
    QProcess::startDetached(qstrProgram, {"start"});
  else
    QProcess::startDetached("pkexec", {qstrProgram, "start"});  // fails silently if declined or not installed
}

}  // namespace orvandel
