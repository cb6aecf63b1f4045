#pragma once
#include <QString>

/// Prints what the engine passes over on standard error, each thing once: "orvandel-cli: FILE: REASON".
void PrintProblems();

/// Prints one line on standard error in the same form.
void PrintError(const QString& qstrText);
