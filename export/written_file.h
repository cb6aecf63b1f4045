#pragma once
#include <QString>
#include <functional>

/// How the writing of one file of a recovery ended.
struct WrittenFile {
  QString qstrPath;          ///< of the file; where there is none, of the one that was wanted
  QString qstrReason;        ///< why it isn't there or isn't whole; empty for success
  QString qstrOriginalName;  ///< the name in the backup, where it could not be that of a file; else empty
  bool bNotCreated = false;  ///< it failed before there was a file, so that its name may be the reason
  bool Succeeded() const { return qstrReason.isEmpty(); }
};

/// Called for every file as soon as it is written or has failed, on the thread that writes.
using WrittenFileHandler = std::function<void(const WrittenFile& file)>;
