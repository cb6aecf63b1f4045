#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace orvandel {

/// Hashes numbers from a backup with a random seed. With the standard hash, which is the number itself, a
/// store could be made whose numbers all collide, and reading it would take hours.
struct NumberHash {
  size_t operator()(int64_t nNumber) const;
};

/// A hash table by numbers from a backup.
template <typename Value>
using NumberMap = std::unordered_map<int64_t, Value, NumberHash>;

/// Maps the row numbers of a table to indexes. Numbers of a phone's tables are small and dense, and are
/// looked up in an array; any others in a hash table.
class NumberIndex {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;

  /// @return the index of a number; kNone if it was not added.
  uint32_t Find(int64_t nNumber) const {
    if (IsSmall(nNumber)) {
      const auto n = static_cast<size_t>(nNumber);
      return n < m_small.size() ? m_small[n] : kNone;
    }
    const auto it = m_large.find(nNumber);
    return it == m_large.end() ? kNone : it->second;
  }

  /// Adds a number, unless it is there. @return whether it was added.
  bool Add(int64_t nNumber, uint32_t nIndex) {
    if (!IsSmall(nNumber)) return m_large.emplace(nNumber, nIndex).second;
    const auto n = static_cast<size_t>(nNumber);
    if (n >= m_small.size()) m_small.resize(std::max(n + 1, m_small.size() * 2), kNone);
    if (m_small[n] != kNone) return false;
    m_small[n] = nIndex;
    return true;
  }

 private:
  static bool IsSmall(int64_t nNumber) { return nNumber >= 0 && nNumber < (1 << 20); }

  std::vector<uint32_t> m_small;  // by number
  NumberMap<uint32_t> m_large;
};

}  // namespace orvandel
