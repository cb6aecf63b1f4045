#pragma once
#include <QString>
#include <functional>

#include "common/problem.h"
#include "common/text.h"

/// How the writing of one file of a recovery ended.
struct WrittenFile {
  QString qstrPath;          ///< of the file; where there is none, of the one that was wanted
  Problem problem;           ///< why it isn't there or isn't whole
  QString qstrOriginalName;  ///< the name in the backup, where it could not be that of a file; else empty

  bool Succeeded() const { return !problem; }
  /// It failed before there was a file, so that its name may be the reason.
  bool IsNotCreated() const { return problem.step == Problem::Step::Create; }
  QString Reason() const { return FromNarrow(problem.strReason); }
};

/// Called for every file as soon as it is written or has failed, on the thread that writes.
using WrittenFileHandler = std::function<void(const WrittenFile& file)>;
