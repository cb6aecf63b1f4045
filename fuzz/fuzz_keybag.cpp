// The keybag of an encrypted backup, and keys wrapped with its class keys.
#include <algorithm>
#include <stdexcept>
#include <string>

#include "decrypt/keybag.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

namespace {

constexpr size_t kFileKeySize = 44;

/// Runs an action; a failure must be a runtime_error with a message.
template <typename Action>
bool Succeeds(const Action& action) {
  try {
    action();
    return true;
  } catch (const std::runtime_error& error) {
    Require(*error.what() != '\0', "an error has a message");
    return false;
  }
}

/// Sets one round for each derivation, so that checking a password is fast: of two items with one tag the
/// later counts.
Bytes WithFewRounds(Bytes data) {
  static const std::string kRounds("ITER\0\0\0\4\0\0\0\1DPIC\0\0\0\4\0\0\0\1", 24);
  data.insert(data.end(), kRounds.begin(), kRounds.end());
  return data;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const Bytes data(pData, pData + nSize);
  const Bytes wrapped(data.end() - static_cast<std::ptrdiff_t>(std::min(nSize, kFileKeySize)), data.end());
  const bool bWhole = Succeeds([&] {
    const Keybag locked(data);
    Require(!Succeeds([&] { locked.FileKey(wrapped); }), "a locked keybag gives no keys");
  });
  if (!bWhole) return 0;  // its last item could include what is appended
  Require(nSize >= 16, "no keybag is that short");
  Succeeds([&] {
    Keybag keybag(WithFewRounds(data));
    if (keybag.Unlock(Secret("hashcat", 7))) Succeeds([&] { keybag.FileKey(wrapped); });
  });
  return 0;
}
