#pragma once
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "sample/backup_builder.h"

// Backups whose plain content is known, and the tool that decrypts them, which is built beside the tests.

constexpr char kPassword[] = "geh heim";  // as many people's, it has a blank

/// Files of many sizes, directories, a link, and a file in plain.
struct KnownBackup {
  std::map<std::string, std::string> files;  ///< identifiers and plain contents
  std::map<std::string, std::string> paths;  ///< identifiers and full paths in the backup
  std::string strPlainId;                    ///< of the file that has no key
};

/// What differs between the ages of backups.
struct BackupAge {
  const char* pszName;
  Encryption::Age age;
  BackupBuilder::Layout layout;
};

void PrintTo(const BackupAge& age, std::ostream* pStream);
std::string NameOfAge(const testing::TestParamInfo<BackupAge>& info);
extern const std::vector<BackupAge> kBackupAges;

/// Writes an encrypted backup under kPassword. @param nRounds of its derivation.
KnownBackup WriteEncryptedBackup(const std::string& strFolder, const BackupAge& age, int nRounds = 20);
/// The same one in plain.
KnownBackup WritePlainBackup(const std::string& strFolder, const BackupAge& age);

struct ToolResult {
  int nExitStatus = -1;  ///< -1 when a signal ended it
  std::vector<std::string> out, err;

  /// Numbers of the "Count:" lines; fails the test when standard output holds anything else.
  std::vector<long long> Counts() const;
};

std::string ToolPath();
ToolResult RunTool(const std::vector<std::string>& arguments);
/// Runs any program.
ToolResult RunProgram(const std::string& strProgram, const std::vector<std::string>& arguments);
