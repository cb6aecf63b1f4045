#pragma once
#include "cli/options.h"

namespace orvandel {

/// Reads the password of a backup from standard input, from a file, or from the terminal without echo. Only
/// the first line is used, without its line end.
/// @param password receives the password, UTF-8.
/// @return false when there is none, with a line printed on standard error.
bool ReadPassword(const BackupOptions& options, QByteArray& password);

}  // namespace orvandel
