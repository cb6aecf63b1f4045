#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/problems.h"
#include "cli/recover_steps.h"
#include "cli/stop_signal.h"

namespace {

/// The real path of a folder that may not exist yet: that of its first ancestor that does, and the rest.
QString RealPath(const QString& qstrFolder) {
  QString qstrAncestor = qstrFolder;
  QString qstrRest;
  while (!QFileInfo::exists(qstrAncestor) && qstrAncestor.contains('/')) {
    qstrRest.prepend(qstrAncestor.mid(qstrAncestor.lastIndexOf('/')));
    qstrAncestor.truncate(qstrAncestor.lastIndexOf('/'));
  }
  return QFileInfo(qstrAncestor.isEmpty() ? "/" : qstrAncestor).canonicalFilePath() + qstrRest;
}

int CheckDestination(const Options& options) {
  const QString qstrBackup = RealPath(options.qstrBackup) + '/';
  if ((RealPath(options.qstrDestination) + '/').startsWith(qstrBackup)) {
    PrintError(options.qstrDestination +
               ": lies in the backup, which must not change; choose a folder elsewhere");
    return kExitUsage;
  }
  errno = 0;
  if (QDir().mkpath(options.qstrDestination)) return kExitDone;
  const int nError = errno;
  if (QFileInfo::exists(options.qstrDestination)) {
    PrintError(options.qstrDestination + ": is not a folder");
    return kExitNotWritten;
  }
  PrintError(QString("%1: the folder can't be made (%2)")
                 .arg(options.qstrDestination, QString::fromLocal8Bit(strerror(nError))));
  return kExitNotWritten;
}

/// Looks at the templates, if any page is wanted: without its template a page would have no fence.
bool HasTemplates(const Options& options, const CRecovery& recovery) {
  const QString qstrUnusable = WantsDocuments(options) ? recovery.FindUnusableTemplate() : QString();
  if (!qstrUnusable.isEmpty()) PrintError(qstrUnusable);
  return qstrUnusable.isEmpty();
}

}  // namespace

int RunRecover(const Options& options) {
  // Before anything is read or written.
  if (!HasTemplates(options, CRecovery())) return kExitNotWritten;
  ProgressBar scanBar(!options.bQuiet);
  OpenBackup backup(options);
  if (const int nStatus = ReadBackup(options, scanBar, backup)) return nStatus;
  if (const int nStatus = CheckDestination(options)) return nStatus;

  ProgressBar bar(!options.bQuiet);
  RecoveryReport report(options, bar, CountWork(options, backup.records));
  CRecovery recovery;
  recovery.SetWrittenFileHandler([&](const WrittenFile& file) { report.Add(file); });
  recovery.SetNamePolicy(NamePolicy::MadeSafe);
  if (WantsDocuments(options)) recovery.Init(options.qstrDestination, &backup.session);
  // Once more: they may have gone while the backup was read.
  if (!HasTemplates(options, recovery)) return kExitNotWritten;
  RecoverFiles(options, backup, report);
  if (WantsDocuments(options)) RecoverDocuments(options, backup.records, recovery, report);
  ReportLosses(options, backup, report);
  report.PrintTotals();
  if (!FinishOutput()) return kExitNotWritten;
  if (StopSignal() != 0) return Interrupted();
  return report.HasFailures() ? kExitNotWritten : kExitDone;
}
