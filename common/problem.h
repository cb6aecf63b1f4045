#pragma once
#include <string>

/// Why an operation on a file failed. Functions below the fixed interfaces return it, or a Result (see
/// common/result.h), and report nothing themselves.
struct Problem {
  /// What was being done to the file.
  enum class Step { None, Open, Read, Create, Write };

  Step step = Step::None;  ///< None when there is no problem
  int nCode = 0;           ///< the error number of the system or of SQLite
  std::string strFile;     ///< narrow
  std::string strReason;   ///< for people, narrow

  explicit operator bool() const { return step != Step::None; }
};

/// A problem with an error number of the system.
Problem SystemProblem(Problem::Step step, const std::string& strFile, int nError);

// The engine passes over whatever it can't read and returns what it has; nothing stops and no message
// appears. A caller that wants to tell the user (the command line does, the window doesn't) installs handlers
// here. Both belong to the whole process; install them before any worker starts. They are called on the
// thread that met the problem.

/// Receives one thing that was passed over. Both texts narrow: the file, and what is wrong with it.
using ProblemHandler = void (*)(const std::string& strFile, const std::string& strReason);

/// Sets the handler of all problems, null for none (the default).
void SetProblemHandler(ProblemHandler pfnHandler);

/// Sets the handler of losses alone, null for none (the default).
void SetLossHandler(ProblemHandler pfnHandler);

/// Reports something odd that is passed over: a store without the tables that are read, say.
void ReportProblem(const std::string& strFile, const std::string& strReason);
void ReportProblem(const Problem& problem);

/// Reports a file that is there and can't be read, or not to its end, so that what it holds is missing from
/// the result. It counts as a problem too.
void ReportLoss(const std::string& strFile, const std::string& strReason);
void ReportLoss(const Problem& problem);
