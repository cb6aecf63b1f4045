#include "common/problem.h"

#include <atomic>

namespace {
std::atomic<ProblemHandler> g_pfnHandler{nullptr};
}

void SetProblemHandler(ProblemHandler pfnHandler) {
  g_pfnHandler = pfnHandler;
}

void ReportProblem(const std::string& strFile, const std::string& strReason) {
  if (ProblemHandler pfnHandler = g_pfnHandler) pfnHandler(strFile, strReason);
}
