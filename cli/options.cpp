#include "cli/options.h"

#include <QDir>

#include "cli/exit_status.h"
#include "cli/output.h"

namespace orvandel {

namespace {

constexpr char kJson[] = "json";
constexpr char kQuiet[] = "quiet";
constexpr char kPasswordStdin[] = "password-stdin";
constexpr char kPasswordFile[] = "password-file";
constexpr char kForce[] = "force";

}  // namespace

void AddOptions(QCommandLineParser& parser) {
  parser.addOption({kJson, "Prints JSON in UTF-8 instead of text."});
  parser.addOption({{"q", kQuiet}, "Hides the progress bar and the lines of recovered files."});
}

void ReadOptions(const QCommandLineParser& parser, Options& options) {
  options.bJson = parser.isSet(kJson);
  options.bQuiet = parser.isSet(kQuiet);
}

void AddBackupOptions(QCommandLineParser& parser) {
  parser.addOption({kPasswordStdin, "Reads the password of an encrypted backup from standard input."});
  parser.addOption(
      {kPasswordFile, "Reads the password of an encrypted backup from the first line of a file.", "FILE"});
  parser.addOption(
      {kForce, "Decrypts an encrypted backup even if the temporary folder seems too small for it."});
}

void ReadBackupOptions(const QCommandLineParser& parser, const QString& qstrBackup, BackupOptions& options) {
  ReadOptions(parser, options);
  options.qstrBackup = AbsolutePath(qstrBackup);
  options.qstrPasswordFile = parser.value(kPasswordFile);
  options.bPasswordStdin = parser.isSet(kPasswordStdin);
  options.bForce = parser.isSet(kForce);
}

QString AbsolutePath(const QString& qstrPath) {
  return QDir(qstrPath).absolutePath();
}

int WrongUsage(QString qstrReason) {
  if (qstrReason.endsWith('.')) qstrReason.chop(1);
  PrintError(qstrReason + "; see 'orvandel-cli --help'");
  return kExitUsage;
}

}  // namespace orvandel
