#pragma once
#include <QProcess>
#include <functional>
#include <optional>

#include "decrypt/protocol.h"

/// What a run of the tool does.
enum class ToolTask { CheckPassword, Decrypt };

/// One run of the decrypt tool beside the program.
///
/// As a QProcess it belongs to the thread that makes it. The lines of the tool's standard output arrive on
/// that thread, while it waits in Wait or runs its event loop. The run never throws, and a tool that can't be
/// started has simply ended.
class DecryptClient : public QProcess {
 public:
  /// Gets each whole line in order, with its line feed. @return true to kill the tool.
  using LineHandler = std::function<bool(const QByteArray& line)>;

  explicit DecryptClient(LineHandler onLine, QObject* pParent = nullptr);

  /// Starts the tool by one command string, in which the password has no quotes: one with blanks arrives in
  /// pieces, which the tool joins. Standard error is read as part of standard output, and the decrypted
  /// manifest goes into the backup's own folder.
  /// @return false when it could not be started.
  bool StartByCommand(ToolTask task, const QString& qstrBackup, const QString& qstrFolder,
                      const QString& qstrPassword);

  /// Starts the tool to decrypt without a change in the backup. Standard error stays apart.
  /// @param password written to the tool's standard input, so that no list of processes shows it; overwritten
  /// with zeros.
  /// @return false when the tool could not be started; see errorString.
  bool StartLeavingBackup(const QString& qstrBackup, const QString& qstrFolder, QByteArray& password);

  /// Blocks until the tool has ended and its last line has arrived.
  /// @param isCancelled asked some times a second; true kills the tool. Without it nothing interrupts the
  /// wait.
  void Wait(const std::function<bool()>& isCancelled = {});
};

/// Full path of the tool.
QString DecryptToolPath();

/// True for a line that rejects the password.
bool RejectsPassword(const QByteArray& line);

/// The number of files done that a line reports, of any value; none for another line. Digits that aren't
/// right behind the mark don't count.
std::optional<qint64> CountIn(const QByteArray& line);

/// The share of a progress bar that a number of files done makes up: kToolProgress for all of them or more.
/// @param nTotal above 0.
int ToolPercent(qint64 nDone, qint64 nTotal);

constexpr int kToolProgress = 10;  // percent of the bar that belong to the tool
