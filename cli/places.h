#pragma once
#include <QString>

namespace orvandel {

/// Why the private work folder could not be created, with its location; empty when it exists.
QString WorkFolderProblem();

/// Ends the process immediately, without destructors, but removes the private work folder. For when another
/// thread can't be stopped.
[[noreturn]] void EndProcess(int nExitStatus);

/// Sets the folder that contains the backups; the system's fixed root by default.
void SetBackupRoot(const QString& qstrFolder);

}  // namespace orvandel
