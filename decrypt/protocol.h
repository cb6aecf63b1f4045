#pragma once
#include "common/places.h"

// The contract between the decrypt tool and the programs that run it. The name of the decrypted manifest is
// in common/places.h, since the session uses it too.
//
//   "Velmora Orvandel" [options] BACKUP FOLDER PASSWORD [CheckPasswd]
//
// Standard output has lines with kCountMark directly followed by the decimal number of finished files, or a
// line with kWrongPasswordMark. With kCheckMode a count is printed only after the password was verified.
// Standard error has a line "FILE: REASON" for each failure. Lines end with a line feed.

namespace orvandel {

/// File name of the tool, installed in the programs' folder.
constexpr char kToolFileName[] = "Velmora Orvandel";

/// The last argument of a run that only checks the password.
constexpr char kCheckMode[] = "CheckPasswd";

/// Writes the manifest to FOLDER too, and nothing to BACKUP.
constexpr char kLeaveBackupOption[] = "--leave-backup";
/// Reads the password from all of standard input instead of the argument PASSWORD.
constexpr char kPasswordInputOption[] = "--password-stdin";

constexpr char kCountMark[] = "Count:";
constexpr char kWrongPasswordMark[] = "Wrong password";

/// The reason for a file that is in the manifest but missing from the backup.
constexpr char kMissingSource[] = "can't be opened: No such file or directory";

/// Exit status of the tool.
enum ToolStatus {
  kToolDone = 0,
  kToolFailed = 1,  ///< something could not be read or written: with a line on standard error for each
  kToolUsage = 2,
  kToolWrongPassword = 3,
};

}  // namespace orvandel
