#pragma once
#include <QByteArray>
#include <QFile>
#include <QString>

// Files whose time of modification is always the same, so that two runs leave equal trees.

namespace written_file {
/// How files are opened to be written anew: without a buffer, so that each write tells at once whether it
/// succeeded.
constexpr auto kNewFile =
    QIODevice::OpenMode(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
/// Writes a file anew and stamps it. Throws std::runtime_error with path and reason when that fails.
void write(const QString& path, const QByteArray& content);
/// Writes to a file opened with kNewFile. Throws like write().
void append(QFile& file, const QByteArray& bytes);
/// Gives a file that someone else has written and closed the fixed time of modification. Throws like write().
void stamp(const QString& path);
/// Throws std::runtime_error with "path: reason".
[[noreturn]] void fail(const QString& path, const QString& reason);
}  // namespace written_file
