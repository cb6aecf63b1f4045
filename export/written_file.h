#pragma once
#include <QString>
#include <functional>

/// How the writing of one file of a recovery ended.
struct WrittenFile {
  QString qstrPath;    ///< of the file; where there is none, of the one that was wanted
  QString qstrReason;  ///< why it isn't there or isn't whole; empty for success
  bool Succeeded() const { return qstrReason.isEmpty(); }
};

/// Hears of each file as soon as it is done, on the thread that writes.
using WrittenFileHandler = std::function<void(const WrittenFile& file)>;
