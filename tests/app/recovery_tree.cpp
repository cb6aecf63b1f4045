#include "tests/app/recovery_tree.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>

#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

namespace orvandel {

RecoveredTree RecoveredFiles(const std::string& strOut) {
  RecoveredTree files;
  for (const std::string& strFile : FilesBelow(strOut)) {
    const std::string strBytes = ReadFile(strOut + "/" + strFile);
    const bool bPage = strFile.size() > 5 && strFile.substr(strFile.size() - 5) == ".html";
    const auto [it, bNew] =
        files.emplace(WithoutStamps("/" + strFile), bPage ? WithoutStamps(strBytes) : strBytes);
    EXPECT_TRUE(bNew) << it->first << " comes under two stamps";
  }
  return files;
}

void ExpectSameFiles(const RecoveredTree& expected, const RecoveredTree& files) {
  EXPECT_FALSE(expected.empty());
  for (const auto& [strFile, strBytes] : expected) {
    const auto it = files.find(strFile);
    if (it == files.end())
      ADD_FAILURE() << strFile << " is missing";
    else
      EXPECT_TRUE(strBytes == it->second) << strFile << " has other bytes";
  }
  for (const auto& [strFile, strBytes] : files)
    EXPECT_EQ(1u, expected.count(strFile)) << strFile << " is too much";
}

std::string RecoverByCommand(const std::string& strBackup, const std::string& strOut) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("LC_ALL", "C.UTF-8");
  process.setProcessEnvironment(environment);
  process.start(QCoreApplication::applicationDirPath() + "/orvandel-cli",
                {"recover", QString::fromStdString(strBackup), QString::fromStdString(strOut), "--quiet",
                 "--no-index"});
  EXPECT_TRUE(process.waitForFinished(60000));
  EXPECT_EQ(0, process.exitCode()) << process.readAllStandardError().toStdString();
  return strOut;
}

}  // namespace orvandel
