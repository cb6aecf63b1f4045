#pragma once
#include <QString>
#include <set>
#include <string>
#include <utility>

/// Prints what the engine passes over on standard error, each problem once: "orvandel-cli: FILE: REASON", and
/// collects the losses.
void PrintProblems();

/// The files that could not be read so far, with the reason, both narrow.
const std::set<std::pair<std::string, std::string>>& Losses();

/// Prints one line on standard error in the same form.
void PrintError(const QString& qstrText);
