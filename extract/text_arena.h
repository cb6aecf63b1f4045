#pragma once
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace orvandel {

/// Keeps many texts in few blocks of memory, until the arena is destroyed. Much faster than a string for
/// each.
class TextArena {
 public:
  /// @return a copy that lives as long as the arena.
  std::string_view Add(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > m_nFree) {
      const size_t nBlock = text.size() > kBlockSize / 4 ? text.size() : kBlockSize;
      m_blocks.emplace_back(new char[nBlock]);
      m_pFree = m_blocks.back().get();
      m_nFree = nBlock;
    }
    memcpy(m_pFree, text.data(), text.size());
    const std::string_view copy(m_pFree, text.size());
    m_pFree += text.size();
    m_nFree -= text.size();
    return copy;
  }

 private:
  static constexpr size_t kBlockSize = 1 << 20;

  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_pFree = nullptr;  // in the last block
  size_t m_nFree = 0;
};

}  // namespace orvandel
