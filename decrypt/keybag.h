#pragma once
#include <cstdint>
#include <map>
#include <string>

#include "decrypt/crypto.h"

/// The keys of a backup: one for each protection class, wrapped under the password's key until Unlock.
class Keybag {
 public:
  /// Reads the run of tagged items. Throws std::runtime_error, with what is wrong, for a damaged one.
  explicit Keybag(const Bytes& data);

  /// Tries a password. @return false when it is wrong. Throws when there is no key that could tell.
  bool Unlock(const Secret& password);

  /// The key of a file or of the manifest, from its class (32 bits, little-endian) and its wrapped form.
  /// Throws std::runtime_error, with the reason, when that can't be had. After Unlock; from any thread.
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
  Bytes m_strongSalt;  // of the first derivation that newer backups have; empty in others
  uint32_t nStrongRounds = 0;
};
