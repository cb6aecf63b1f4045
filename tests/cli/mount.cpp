#include "tests/cli/mount.h"

namespace orvandel {

namespace {
constexpr int kLimit = 60000;  // milliseconds
}

bool MayMount(const std::string& strFolder) {
  QProcess process;
  process.start("unshare", Arguments({"-rm", "mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", strFolder}));
  return process.waitForFinished(kLimit) && process.exitStatus() == QProcess::NormalExit &&
         process.exitCode() == 0;
}

CommandResult RunOnMount(const char* pszOptions, const std::string& strFolder, const std::string& strKept,
                         const std::vector<std::string>& command) {
  static constexpr char kScript[] =
      "options=$1 out=$2 kept=$3; shift 3; mount -t tmpfs -o \"$options\" tmpfs \"$out\" || exit 99\n"
      "\"$@\"; status=$?; cp -r \"$out\" \"$kept\" || exit 98; exit $status";
  std::vector<std::string> arguments = {
      "-rm", "sh", "-c", kScript, "sh", pszOptions, strFolder, strKept, CommandPath().toStdString()};
  arguments.insert(arguments.end(), command.begin(), command.end());
  QProcess process;
  PrepareCommand(process, {});
  process.start("unshare", Arguments(arguments));
  return FinishCommand(process);
}

}  // namespace orvandel
