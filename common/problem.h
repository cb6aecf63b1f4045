#pragma once
#include <string>

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

/// Reports a file that is there and can't be read, or not to its end, so that what it holds is missing from
/// the result. It counts as a problem too.
void ReportLoss(const std::string& strFile, const std::string& strReason);
