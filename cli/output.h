#pragma once
#include <QByteArray>
#include <QString>

// Standard output, in UTF-8 whatever the locale.

/// Writes bytes as they are.
void Print(const QByteArray& bytes);
/// Writes a line of text.
void PrintLine(const QString& qstrLine);

/// A name from a backup for one line of text: control characters, which could break the line or reach the
/// terminal, become "?".
QString Printable(QString qstrName);

/// Flushes. @return false when anything that was printed could not be written, with a line on standard error.
bool FinishOutput();
