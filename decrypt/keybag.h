#pragma once
#include <cstdint>
#include <map>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// The keys of a backup: one for each protection class, wrapped with the password's key until Unlock.
class Keybag {
 public:
  /// Parses the sequence of tagged items. Throws std::runtime_error with the reason if it is damaged.
  explicit Keybag(const Bytes& data);

  /// Unlocks the keys. @return false for a wrong password. Throws when no key can verify it.
  bool Unlock(const Secret& password);

  /// Unwraps the key of a file or of the manifest. Call Unlock first. Thread-safe.
  /// @param wrapped class (32 bits, little-endian), then the wrapped key. Throws std::runtime_error with the
  ///                reason on failure.
  Secret FileKey(const Bytes& wrapped) const;

 private:
  struct Class {
    uint32_t nWrap = 0;
    Bytes wrapped;
    Secret key;  // empty until it is unwrapped
  };

  Secret PasswordKey(const Secret& password) const;

  std::map<uint32_t, Class> m_classes;
  Bytes m_salt;
  uint32_t nRounds = 0;
  Bytes m_strongSalt;  // of the first derivation in newer backups; else empty
  uint32_t nStrongRounds = 0;
};

}  // namespace orvandel
