#pragma once
#include <functional>
#include <string>
#include <vector>

#include "backup/categories.h"

namespace orvandel {

/// Decides whether a category is wanted; empty for all.
using WantedCategory = std::function<bool(CategoryNumber nNumber)>;

/// A store, and the categories that are read from it.
struct StoreUse {
  const char* pszId;
  std::vector<CategoryNumber> categories;

  bool IsWanted(const WantedCategory& isWanted) const;
};

/// The stores of all categories that are read from one. The other categories read files only.
const std::vector<StoreUse>& StoreUses();

/// The use of a store; null for another file. @param strFileId its name in the backup.
const StoreUse* FindStoreUse(const std::string& strFileId);

}  // namespace orvandel
