#pragma once
#include <sqlite3.h>

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

/// Runs a statement on a store, such as "Manifest.db". @param bytes bound to its "?".
inline void RunSql(const std::string& strStore, const char* pszStatement, const QByteArray& bytes = {}) {
  sqlite3* pStore = nullptr;
  sqlite3_stmt* pStatement = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open_v2(strStore.c_str(), &pStore, SQLITE_OPEN_READWRITE, nullptr));
  ASSERT_EQ(SQLITE_OK, sqlite3_prepare_v2(pStore, pszStatement, -1, &pStatement, nullptr));
  sqlite3_bind_blob(pStatement, 1, bytes.constData(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
  EXPECT_EQ(SQLITE_DONE, sqlite3_step(pStatement));
  sqlite3_finalize(pStatement);
  sqlite3_close(pStore);
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
