#pragma once
#include <QProcess>
#include <string>

// Recoveries that don't end well for their process, each in a child process of the test: the test program
// itself with a variable in its environment, and the one test that comes with it.

enum class RecoveryChildKind {
  kCancelled,  ///< the user confirms a cancel at the third report of kChildFiles files and all documents
  kLateYes     ///< the same, but the answer comes when the recovery has ended
};

/// Photos of both kinds.
constexpr int kChildFiles = 30;

/// Starts such a process. It prints "report" and the name with each report, "cancelled" once the cancel
/// flag is set, "ended" should the recovery come back, and the reason of its end.
/// @param strOut the destination, which is there. @param strTemporary where it leaves its temporary files.
void StartRecoveryChild(QProcess& process, RecoveryChildKind kind, const std::string& strOut,
                        const std::string& strTemporary);
