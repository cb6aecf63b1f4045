#include <QCoreApplication>
#include <new>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/options.h"
#include "cli/problems.h"
#include "cli/stop_signal.h"
#include "common/text.h"

namespace {

int Run(const Options& options) {
  switch (options.command) {
    case Options::Command::Backups:
      return RunBackups(options);
    case Options::Command::Scan:
      return RunScan(options);
    case Options::Command::Recover:
      return RunRecover(options);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  inner_initUnicodeMap("UTF-8");
  PrintProblems();
  CatchStopSignals();
  Options options;
  int nExitStatus = 0;
  if (!ReadOptions(QCoreApplication::arguments(), options, nExitStatus)) return nExitStatus;
  try {
    return Run(options);
  } catch (const std::out_of_range& error) {  // a template that can't be used
    PrintError(FromNarrow(error.what()));
    return kExitNotWritten;
  } catch (const std::bad_alloc&) {  // a store made to have no end, say
    PrintError("out of memory");
    return kExitNotWritten;
  }
}
