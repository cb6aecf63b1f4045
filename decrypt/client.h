#pragma once
#include <QProcess>
#include <functional>
#include <optional>

#include "decrypt/protocol.h"

namespace orvandel {

/// The task of a run of the tool.
enum class ToolTask { CheckPassword, Decrypt };

/// One run of the decrypt tool.
///
/// Like any QProcess it is used on the thread that created it. The handler is called on that thread, from
/// Wait or from its event loop. Never throws. A tool that can't be started counts as ended.
class DecryptClient : public QProcess {
 public:
  /// Called for each complete line of standard output, with its line feed. @return true to kill the tool.
  using LineHandler = std::function<bool(const QByteArray& line)>;

  explicit DecryptClient(LineHandler onLine, QObject* pParent = nullptr);

  /// Starts the tool with one command string. The password isn't quoted in it, so one with blanks becomes
  /// several arguments, which the tool joins. Standard error is merged into standard output, and the
  /// decrypted manifest is written to the backup's folder.
  /// @return false when it can't be started.
  bool StartByCommand(ToolTask task, const QString& qstrBackup, const QString& qstrFolder,
                      const QString& qstrPassword);

  /// Starts the tool to decrypt without changing the backup. Standard error isn't merged.
  /// @param password passed through standard input, so it isn't visible in the process list; overwritten with
  /// zeros.
  /// @return false when the tool can't be started; see errorString.
  bool StartLeavingBackup(const QString& qstrBackup, const QString& qstrFolder, QByteArray& password);

  /// Blocks until the tool has ended and its last line was handled.
  /// @param isCancelled polled some times a second; true kills the tool. If empty, the wait can't be
  /// cancelled.
  void Wait(const std::function<bool()>& isCancelled = {});
};

/// Full path of the tool.
QString DecryptToolPath();

/// True for a line that rejects the password.
bool RejectsPassword(const QByteArray& line);

/// The number of finished files in a count line, unchecked; nullopt for other lines. The digits must follow
/// kCountMark directly.
std::optional<qint64> CountIn(const QByteArray& line);

/// Converts a number of finished files to a percentage of the progress bar, at most kToolProgress.
/// @param nTotal above 0.
int ToolPercent(qint64 nDone, qint64 nTotal);

constexpr int kToolProgress = 10;  // percentage of the progress bar used for decrypting

}  // namespace orvandel
