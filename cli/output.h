#pragma once
#include <QByteArray>
#include <QString>
#include <set>
#include <string>
#include <utility>

// What the command line prints: results on standard output, in UTF-8 whatever the locale, and problems on
// standard error, in the locale's encoding.

/// Writes bytes as they are on standard output.
void Print(const QByteArray& bytes);
/// Writes a line of text on standard output.
void PrintLine(const QString& qstrLine);

/// Flushes standard output. @return false when anything that was printed could not be written, with a line on
/// standard error.
bool FinishOutput();

/// Prints one line on standard error: "orvandel-cli: TEXT".
void PrintError(const QString& qstrText);

/// Prints every problem that the engine reports from here on as a line on standard error, each once:
/// "orvandel-cli: FILE: REASON", and collects the losses.
void PrintProblems();

/// The files that could not be read so far, with the reason, both narrow.
const std::set<std::pair<std::string, std::string>>& Losses();

/// A name from a backup for one line of text: control characters, which could break the line or reach the
/// terminal, become "?".
QString Printable(QString qstrName);
