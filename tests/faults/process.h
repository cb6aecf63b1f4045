#pragma once
#include <map>
#include <string>
#include <vector>

namespace orvandel {

/// How a process ended.
struct ProcessResult {
  bool bHung = false;   ///< it was killed after the time limit
  int nSignal = 0;      ///< the signal that ended it; 0 for none
  int nExitStatus = 0;  ///< without a signal
  std::string strOut;
  std::string strErr;
};

/// How to start a process.
struct ProcessStart {
  std::vector<std::string> arguments;              ///< the program's path first
  std::map<std::string, std::string> environment;  ///< all of it
  std::string strFolder;  ///< working folder; files for its two outputs are kept here
  int nLimit = 20;        ///< seconds
};

/// Runs a process and its descendants to the end. Processes that outlive it are killed.
ProcessResult RunProcess(const ProcessStart& start);

}  // namespace orvandel
