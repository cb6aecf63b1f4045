#pragma once
#include <QStringList>

/// Reads the command line and runs its command. Prints help and version itself.
/// @param arguments with the program's name first.
/// @return the exit status.
int RunCommandLine(const QStringList& arguments);
