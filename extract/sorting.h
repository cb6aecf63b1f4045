#pragma once
#include <algorithm>
#include <vector>

/// Sorts records by one of the comparisons. Equal ones end in no particular order. Lists that come sorted
/// already, as most do, cost one look.
template <typename Record, typename Compare>
void SortRecords(std::vector<Record>& records, Compare compare) {
  if (!std::is_sorted(records.begin(), records.end(), compare))
    std::sort(records.begin(), records.end(), compare);
}
