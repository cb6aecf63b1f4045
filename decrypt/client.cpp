#include "decrypt/client.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "common/text.h"

namespace orvandel {

namespace {

constexpr int kStartLimit = 30000;  // milliseconds
constexpr int kPollStep = 50;       // milliseconds

}  // namespace

DecryptClient::DecryptClient(LineHandler onLine, QObject* pParent) : QProcess(pParent) {
  // The connection owns the handler: QProcess may still report lines in its destructor.
  connect(this, &QProcess::readyRead, this, [this, onLine = std::move(onLine)] {
    while (canReadLine()) {
      if (!onLine(readLine())) continue;
      kill();
      return;
    }
  });
}

bool DecryptClient::StartByCommand(ToolTask task, const QString& qstrBackup, const QString& qstrFolder,
                                   const QString& qstrPassword) {
  // One string, split by Qt: a password with a blank deliberately becomes two arguments.
  QString qstrCommand =
      "\"" + DecryptToolPath() + "\" \"" + qstrBackup + "\" \"" + qstrFolder + "\" " + qstrPassword;
  if (task == ToolTask::CheckPassword) qstrCommand += QString(" ") + kCheckMode;
  setProcessChannelMode(MergedChannels);
  QStringList arguments = splitCommand(qstrCommand);
  const QString qstrProgram = arguments.takeFirst();
  start(qstrProgram, arguments, ReadWrite);
  return waitForStarted(kStartLimit);
}

bool DecryptClient::StartLeavingBackup(const QString& qstrBackup, const QString& qstrFolder,
                                       QByteArray& password) {
  start(DecryptToolPath(), {kLeaveBackupOption, kPasswordInputOption, qstrBackup, qstrFolder});
  const bool bStarted = waitForStarted(kStartLimit);
  if (bStarted) {
    write(password);
    closeWriteChannel();
  }
  password.fill('\0');
  return bStarted;
}

void DecryptClient::Wait(const std::function<bool()>& isCancelled) {
  if (!isCancelled) {
    waitForFinished(-1);
    return;
  }
  while (state() != NotRunning) {
    waitForFinished(kPollStep);
    if (isCancelled()) kill();
  }
}

QString DecryptToolPath() {
  return FromNarrow(ProgramFolder() + kToolFileName);
}

bool RejectsPassword(const QByteArray& line) {
  return line.contains(kWrongPasswordMark);
}

std::optional<qint64> CountIn(const QByteArray& line) {
  const auto nMark = line.indexOf(kCountMark);
  if (nMark < 0) return std::nullopt;
  return strtoll(line.constData() + nMark + strlen(kCountMark), nullptr, 10);
}

int ToolPercent(qint64 nDone, qint64 nTotal) {
  // Clamped on both sides to avoid overflow, which could report the scan as complete.
  return static_cast<int>(std::clamp(nDone, -nTotal, nTotal) * kToolProgress / nTotal);
}

}  // namespace orvandel
