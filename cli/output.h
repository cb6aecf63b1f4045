#pragma once
#include <QByteArray>
#include <QString>
#include <functional>
#include <set>
#include <string>
#include <utility>

// Output of the command line: results on standard output, always in UTF-8, and problems on standard error, in
// the locale's encoding.

namespace orvandel {

/// Writes bytes to standard output.
void Print(const QByteArray& bytes);
/// Writes a line of text to standard output.
void PrintLine(const QString& qstrLine);

/// Flushes standard output. @return false when any write failed, with a line printed on standard error.
bool FinishOutput();

/// Prints a line on standard error: "orvandel-cli: TEXT".
void PrintError(const QString& qstrText);

/// Installs handlers that print each problem of the engine once on standard error, as "orvandel-cli: FILE:
/// REASON", and collect the losses.
void PrintProblems();

/// Sets how printed problems name a file, instead of by its path; empty for by its path. Both names are
/// narrow.
void SetFileNaming(std::function<std::string(const std::string& strFile)> nameOf);

/// The losses so far: file and reason, both narrow.
const std::set<std::pair<std::string, std::string>>& Losses();

/// Replaces control characters in a name from a backup by "?", since they could break the line or control the
/// terminal.
QString Printable(QString qstrName);

}  // namespace orvandel
