#pragma once
#include <QProcess>
#include <string>

// Recoveries that never end, each in a child process: the test program itself with an environment variable,
// which registers a single test.

namespace orvandel {

enum class RecoveryChildKind {
  kCancelled,  ///< the user confirms a cancel at the third report of kChildFiles files and all documents
  kLateYes     ///< the same, but the user answers after the recovery has ended
};

/// Photos of both kinds.
constexpr int kChildFiles = 30;

/// Starts such a process. It prints "report" and the name with each report, "cancelled" once the cancel
/// flag is set, "ended" if the recovery returns, and the reason of its end.
/// @param strOut existing destination. @param strTemporary folder for its temporary files.
void StartRecoveryChild(QProcess& process, RecoveryChildKind kind, const std::string& strOut,
                        const std::string& strTemporary);

}  // namespace orvandel
