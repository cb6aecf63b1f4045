#include "extract/number_index.h"

#include <random>

namespace orvandel {

size_t NumberHash::operator()(int64_t nNumber) const {
  static const uint64_t kSeed = (uint64_t{std::random_device()()} << 32) ^ std::random_device()();
  // The finalizer of splitmix64.
  uint64_t n = static_cast<uint64_t>(nNumber) + kSeed;
  n = (n ^ (n >> 30)) * 0xBF58476D1CE4E5B9;
  n = (n ^ (n >> 27)) * 0x94D049BB133111EB;
  return static_cast<size_t>(n ^ (n >> 31));
}

}  // namespace orvandel
