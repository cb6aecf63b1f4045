#pragma once
#include <QStringList>

namespace orvandel {

/// Parses the command line and runs its command, or prints help or version.
/// @param arguments including the program's name as the first.
/// @return the exit status.
int RunCommandLine(const QStringList& arguments);

}  // namespace orvandel
