#pragma once
#include "common/places.h"

// The contract between the decrypt tool and the programs that run it. The name of the manifest that it writes
// is kDecryptedManifestName in common/places.h, since the session looks for it too.
//
//   "Velmora Orvandel" [options] BACKUP FOLDER PASSWORD [CheckPasswd]
//
// Standard output has a line with kCountMark and a decimal number right behind it as files get done, or one
// with kWrongPasswordMark. With kCheckMode no count comes before the password has proved right. Standard
// error has a line "FILE: REASON" for each failure. Lines end in a line feed.

/// File name of the tool, which is installed beside the programs.
constexpr char kToolFileName[] = "Velmora Orvandel";

/// The last argument of a run that only tries the password.
constexpr char kCheckMode[] = "CheckPasswd";

/// Writes the manifest into FOLDER too, and nothing into BACKUP.
constexpr char kLeaveBackupOption[] = "--leave-backup";
/// Takes the password from standard input, to its end; there is no PASSWORD argument then.
constexpr char kPasswordInputOption[] = "--password-stdin";

constexpr char kCountMark[] = "Count:";
constexpr char kWrongPasswordMark[] = "Wrong password";

/// The reason for a file that the manifest lists and the backup lacks.
constexpr char kMissingSource[] = "can't be opened: No such file or directory";

/// Exit status of the tool.
enum ToolStatus {
  kToolDone = 0,
  kToolFailed = 1,  ///< something could not be read or written: one line on standard error for each
  kToolUsage = 2,
  kToolWrongPassword = 3,
};
