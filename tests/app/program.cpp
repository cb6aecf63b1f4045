#include "tests/app/program.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace orvandel {

namespace {

constexpr int kLimit = 60000;  // milliseconds
constexpr int kAlive = 1000;   // for which it must stay alive

QByteArray ReadProcFile(qint64 nProcess, const char* pszName) {
  QFile file(QString("/proc/%1/%2").arg(nProcess).arg(pszName));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Creates a private root from the machine's, with "/Library" from a folder of the test, and runs a command
/// there. It vanishes when the process ends.
constexpr char kScript[] =
    "set -e\n"
    "root=$1 library=$2; shift 2\n"
    "mount -t tmpfs tmpfs \"$root\"\n"
    "for entry in /*; do\n"
    "  if [ -L \"$entry\" ]; then cp -P \"$entry\" \"$root$entry\"\n"
    "  elif [ -d \"$entry\" ]; then mkdir \"$root$entry\"; mount --rbind \"$entry\" \"$root$entry\"; fi\n"
    "done\n"
    "mkdir \"$root/Library\"\n"
    "mount --bind \"$library\" \"$root/Library\"\n"
    "exec chroot \"$root\" \"$@\"\n";

QStringList Unshare() {
  return geteuid() == 0 ? QStringList{"-m", "--propagation", "private"}
                        : QStringList{"-rm", "--propagation", "private"};
}

}  // namespace

QString ProgramPath() {
  return QCoreApplication::applicationDirPath() + "/orvandel";
}

bool MayStartWindow() {
  return !QFile::exists("/Library");
}

QStringList InOwnRoot(const TemporaryFolder& folder) {
  return QStringList{"unshare"} + Unshare() +
         QStringList{"sh",
                     "-c",
                     kScript,
                     "sh",
                     QString::fromStdString(folder.MakeFolder("root")),
                     QString::fromStdString(folder.MakeFolder("Library"))};
}

std::string ObstacleToOwnRoot(const TemporaryFolder& folder) {
  QProcess probe;
  QStringList command = InOwnRoot(folder) << "true";
  const QString qstrFirst = command.takeFirst();
  probe.start(qstrFirst, command);
  if (probe.waitForFinished(kLimit) && probe.exitStatus() == QProcess::NormalExit && probe.exitCode() == 0)
    return "";
  return "no file system of one's own here: " + probe.readAllStandardError().toStdString();
}

Program::~Program() {
  if (state() == QProcess::NotRunning) return;
  kill();
  waitForFinished(kLimit);
}

void Program::Start(const QStringList& arguments, const QStringList& environment, const QStringList& prefix) {
  QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
  variables.insert("QT_QPA_PLATFORM", "offscreen");
  variables.insert("LC_ALL", "C.UTF-8");
  for (const QString& qstrVariable : environment)
    variables.insert(qstrVariable.section('=', 0, 0), qstrVariable.section('=', 1));
  setProcessEnvironment(variables);
  QStringList command = prefix;
  command << ProgramPath() << arguments;
  const QString qstrFirst = command.takeFirst();
  start(qstrFirst, command);
  waitForStarted(kLimit);
}

bool Program::StaysAlone() {
  if (waitForFinished(kAlive)) return false;
  const QByteArray path = QString("task/%1/children").arg(processId()).toLatin1();
  return state() == QProcess::Running && ReadProcFile(processId(), path.constData()).trimmed().isEmpty();
}

int Program::EndStatus() {
  if (state() != QProcess::NotRunning && !waitForFinished(kLimit)) return -1;
  return exitStatus() == QProcess::NormalExit ? exitCode() : -1;
}

std::vector<qint64> ProcessesWith(const QByteArray& variable) {
  std::vector<qint64> found;
  for (const QString& qstrName : QDir("/proc").entryList(QDir::Dirs)) {
    bool bNumber = false;
    const qint64 nProcess = qstrName.toLongLong(&bNumber);
    if (bNumber && ReadProcFile(nProcess, "environ").split('\0').contains(variable))
      found.push_back(nProcess);
  }
  return found;
}

QStringList ArgumentsOf(qint64 nProcess) {
  QStringList arguments;
  for (const QByteArray& argument : ReadProcFile(nProcess, "cmdline").split('\0'))
    arguments << QFile::decodeName(argument);
  if (!arguments.isEmpty()) arguments.removeLast();  // after the last zero
  return arguments;
}

}  // namespace orvandel
