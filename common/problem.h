#pragma once
#include <string>

// The engine passes over whatever it can't read and returns what it has; nothing stops and no message
// appears. Who wants to tell the user about it (the command line does, the window doesn't) installs a handler
// here.

/// Receives one thing that was passed over. Both texts narrow: the file, and what is wrong with it.
using ProblemHandler = void (*)(const std::string& strFile, const std::string& strReason);

/// Sets the handler for the whole process, null for none (the default). Call it before any worker starts.
void SetProblemHandler(ProblemHandler pfnHandler);

/// Tells the handler, if there is one. Called on the thread that met the problem.
void ReportProblem(const std::string& strFile, const std::string& strReason);
