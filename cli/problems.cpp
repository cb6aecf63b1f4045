#include "cli/problems.h"

#include <cstdio>

#include "cli/output.h"
#include "common/problem.h"
#include "common/text.h"

namespace {

using ProblemSet = std::set<std::pair<std::string, std::string>>;

ProblemSet& LossSet() {
  static ProblemSet losses;
  return losses;
}

void PrintOnce(const std::string& strFile, const std::string& strReason) {
  static ProblemSet printed;  // two readers may meet the same bad store
  if (printed.emplace(strFile, strReason).second) PrintError(FromNarrow(strFile + ": " + strReason));
}

}  // namespace

void PrintProblems() {
  SetProblemHandler(PrintOnce);
  SetLossHandler([](const std::string& strFile, const std::string& strReason) {
    LossSet().emplace(strFile, strReason);
  });
}

const std::set<std::pair<std::string, std::string>>& Losses() {
  return LossSet();
}

void PrintError(const QString& qstrText) {
  fprintf(stderr, "orvandel-cli: %s\n", ToNarrow(Printable(qstrText)).c_str());
}
