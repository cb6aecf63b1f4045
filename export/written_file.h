#pragma once
#include <QString>
#include <functional>

#include "common/problem.h"
#include "common/text.h"

namespace orvandel {

/// The result of writing one file of a recovery.
struct WrittenFile {
  QString qstrPath;          ///< of the file, or the intended path when there is none
  Problem problem;           ///< why it is missing or incomplete
  QString qstrOriginalName;  ///< the name in the backup, if it isn't a valid file name; else empty

  bool Succeeded() const { return !problem; }
  /// True when it wasn't created, so its name may be the cause.
  bool IsNotCreated() const { return problem.step == Problem::Step::Create; }
  QString Reason() const { return FromNarrow(problem.strReason); }
};

/// Called for every file after it was written or failed, on the writing thread.
using WrittenFileHandler = std::function<void(const WrittenFile& file)>;

}  // namespace orvandel
