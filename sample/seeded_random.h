#pragma once
#include <QtGlobal>
#include <random>

/// Random numbers that are the same on every platform: the engine's numbers are fixed by the C++ standard,
/// and the mapping to a range is our own, because those of the standard library differ between libraries.
class SeededRandom {
 public:
  explicit SeededRandom(quint32 seed) : m_engine(seed * 2654435761u + 12345u) {}

  /// @return a number from 0 to n - 1; n has to be positive.
  int below(int n) { return static_cast<int>((quint64{static_cast<quint32>(m_engine())} * n) >> 32); }
  /// @return a number from low to high, both included.
  int between(int low, int high) { return low + below(high - low + 1); }
  /// @return a number from low up to, but not, high.
  double real(double low, double high) {
    return low + (high - low) * static_cast<quint32>(m_engine()) / 4294967296.0;
  }
  bool chance(int percent) { return below(100) < percent; }

  /// @return any element of a container that isn't empty.
  template <typename Container>
  const auto& pick(const Container& container) {
    return container[below(static_cast<int>(std::size(container)))];
  }

 private:
  std::mt19937 m_engine;
};
