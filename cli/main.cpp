#include <QCoreApplication>
#include <new>
#include <stdexcept>

#include "cli/command_line.h"
#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/stop_signal.h"
#include "common/text.h"

using namespace orvandel;

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  inner_initUnicodeMap("UTF-8");
  PrintProblems();
  CatchStopSignals();
  try {
    return RunCommandLine(QCoreApplication::arguments());
  } catch (const std::out_of_range& error) {  // an unusable template
    PrintError(FromNarrow(error.what()));
    return kExitNotWritten;
  } catch (const std::bad_alloc&) {  // for example a hostile store
    PrintError("out of memory");
    return kExitNotWritten;
  }
}
