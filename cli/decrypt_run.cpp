#include "cli/decrypt_run.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <algorithm>

#include "backup/discovery.h"
#include "cli/exit_status.h"
#include "cli/open_backup.h"
#include "cli/password.h"
#include "cli/problems.h"
#include "cli/stop_signal.h"
#include "common/places.h"
#include "common/text.h"

namespace {

constexpr int kPollStep = 100;     // milliseconds
constexpr int kToolProgress = 10;  // percent of the bar that belong to the tool

/// Goes over the whole lines that the tool has printed. @return true when one rejects the password.
bool ReadLines(QProcess& process, qint64 nTotal, ProgressBar& bar) {
  bool bWrongPassword = false;
  process.setReadChannel(QProcess::StandardOutput);
  while (process.canReadLine()) {
    const QByteArray line = process.readLine();
    if (line.contains("Wrong password")) bWrongPassword = true;
    const int nCount = line.indexOf("Count:");
    if (nCount >= 0)
      bar.Show(static_cast<int>(std::min(line.mid(nCount + 6).trimmed().toLongLong(), nTotal) *
                                kToolProgress / nTotal));
  }
  process.setReadChannel(QProcess::StandardError);
  while (process.canReadLine()) {
    bar.Clear();
    PrintError(QString::fromLocal8Bit(process.readLine().trimmed()));
  }
  return bWrongPassword;
}

}  // namespace

DecryptRun::DecryptRun(const QString& qstrBackup)
    : m_qstrFolder(FromNarrow(WorkFolder() + kDecryptFolderName)),
      m_qstrDecryptedManifest(qstrBackup + "/Manifest.db-decypted"),
      m_bHadManifest(QFile::exists(m_qstrDecryptedManifest)) {}

DecryptRun::~DecryptRun() {
  if (!m_bHadManifest) QFile::remove(m_qstrDecryptedManifest);
  QFile::remove(m_qstrDecryptedManifest + ".part");  // of a tool that was ended in the middle
}

int DecryptRun::Run(const Options& options, ProgressBar& bar) {
  QByteArray password;
  if (!ReadPassword(options, password)) return StopSignal() != 0 ? Interrupted() : kExitPassword;
  if (mkdir(ToNarrow(m_qstrFolder).c_str(), 0700) != 0) {
    PrintError(m_qstrFolder + ": the folder for the decrypted files can't be made");
    return kExitNotWritten;
  }
  const qint64 nTotal = std::max<qint64>(CountBackupFiles(ToNarrow(options.qstrBackup)), 1);
  QProcess process;
  const QString qstrTool = FromNarrow(ProgramFolder() + "Velmora Orvandel");
  process.start(qstrTool, {options.qstrBackup, m_qstrFolder, QString::fromUtf8(password)});
  password.fill('\0');
  if (!process.waitForStarted()) {
    PrintError(qstrTool + ": " + process.errorString());
    return kExitNotWritten;
  }
  bool bWrongPassword = false;
  while (process.state() != QProcess::NotRunning) {
    process.waitForFinished(kPollStep);
    bWrongPassword |= ReadLines(process, nTotal, bar);
    if (StopSignal() != 0) process.kill();
  }
  bWrongPassword |= ReadLines(process, nTotal, bar);
  if (StopSignal() != 0) return Interrupted();
  bar.Clear();
  if (bWrongPassword) {
    PrintError(options.qstrBackup + ": wrong password");
    return kExitPassword;
  }
  // A tool that has told why single files failed leaves the others; one that wrote none leaves nothing to
  // read.
  if (process.exitCode() == 0 || !QDir(m_qstrFolder).isEmpty(QDir::Files)) return kExitDone;
  PrintError(options.qstrBackup + ": the backup could not be decrypted");
  return kExitNotWritten;
}
