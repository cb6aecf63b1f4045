#pragma once
#include <QProcess>
#include <QStringList>
#include <string>
#include <vector>

#include "tests/support.h"

// The real program, which is built beside the tests, as a child process.

namespace orvandel {

/// Path of the executable.
QString ProgramPath();

/// Whether starting the window is safe on this machine: none of its fixed folders exists.
bool MayStartWindow();

/// The prefix command that runs another in a private file system: the machine's, with "/Library" from a
/// folder of that name inside a test's folder. It vanishes with its last process.
QStringList InOwnRoot(const TemporaryFolder& folder);
/// Why this machine can't run it; empty if it can.
std::string ObstacleToOwnRoot(const TemporaryFolder& folder);

/// A running program, which is terminated by the destructor.
class Program : public QProcess {
 public:
  ~Program() override;

  /// Starts it on the offscreen platform, or on a display.
  /// @param environment "NAME=VALUE", replacing existing values. @param prefix a command before it.
  void Start(const QStringList& arguments, const QStringList& environment = {},
             const QStringList& prefix = {});

  /// Whether it still runs after a second, without a child process.
  bool StaysAlone();
  /// Waits until it ends by itself. @return its exit status, -1 without one.
  int EndStatus();
};

/// Processes that have "NAME=VALUE" in their environment.
std::vector<qint64> ProcessesWith(const QByteArray& variable);
/// Arguments of a process, its own name first.
QStringList ArgumentsOf(qint64 nProcess);

}  // namespace orvandel
