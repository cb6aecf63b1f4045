#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

namespace orvandel {

/// A function, because of the undefined order of static initialisation.
inline const BackupAge& Ios10() {
  return kBackupAges[1];
}

/// A folder for an encrypted backup and one for the tool's output.
class DecryptTool : public testing::Test {
 protected:
  void SetUp() override { m_folder.MakeFolder("out"); }
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }
  ToolResult Decrypt() const { return RunTool({Backup(), Out(), kPassword}); }
  ToolResult Check(const std::string& strPassword) const {
    return RunTool({Backup(), Out(), strPassword, "CheckPasswd"});
  }

  /// Expects all files of a backup except some.
  void ExpectFiles(const KnownBackup& known, const std::vector<std::string>& without = {}) const;

  TemporaryFolder m_folder;
};

/// The same for each generation of backups.
class DecryptToolOfAge : public DecryptTool, public testing::WithParamInterface<BackupAge> {};

}  // namespace orvandel
