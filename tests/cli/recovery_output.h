#pragma once
#include <regex>
#include <string>
#include <vector>

#include "tests/cli/command.h"

namespace orvandel {

/// A text with each time stamp of a recovery replaced by a word.
inline std::string WithoutStamps(const std::string& strText) {
  static const std::regex stamp("([-_/])20[0-9]{12}([/.])");
  return std::regex_replace(strText, stamp, "$1STAMP$2");
}

/// Paths of a recovery's "Success" lines, below the destination and without time stamps.
inline std::vector<std::string> Succeeded(const CommandResult& result, const std::string& strOut) {
  const std::string strStart = "Success\t" + strOut;
  std::vector<std::string> paths;
  for (const std::string& strLine : result.Lines()) {
    if (strLine.rfind(strStart, 0) == 0) paths.push_back(WithoutStamps(strLine.substr(strStart.size())));
  }
  return paths;
}

inline std::vector<std::string> ErrorLines(const CommandResult& result) {
  CommandResult errors;
  errors.strOut = result.strErr;
  return errors.Lines();
}

}  // namespace orvandel
