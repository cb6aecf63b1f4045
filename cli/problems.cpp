#include "cli/problems.h"

#include <cstdio>
#include <set>
#include <utility>

#include "common/problem.h"
#include "common/text.h"

namespace {

void PrintOnce(const std::string& strFile, const std::string& strReason) {
  static std::set<std::pair<std::string, std::string>> printed;  // two readers may meet the same bad store
  if (printed.emplace(strFile, strReason).second)
    fprintf(stderr, "orvandel-cli: %s: %s\n", strFile.c_str(), strReason.c_str());
}

}  // namespace

void PrintProblems() {
  SetProblemHandler(PrintOnce);
}

void PrintError(const QString& qstrText) {
  fprintf(stderr, "orvandel-cli: %s\n", ToNarrow(qstrText).c_str());
}
