#pragma once
#include <map>
#include <string>
#include <vector>

/// How a process ended.
struct ProcessResult {
  bool bHung = false;   ///< it was killed, since it didn't end in time
  int nSignal = 0;      ///< that ended it; 0 for none
  int nExitStatus = 0;  ///< without a signal
  std::string strOut;
  std::string strErr;
};

/// What a process is started with.
struct ProcessStart {
  std::vector<std::string> arguments;              ///< the program's path first
  std::map<std::string, std::string> environment;  ///< all of it
  std::string strFolder;                           ///< it runs in; its two outputs are kept in files here
  int nLimit = 20;                                 ///< seconds
};

/// Runs a process and whatever it starts to the end. The processes that outlive it are killed.
ProcessResult RunProcess(const ProcessStart& start);
