#pragma once
#include "cli/open_backup.h"
#include "cli/recover_options.h"
#include "cli/recovery_index.h"
#include "cli/recovery_report.h"
#include "export/file_copy.h"
#include "export/recovery.h"

// The steps of a recovery, in the same order as in the window. Each step stops between two files after a
// signal.

namespace orvandel {

/// True when a category is to be recovered.
bool IsWanted(const RecoverOptions& options, CategoryNumber nNumber);

/// Number of files and conversations to recover.
qint64 CountWork(const RecoverOptions& options, const BackupRecords& records);

/// Copies the files.
void RecoverFiles(const RecoverOptions& options, OpenBackup& backup, RecoveryReport& report);

/// True when a category of documents is to be recovered.
bool WantsDocuments(const RecoverOptions& options);

/// Writes the documents. @param recovery initialised, with the report as its handler.
/// @param index receives the keys of the conversations.
void RecoverDocuments(const RecoverOptions& options, const BackupRecords& records, CRecovery& recovery,
                      RecoveryReport& report, RecoveryIndex& index);

/// Reports files that could not be decrypted or read, and so are missing from the recovery, as failed.
void ReportLosses(const RecoverOptions& options, const OpenBackup& backup, RecoveryReport& report);

}  // namespace orvandel
