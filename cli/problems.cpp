#include "cli/problems.h"

#include <cstdio>
#include <set>
#include <utility>

#include "cli/output.h"
#include "common/problem.h"
#include "common/text.h"

namespace {

void PrintOnce(const std::string& strFile, const std::string& strReason) {
  static std::set<std::pair<std::string, std::string>> printed;  // two readers may meet the same bad store
  if (printed.emplace(strFile, strReason).second) PrintError(FromNarrow(strFile + ": " + strReason));
}

}  // namespace

void PrintProblems() {
  SetProblemHandler(PrintOnce);
}

void PrintError(const QString& qstrText) {
  fprintf(stderr, "orvandel-cli: %s\n", ToNarrow(Printable(qstrText)).c_str());
}
