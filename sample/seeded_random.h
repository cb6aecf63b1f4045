#pragma once
#include <QtGlobal>
#include <random>

namespace orvandel {

/// Random numbers that are the same on every platform: the engine is specified by the C++ standard, and the
/// distributions of the standard library, which aren't, are not used.
class SeededRandom {
 public:
  explicit SeededRandom(quint32 seed) : m_engine(seed * 2654435761u + 12345u) {}

  /// @return a number from 0 to n - 1. @param n positive.
  int below(int n) { return static_cast<int>((quint64{static_cast<quint32>(m_engine())} * n) >> 32); }
  /// @return a number from low to high, inclusive.
  int between(int low, int high) { return low + below(high - low + 1); }
  /// @return a number from low (inclusive) to high (exclusive).
  double real(double low, double high) {
    return low + (high - low) * static_cast<quint32>(m_engine()) / 4294967296.0;
  }
  bool chance(int percent) { return below(100) < percent; }

  /// @return a random element of a non-empty container.
  template <typename Container>
  const auto& pick(const Container& container) {
    return container[below(static_cast<int>(std::size(container)))];
  }

 private:
  std::mt19937 m_engine;
};

}  // namespace orvandel
