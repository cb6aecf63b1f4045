#pragma once
#include <QByteArray>
#include <QFile>
#include <QString>

// Writes files with a fixed modification time, so that two runs give equal trees.

namespace orvandel::written_file {
/// Mode for new files: unbuffered, so that each write reports errors immediately.
constexpr auto kNewFile =
    QIODevice::OpenMode(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
/// Writes a file, replacing an existing one, and stamps it. Throws std::runtime_error with path and reason on
/// failure.
void write(const QString& path, const QByteArray& content);
/// Appends to a file opened with kNewFile. Throws like write().
void append(QFile& file, const QByteArray& bytes);
/// Sets the fixed modification time of a closed file. Throws like write().
void stamp(const QString& path);
/// Throws std::runtime_error with "path: reason".
[[noreturn]] void fail(const QString& path, const QString& reason);
}  // namespace orvandel::written_file
