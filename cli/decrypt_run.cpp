#include "cli/decrypt_run.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <QDir>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "backup/discovery.h"
#include "cli/exit_status.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/password.h"
#include "cli/places.h"
#include "cli/stop_signal.h"
#include "common/format.h"
#include "common/places.h"
#include "common/text.h"
#include "decrypt/client.h"

namespace orvandel {

namespace {

/// The disk space needed for the decrypted files of a backup.
struct Extent {
  quint64 nFiles = 0;
  quint64 nBytes = 0;
};

/// @param nBlock block size of the target file system, in bytes.
Extent ExtentOf(const std::string& strFolder, quint64 nBlock) {
  namespace fs = std::filesystem;
  Extent extent;
  std::error_code error;
  for (fs::recursive_directory_iterator it(strFolder, fs::directory_options::skip_permission_denied, error),
       end;
       !error && it != end; it.increment(error)) {
    struct stat info;
    if (lstat(it->path().c_str(), &info) != 0 || !S_ISREG(info.st_mode)) continue;
    ++extent.nFiles;
    extent.nBytes += (static_cast<quint64>(info.st_size) + nBlock - 1) / nBlock * nBlock;
  }
  return extent;
}

}  // namespace

DecryptRun::DecryptRun() : m_qstrFolder(FromNarrow(WorkFolder() + kDecryptFolderName)) {}

int DecryptRun::CheckRoom(const BackupOptions& options) const {
  struct statvfs disk;
  if (options.bForce || statvfs(WorkFolder().c_str(), &disk) != 0) return kExitDone;
  const Extent needed = ExtentOf(ToNarrow(options.qstrBackup), disk.f_frsize);
  const quint64 nFree = static_cast<quint64>(disk.f_bavail) * disk.f_frsize;
  const QString qstrPlace = FromNarrow(WorkFolder());
  if (needed.nBytes > nFree) {
    PrintError(QString("%1: decrypting it takes %2, and %3 has %4 free; use --force to try anyway")
                   .arg(options.qstrBackup, FromNarrow(GetFileSizeString(static_cast<qint64>(needed.nBytes))),
                        qstrPlace, FromNarrow(GetFileSizeString(static_cast<qint64>(nFree)))));
    return kExitNotWritten;
  }
  // f_files is 0 on file systems without a fixed number of inodes.
  if (disk.f_files != 0 && needed.nFiles > disk.f_favail) {
    PrintError(QString("%1: decrypting it takes %2 files, and %3 has room for %4; use --force to try anyway")
                   .arg(options.qstrBackup)
                   .arg(needed.nFiles)
                   .arg(qstrPlace)
                   .arg(static_cast<quint64>(disk.f_favail)));
    return kExitNotWritten;
  }
  return kExitDone;
}

void DecryptRun::AddFailure(const BackupOptions& options, const QString& qstrLine) {
  // "FILE: REASON" with a file of the backup. The backup's path may contain the separator too. The tool
  // replaces control characters.
  const QString qstrFolder = Printable(options.qstrBackup) + '/';
  const int nColon = qstrLine.startsWith(qstrFolder) ? qstrLine.indexOf(": ", qstrFolder.size()) : -1;
  if (nColon < 0) {
    m_failures.push_back({QString(), qstrLine});
    return;
  }
  const QString qstrFile = qstrLine.mid(qstrFolder.size(), nColon - qstrFolder.size());
  m_failures.push_back({options.qstrBackup + '/' + qstrFile, qstrLine.mid(nColon + 2)});
}

int DecryptRun::Run(const BackupOptions& options, ProgressBar& bar) {
  if (!WorkFolderProblem().isEmpty()) {
    PrintError("the private folder for the decrypted files can't be created: " + WorkFolderProblem());
    return kExitNotWritten;
  }
  if (const int nStatus = CheckRoom(options)) return nStatus;
  QByteArray password;
  if (!ReadPassword(options, password)) return StopSignal() != 0 ? Interrupted() : kExitPassword;
  if (mkdir(ToNarrow(m_qstrFolder).c_str(), 0700) != 0) {
    PrintError(QString("%1: the folder for the decrypted files can't be created (%2)")
                   .arg(m_qstrFolder, QString::fromLocal8Bit(strerror(errno))));
    return kExitNotWritten;
  }
  const qint64 nTotal = std::max<qint64>(CountBackupFiles(ToNarrow(options.qstrBackup)), 1);
  bool bWrongPassword = false;
  DecryptClient tool([&](const QByteArray& line) {
    if (RejectsPassword(line)) bWrongPassword = true;
    if (const auto nCount = CountIn(line)) bar.Show(ToolPercent(*nCount, nTotal));
    return false;
  });
  if (!tool.StartLeavingBackup(options.qstrBackup, m_qstrFolder, password)) {
    PrintError(DecryptToolPath() + ": " + tool.errorString());
    return kExitNotWritten;
  }
  tool.Wait([] { return StopSignal() != 0; });
  if (StopSignal() != 0) return Interrupted();
  bar.Clear();
  if (bWrongPassword) {
    PrintError(options.qstrBackup + ": wrong password");
    return kExitPassword;
  }
  for (const QByteArray& line : tool.readAllStandardError().split('\n')) {
    if (!line.isEmpty()) AddFailure(options, FromNarrow(line.toStdString()));
  }
  const bool bCrashed = tool.exitStatus() != QProcess::NormalExit;
  if (bCrashed) m_failures.push_back({QString(), "the decrypt tool ended early: files may be missing"});
  if (!bCrashed && tool.exitCode() != 0 && m_failures.empty())
    m_failures.push_back({QString(), "the decrypt tool failed: files may be missing"});
  if (m_failures.empty() || !QDir(m_qstrFolder).isEmpty(QDir::Files)) return kExitDone;
  for (const Failure& failure : m_failures)
    PrintError(failure.qstrFile.isEmpty() ? failure.qstrReason
                                          : failure.qstrFile + ": " + failure.qstrReason);
  PrintError(options.qstrBackup + ": the backup could not be decrypted");
  return kExitNotWritten;
}

}  // namespace orvandel
