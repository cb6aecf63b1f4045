#pragma once
#include <vector>

#include "backup/categories.h"
#include "cli/options.h"

namespace orvandel {

/// Options of a recovery.
struct RecoverOptions : BackupOptions {
  QString qstrDestination;           ///< absolute path
  std::vector<CategoryNumber> only;  ///< what to recover; empty for everything
  bool bIndex = true;                ///< writes the front page
  bool bTimes = true;                ///< gives copied files their modification times
};

}  // namespace orvandel
