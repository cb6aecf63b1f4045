#pragma once
#include "cli/entry_filter.h"
#include "cli/options.h"

namespace orvandel {

/// Options of the command "files".
struct FilesOptions : BackupOptions {
  EntryConditions conditions;
  bool bNames = false;
  bool bCount = false;
  QString qstrDestination;  ///< absolute path; empty to list
  bool bReplace = false;
  bool bResume = false;
};

void AddFilesOptions(QCommandLineParser& parser);

/// @param arguments the backup and the patterns. @return 0, or the exit status for wrong usage.
int ReadFilesOptions(const QCommandLineParser& parser, const QStringList& arguments, FilesOptions& options);

/// Parses a number of bytes: digits, and optionally K, M, G or T for units of 1024.
std::optional<uint64_t> ParseSize(const QString& qstrSize);

/// Parses an ISO date or date and time, in UTC unless it has an offset. @return seconds since 1970.
std::optional<int64_t> ParseTime(const QString& qstrTime);

}  // namespace orvandel
