#pragma once
#include <QProcess>
#include <QStringList>
#include <string>
#include <vector>

#include "tests/support.h"

// The real program, which is built beside the tests, as a child process.

/// Path of the executable.
QString ProgramPath();

/// Whether starting the window may change nothing of this machine: none of its fixed folders is there.
bool MayStartWindow();

/// The command in front of another that runs it in a file system of its own: the machine's, with "/Library"
/// from a folder of that name inside a test's folder. All of it is gone with the last process there.
QStringList InOwnRoot(const TemporaryFolder& folder);
/// Why this machine can't run it; empty when it can.
std::string ObstacleToOwnRoot(const TemporaryFolder& folder);

/// A running program. Goes with the object.
class Program : public QProcess {
 public:
  ~Program() override;

  /// Starts it on the offscreen platform, or on a display.
  /// @param environment "NAME=VALUE", in place of what stands there. @param prefix a command in front of it.
  void Start(const QStringList& arguments, const QStringList& environment = {},
             const QStringList& prefix = {});

  /// Whether it still runs after a second, without a child of its own.
  bool StaysAlone();
  /// Whether it ends by itself in time. @return its exit status, -1 without one.
  int EndStatus();
};

/// Processes that have "NAME=VALUE" in their environment.
std::vector<qint64> ProcessesWith(const QByteArray& variable);
/// Arguments of a process, its own name first.
QStringList ArgumentsOf(qint64 nProcess);
