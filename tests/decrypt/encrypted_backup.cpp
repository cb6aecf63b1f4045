#include "tests/decrypt/encrypted_backup.h"

#include <QCoreApplication>
#include <QProcess>
#include <sstream>

#include "tests/cli/command.h"

namespace orvandel {

namespace {

using Age = Encryption::Age;
using Layout = BackupBuilder::Layout;

constexpr int kLimit = 120000;  // milliseconds

QByteArray SomeBytes(int nSize, int nSeed) {
  QByteArray bytes(nSize, '\0');
  for (int i = 0; i < nSize; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251 + nSeed);
  return bytes;
}

KnownBackup WriteBackup(const std::string& strFolder, const BackupAge& age, const Encryption* pEncryption) {
  KnownBackup known;
  BackupBuilder backup(QString::fromStdString(strFolder), age.layout);
  if (pEncryption) backup.encrypt(*pEncryption);
  backup.writeInfo({});
  const auto add = [&](const char* pszDomain, const QString& path, const QByteArray& bytes) {
    const QString file = backup.addFile(pszDomain, path, bytes);
    const std::string strId = BackupBuilder::fileId(pszDomain, path).toStdString();
    known.files[strId] = bytes.toStdString();
    known.paths[strId] = file.toStdString();
    return strId;
  };
  backup.addEntry("HomeDomain", "", BackupBuilder::kDirectory);
  backup.addEntry("HomeDomain", "Library", BackupBuilder::kDirectory);
  for (const int nSize : {0, 1, 15, 16, 17, 31, 32, 4096, 262143, 262144, 262145, 3 * 1024 * 1024 + 1})
    add("HomeDomain", QString("Library/file %1").arg(nSize), SomeBytes(nSize, nSize));
  backup.addEntry("HomeDomain", "Library/link", BackupBuilder::kLink);
  add("AppDomain-com.example.Sketch", QString::fromUtf8("Documents/Grüße – 文.dat"), SomeBytes(500, 1));
  for (int i = 0; i < 40; ++i) add("MediaDomain", QString("Media/%1").arg(i), SomeBytes(100 + i, i));
  known.strPlainId = add("MediaDomain", "Media/plain", SomeBytes(777, 3));
  backup.leavePlain("MediaDomain", "Media/plain");
  backup.finish();
  return known;
}

std::vector<std::string> LinesOf(const QByteArray& bytes) {
  std::vector<std::string> lines;
  std::istringstream stream(bytes.toStdString());
  for (std::string strLine; std::getline(stream, strLine);) lines.push_back(strLine);
  return lines;
}

}  // namespace

const std::vector<BackupAge> kBackupAges = {{"BeforeIos10", Age::BeforeIos10, Layout::Mbdb},
                                            {"Ios10", Age::Ios10, Layout::Db},
                                            {"From102", Age::From102, Layout::Db}};

void PrintTo(const BackupAge& age, std::ostream* pStream) {
  *pStream << age.pszName;
}

std::string NameOfAge(const testing::TestParamInfo<BackupAge>& info) {
  return info.param.pszName;
}

KnownBackup WriteEncryptedBackup(const std::string& strFolder, const BackupAge& age, int nRounds) {
  const Encryption encryption{kPassword, age.age, nRounds, 1};
  return WriteBackup(strFolder, age, &encryption);
}

KnownBackup WritePlainBackup(const std::string& strFolder, const BackupAge& age) {
  return WriteBackup(strFolder, age, nullptr);
}

std::vector<long long> ToolResult::Counts() const {
  std::vector<long long> counts;
  for (const std::string& strLine : out) {
    EXPECT_EQ(0u, strLine.find("Count:")) << strLine;
    counts.push_back(std::atoll(strLine.substr(std::min<size_t>(6, strLine.size())).c_str()));
  }
  return counts;
}

std::string ToolPath() {
  return QCoreApplication::applicationDirPath().toStdString() + "/Velmora Orvandel";
}

ToolResult RunTool(const std::vector<std::string>& arguments) {
  return RunProgram(ToolPath(), arguments);
}

ToolResult RunProgram(const std::string& strProgram, const std::vector<std::string>& arguments) {
  QProcess process;
  process.start(QString::fromStdString(strProgram), Arguments(arguments));
  ToolResult result;
  if (!process.waitForFinished(kLimit)) {
    ADD_FAILURE() << strProgram << ": " << process.errorString().toStdString();
    process.kill();
    process.waitForFinished(kLimit);
  }
  if (process.exitStatus() == QProcess::NormalExit) result.nExitStatus = process.exitCode();
  result.out = LinesOf(process.readAllStandardOutput());
  result.err = LinesOf(process.readAllStandardError());
  return result;
}

}  // namespace orvandel
