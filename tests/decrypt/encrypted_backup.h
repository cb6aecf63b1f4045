#pragma once
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "sample/backup_builder.h"

// Backups with known plain content, and the decrypt tool, which is built beside the tests.

namespace orvandel {

constexpr char kPassword[] = "geh heim";  // with a space

/// Files of many sizes, directories, a link, and an unencrypted file.
struct KnownBackup {
  std::map<std::string, std::string> files;  ///< identifiers and plain contents
  std::map<std::string, std::string> paths;  ///< identifiers and full paths in the backup
  std::string strPlainId;                    ///< of the file that has no key
};

/// The differences between the generations of backups.
struct BackupAge {
  const char* pszName;
  Encryption::Age age;
  BackupBuilder::Layout layout;
};

void PrintTo(const BackupAge& age, std::ostream* pStream);
std::string NameOfAge(const testing::TestParamInfo<BackupAge>& info);
extern const std::vector<BackupAge> kBackupAges;

/// Writes a backup encrypted with kPassword. @param nRounds rounds of the key derivation.
KnownBackup WriteEncryptedBackup(const std::string& strFolder, const BackupAge& age, int nRounds = 20);
/// The same without encryption.
KnownBackup WritePlainBackup(const std::string& strFolder, const BackupAge& age);

struct ToolResult {
  int nExitStatus = -1;  ///< -1 if ended by a signal
  std::vector<std::string> out, err;

  /// Numbers of the "Count:" lines; fails the test if there is any other output.
  std::vector<long long> Counts() const;
};

std::string ToolPath();
ToolResult RunTool(const std::vector<std::string>& arguments);
/// Runs any program.
ToolResult RunProgram(const std::string& strProgram, const std::vector<std::string>& arguments);

}  // namespace orvandel
