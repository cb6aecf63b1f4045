#pragma once
#include "cli/options.h"

/// Gets the password of a backup: from standard input, from a file, or by a prompt without echo on a
/// terminal. The first line counts, without its end.
/// @param password receives it, UTF-8.
/// @return false, with a line on standard error, when there is none to be had.
bool ReadPassword(const BackupOptions& options, QByteArray& password);
