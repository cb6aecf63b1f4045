#pragma once
#include <QFile>
#include <string>
#include <vector>

#include "tests/cli/command.h"
#include "tests/decrypt/encrypted_backup.h"

// Backups of all ages, plain and encrypted, for the commands that go through the manifest.

namespace orvandel {

struct AnyAge {
  BackupAge age;
  bool bEncrypted;
};

inline void PrintTo(const AnyAge& any, std::ostream* pStream) {
  *pStream << any.age.pszName << (any.bEncrypted ? ", encrypted" : ", plain");
}

inline std::string NameOfAnyAge(const testing::TestParamInfo<AnyAge>& info) {
  return std::string(info.param.age.pszName) + (info.param.bEncrypted ? "Encrypted" : "Plain");
}

inline std::vector<AnyAge> AllAges() {
  std::vector<AnyAge> ages;
  for (const BackupAge& age : kBackupAges) {
    ages.push_back({age, false});
    ages.push_back({age, true});
  }
  return ages;
}

inline KnownBackup WriteAnyBackup(const std::string& strFolder, const AnyAge& any) {
  return any.bEncrypted ? WriteEncryptedBackup(strFolder, any.age) : WritePlainBackup(strFolder, any.age);
}

/// Runs orvandel-cli with the password of encrypted backups.
inline CommandResult RunWithPassword(const std::string& strFolder, std::vector<std::string> arguments) {
  const std::string strFile = strFolder + "/password";
  QFile file(QString::fromStdString(strFile));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(kPassword);
  file.close();
  arguments.insert(arguments.end(), {"--password-file", strFile});
  return RunCommand(arguments);
}

}  // namespace orvandel
