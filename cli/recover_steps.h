#pragma once
#include "cli/open_backup.h"
#include "cli/recover_options.h"
#include "cli/recovery_report.h"
#include "export/file_copy.h"
#include "export/recovery.h"

// What a recovery of everything wanted does, in the order of the window. Each step stops between two files
// once a signal asks for it.

/// True when a category is among those to recover.
bool IsWanted(const RecoverOptions& options, CategoryNumber nNumber);

/// Number of files and conversations there are to do.
qint64 CountWork(const RecoverOptions& options, const BackupRecords& records);

/// Copies the files.
void RecoverFiles(const RecoverOptions& options, OpenBackup& backup, RecoveryReport& report);

/// True when a category of documents is among those to recover.
bool WantsDocuments(const RecoverOptions& options);

/// Writes the documents. @param recovery initialised, with the report as its handler.
void RecoverDocuments(const RecoverOptions& options, const BackupRecords& records, CRecovery& recovery,
                      RecoveryReport& report);

/// Reports as failed what is missing from the recovery because it could not be decrypted or read.
void ReportLosses(const RecoverOptions& options, const OpenBackup& backup, RecoveryReport& report);
