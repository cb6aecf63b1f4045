#pragma once
#include <algorithm>
#include <vector>

namespace orvandel {

/// Sorts records with one of the comparisons; not stable. Lists already sorted, as most are, take one pass.
template <typename Record, typename Compare>
void SortRecords(std::vector<Record>& records, Compare compare) {
  if (!std::is_sorted(records.begin(), records.end(), compare))
    std::sort(records.begin(), records.end(), compare);
}

}  // namespace orvandel
