#include "common/problem.h"

#include <atomic>

namespace {
std::atomic<ProblemHandler> g_pfnHandler{nullptr};
std::atomic<ProblemHandler> g_pfnLossHandler{nullptr};
}  // namespace

void SetProblemHandler(ProblemHandler pfnHandler) {
  g_pfnHandler = pfnHandler;
}

void ReportProblem(const std::string& strFile, const std::string& strReason) {
  if (ProblemHandler pfnHandler = g_pfnHandler) pfnHandler(strFile, strReason);
}

void SetLossHandler(ProblemHandler pfnHandler) {
  g_pfnLossHandler = pfnHandler;
}

void ReportLoss(const std::string& strFile, const std::string& strReason) {
  ReportProblem(strFile, strReason);
  if (ProblemHandler pfnHandler = g_pfnLossHandler) pfnHandler(strFile, strReason);
}
