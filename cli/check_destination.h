#pragma once
#include <QString>

namespace orvandel {

/// Creates the folder to write to, with its parents, if it is missing. One inside the backup is refused.
/// @return 0, or the exit status of the process, with a line printed on standard error.
int CheckDestination(const QString& qstrBackup, const QString& qstrDestination);

}  // namespace orvandel
