#pragma once
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace orvandel {

/// Sorts records with one of the comparisons; not stable. Lists already sorted, as most are, take one pass.
template <typename Record, typename Compare>
void SortRecords(std::vector<Record>& records, Compare compare) {
  if (!std::is_sorted(records.begin(), records.end(), compare))
    std::sort(records.begin(), records.end(), compare);
}

/// Permutes records in place: the record at order[i] is moved to i.
/// @param order a permutation of the indexes; overwritten.
template <typename Record>
void Reorder(std::vector<Record>& records, std::vector<uint32_t>& order) {
  for (uint32_t nFirst = 0; nFirst < order.size(); ++nFirst) {
    if (order[nFirst] == nFirst) continue;
    Record first = std::move(records[nFirst]);
    uint32_t nTo = nFirst;
    for (uint32_t nFrom = order[nTo]; nFrom != nFirst; nFrom = order[nTo]) {
      records[nTo] = std::move(records[nFrom]);
      order[nTo] = nTo;
      nTo = nFrom;
    }
    records[nTo] = std::move(first);
    order[nTo] = nTo;
  }
}

}  // namespace orvandel
