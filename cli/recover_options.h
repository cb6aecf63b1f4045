#pragma once
#include <vector>

#include "backup/categories.h"
#include "cli/options.h"

/// What a recovery takes.
struct RecoverOptions : BackupOptions {
  QString qstrDestination;           ///< absolute path
  std::vector<CategoryNumber> only;  ///< what to recover; everything unless named
};
