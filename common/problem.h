#pragma once
#include <string>

namespace orvandel {

/// Why an operation on a file failed. Returned by functions below the fixed interfaces, directly or in a
/// Result (common/result.h); these report nothing themselves.
struct Problem {
  /// The operation that failed.
  enum class Step { None, Open, Read, Create, Write };

  Step step = Step::None;  ///< None when there is no problem
  int nCode = 0;           ///< the error number of the system or of SQLite
  std::string strFile;     ///< narrow
  std::string strReason;   ///< human-readable, narrow

  explicit operator bool() const { return step != Step::None; }
};

/// Makes a problem from an errno value.
Problem SystemProblem(Problem::Step step, const std::string& strFile, int nError);

// The engine skips what it can't read, returns the rest and shows no message. A caller that wants to inform
// the user (the command line does, the window doesn't) installs handlers here. They are global to the
// process; install them before any worker starts. They are called on the thread where the problem occurred.

/// Called for each file that was skipped or is incomplete. Both strings are narrow.
using ProblemHandler = void (*)(const std::string& strFile, const std::string& strReason);

/// Sets the handler of all problems, null for none (the default).
void SetProblemHandler(ProblemHandler pfnHandler);

/// Sets the handler of losses alone, null for none (the default).
void SetLossHandler(ProblemHandler pfnHandler);

/// Reports something unusual that was skipped, such as a store without the expected tables.
void ReportProblem(const std::string& strFile, const std::string& strReason);
void ReportProblem(const Problem& problem);

/// Reports a file that exists but can't be read completely, so that data is missing from the result. Calls
/// both handlers.
void ReportLoss(const std::string& strFile, const std::string& strReason);
void ReportLoss(const Problem& problem);

}  // namespace orvandel
