#include "common/problem.h"

#include <atomic>
#include <cerrno>
#include <cstring>

namespace orvandel {

namespace {
std::atomic<ProblemHandler> g_pfnHandler{nullptr};
std::atomic<ProblemHandler> g_pfnLossHandler{nullptr};

/// @param nError code of a problem from OpenBackupFile.
std::string OpenFailure(int nError) {
  if (nError == ELOOP) return "is a symbolic link, which is not followed";
  if (nError == ENXIO) return "is not a regular file";
  return strerror(nError);
}

}  // namespace

Problem SystemProblem(Problem::Step step, const std::string& strFile, int nError) {
  return {step, nError, strFile, step == Problem::Step::Open ? OpenFailure(nError) : strerror(nError)};
}

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

void ReportProblem(const Problem& problem) {
  ReportProblem(problem.strFile, problem.strReason);
}

void ReportLoss(const Problem& problem) {
  ReportLoss(problem.strFile, problem.strReason);
}

}  // namespace orvandel
