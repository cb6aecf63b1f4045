#include "cli/password.h"

#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <csignal>
#include <cstdio>

#include "cli/output.h"
#include "cli/stop_signal.h"

namespace orvandel {

namespace {

QByteArray FirstLine(QFile& file) {
  QByteArray line = file.readLine();
  while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
  return line;
}

/// Waits for input. @return false when a signal requested a stop.
bool WaitForInput(int nDescriptor) {
  // The signals are blocked except during pselect, so that none arrives between checking the flag and
  // waiting.
  sigset_t stopSignals, before;
  sigemptyset(&stopSignals);
  for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&stopSignals, nSignal);
  pthread_sigmask(SIG_BLOCK, &stopSignals, &before);
  int nReady = -1;
  if (StopSignal() == 0) {
    fd_set input;
    FD_ZERO(&input);
    FD_SET(nDescriptor, &input);
    nReady = pselect(nDescriptor + 1, &input, nullptr, nullptr, nullptr, &before);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return nReady == 1;
}

/// Reads a line from the terminal without echo.
bool Prompt(const QString& qstrBackup, QByteArray& password) {
  QFile terminal("/dev/tty");
  if (!terminal.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) return false;
  termios shown;
  if (tcgetattr(terminal.handle(), &shown) != 0) return false;
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  // Echo is disabled before prompting, so that early input is neither shown nor lost.
  tcsetattr(terminal.handle(), TCSADRAIN, &hidden);
  terminal.write(QString("Password of %1: ").arg(qstrBackup).toLocal8Bit());
  char szLine[1024];
  const ssize_t nRead = WaitForInput(terminal.handle()) ? read(terminal.handle(), szLine, sizeof szLine) : -1;
  tcsetattr(terminal.handle(), TCSADRAIN, &shown);
  terminal.write("\n");
  if (nRead <= 0) return false;
  password = QByteArray(szLine, static_cast<int>(nRead));
  while (password.endsWith('\n') || password.endsWith('\r')) password.chop(1);
  return true;
}

}  // namespace

bool ReadPassword(const BackupOptions& options, QByteArray& password) {
  if (options.bPasswordStdin) {
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) return false;
    password = FirstLine(input);
    return true;
  }
  if (!options.qstrPasswordFile.isEmpty()) {
    QFile file(options.qstrPasswordFile);
    if (!file.open(QIODevice::ReadOnly)) {
      PrintError(options.qstrPasswordFile + ": " + file.errorString());
      return false;
    }
    password = FirstLine(file);
    return true;
  }
  if (Prompt(options.qstrBackup, password)) return true;
  PrintError(
      options.qstrBackup +
      ": the backup is encrypted; give its password by --password-stdin, --password-file or a terminal");
  return false;
}

}  // namespace orvandel
