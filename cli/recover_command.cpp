#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <algorithm>
#include <array>

#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/json_stream.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/problems.h"
#include "cli/stop_signal.h"
#include "common/format.h"
#include "common/text.h"
#include "export/file_copy.h"

namespace {

// The order in which the window recovers, which isn't that of the tree.
constexpr std::array kFileOrder = {kCameraRoll, kPhotoStream,         kAppPhotos,
                                   kAppVideos,  kWhatsAppAttachments, kMessageAttachments};

/// Reports each file as it is done, and the totals at the end.
class RecoveryReport {
 public:
  RecoveryReport(const Options& options, ProgressBar& bar) : m_options(options), m_bar(bar) {}

  void Add(const CopyResult& result, uint32_t nSize) {
    ++(result.Succeeded() ? m_nSucceeded : m_nFailed);
    if (result.Succeeded()) m_nBytes += nSize;
    if (result.Succeeded() && m_options.bQuiet) return;
    m_bar.Clear();
    if (m_options.bJson)
      PrintJson(result);
    else
      PrintLine(result.Succeeded() ? "Success\t" + result.qstrPath
                                   : "Failed\t" + result.qstrPath + '\t' + result.qstrReason);
  }

  void PrintTotals() const {
    m_bar.Clear();
    if (m_options.bJson) {
      Print(ToJson(QJsonObject{{"destination", m_options.qstrDestination},
                               {"succeeded", m_nSucceeded},
                               {"failed", m_nFailed},
                               {"bytes", m_nBytes}}) +
            '\n');
      return;
    }
    PrintLine(QString("%1 recovered, %2 failed, %3 in %4")
                  .arg(m_nSucceeded)
                  .arg(m_nFailed)
                  .arg(FromNarrow(GetFileSizeString(m_nBytes)), m_options.qstrDestination));
  }

  bool HasFailures() const { return m_nFailed != 0; }
  qint64 Done() const { return m_nSucceeded + m_nFailed; }

 private:
  static void PrintJson(const CopyResult& result) {
    QJsonObject object{{"status", result.Succeeded() ? "Success" : "Failed"}, {"path", result.qstrPath}};
    if (!result.Succeeded()) object["reason"] = result.qstrReason;
    Print(ToJson(object) + '\n');
  }

  const Options& m_options;
  ProgressBar& m_bar;
  qint64 m_nSucceeded = 0;
  qint64 m_nFailed = 0;
  qint64 m_nBytes = 0;
};

/// Copies files in the order of the window, until a signal asks to stop.
class FileRecovery {
 public:
  FileRecovery(const Options& options, ProgressBar& bar, const BackupRecords& records, RecoveryReport& report)
      : m_copier(options.qstrDestination),
        m_options(options),
        m_bar(bar),
        m_records(records),
        m_report(report) {
    for (CategoryNumber nNumber : kFileOrder) m_nTotal += IsWanted(nNumber) ? Count(nNumber) : 0;
  }

  void Run() {
    for (CategoryNumber nNumber : kFileOrder) {
      if (IsWanted(nNumber)) CopyCategory(nNumber, Categories()[nNumber].pszFolder);
    }
  }

 private:
  bool IsWanted(CategoryNumber nNumber) const {
    return std::find(m_options.only.begin(), m_options.only.end(), nNumber) != m_options.only.end();
  }

  qint64 Count(CategoryNumber nNumber) const {
    return static_cast<qint64>(Categories()[nNumber].pfnCount(m_records));
  }

  void CopyCategory(CategoryNumber nNumber, const QString& qstrFolder) {
    switch (nNumber) {
      case kCameraRoll:
        return CopyList(m_records.m_vecCamera, qstrFolder);
      case kPhotoStream:
        return CopyList(m_records.m_vecPhotoStream, qstrFolder);
      case kAppPhotos:
        return CopyApps(m_records.m_mapAppPhotoFiles, qstrFolder);
      case kAppVideos:
        return CopyApps(m_records.m_mapAppVideoFiles, qstrFolder);
      case kWhatsAppAttachments:
        return CopyList(m_records.m_vecWhatsAppAttachment, qstrFolder);
      case kMessageAttachments:
        return CopyList(m_records.m_vecMessageAttachment, qstrFolder);
      default:
        return;
    }
  }

  template <typename File>
  void CopyList(const std::vector<File>& files, const QString& qstrFolder) {
    for (const File& file : files) {
      if (StopSignal() != 0) return;
      m_report.Add(m_copier.Copy(qstrFolder, file.strFileName, file.wstrFilePath), file.uFileSize);
      m_bar.Show(static_cast<int>(m_report.Done() * 100 / m_nTotal));
    }
  }

  void CopyApps(const AppFileMap& apps, const QString& qstrFolder) {
    for (const auto& [strApp, files] : apps) CopyList(files, qstrFolder + FromNarrow(strApp) + '/');
  }

  BackupFileCopier m_copier;
  const Options& m_options;
  ProgressBar& m_bar;
  const BackupRecords& m_records;
  RecoveryReport& m_report;
  qint64 m_nTotal = 0;
};

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
  if (QDir().mkpath(options.qstrDestination)) return kExitDone;
  const bool bTaken = QFileInfo::exists(options.qstrDestination);
  PrintError(options.qstrDestination + (bTaken ? ": is not a folder" : ": the folder can't be made"));
  return kExitNotWritten;
}

}  // namespace

int RunRecover(const Options& options) {
  ProgressBar scanBar(!options.bQuiet);
  OpenBackup backup;
  if (const int nStatus = ReadBackup(options, scanBar, backup)) return nStatus;
  if (const int nStatus = CheckDestination(options)) return nStatus;
  ProgressBar bar(!options.bQuiet);
  RecoveryReport report(options, bar);
  FileRecovery(options, bar, backup.records, report).Run();
  report.PrintTotals();
  if (!FinishOutput()) return kExitNotWritten;
  if (StopSignal() != 0) return Interrupted();
  return report.HasFailures() ? kExitNotWritten : kExitDone;
}
