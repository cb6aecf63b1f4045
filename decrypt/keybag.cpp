#include "decrypt/keybag.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace orvandel {

namespace {

constexpr uint32_t kUnderPassword = 2;  // bit of a class's WRAP: wrapped with the password's key
// Limit for the password's derivation: ten times the rounds of any device, about half a minute. Prevents a
// hostile keybag from blocking the tool.
constexpr uint32_t kMostRounds = 100 * 1000 * 1000;
constexpr size_t kItemHead = 8;         // tag and length
constexpr size_t kClassNumberSize = 4;  // precedes a wrapped key in the manifest

uint32_t BigEndian(const unsigned char* p) {
  return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
         static_cast<uint32_t>(p[2]) << 8 | p[3];
}

uint32_t NumberOf(const Bytes& value) {
  if (value.size() != 4) throw std::runtime_error("the keybag is damaged: a number doesn't have 4 bytes");
  return BigEndian(value.data());
}

}  // namespace

Keybag::Keybag(const Bytes& data) {
  int nUuids = 0;
  uint32_t nClass = 0, nWrap = 0;
  Bytes wrapped;
  bool bHasClass = false;
  const auto keepClass = [&] {
    if (bHasClass) {
      Class& entry = m_classes[nClass];
      entry.nWrap = nWrap;
      entry.wrapped = wrapped;
    }
    bHasClass = false;
    nWrap = 0;
    wrapped.clear();
  };
  for (size_t nOffset = 0; nOffset < data.size();) {
    if (data.size() - nOffset < kItemHead)
      throw std::runtime_error("the keybag is damaged: it ends within an item");
    const std::string strTag(data.begin() + static_cast<std::ptrdiff_t>(nOffset),
                             data.begin() + static_cast<std::ptrdiff_t>(nOffset + 4));
    const size_t nLength = BigEndian(data.data() + nOffset + 4);
    nOffset += kItemHead;
    if (nLength > data.size() - nOffset)
      throw std::runtime_error("the keybag is damaged: an item runs beyond its end");
    const Bytes value(data.begin() + static_cast<std::ptrdiff_t>(nOffset),
                      data.begin() + static_cast<std::ptrdiff_t>(nOffset + nLength));
    nOffset += nLength;
    if (strTag == "UUID") {
      // The first belongs to the header; each further one begins a class.
      ++nUuids;
      keepClass();
    } else if (nUuids >= 2 && strTag == "CLAS") {
      nClass = NumberOf(value);
      bHasClass = true;
    } else if (nUuids >= 2 && strTag == "WRAP") {
      nWrap = NumberOf(value);
    } else if (nUuids >= 2 && strTag == "WPKY") {
      wrapped = value;
    } else if (strTag == "SALT") {
      m_salt = value;
    } else if (strTag == "ITER") {
      nRounds = NumberOf(value);
    } else if (strTag == "DPSL") {
      m_strongSalt = value;
    } else if (strTag == "DPIC") {
      nStrongRounds = NumberOf(value);
    }
  }
  keepClass();
  if (m_salt.empty() || nRounds == 0)
    throw std::runtime_error("the keybag is damaged: the parameters of the key derivation are missing");
  if (std::max(nRounds, nStrongRounds) > kMostRounds)
    throw std::runtime_error("the keybag is damaged: it asks for " +
                             std::to_string(std::max(nRounds, nStrongRounds)) +
                             " rounds to make a key, more than any device");
}

Secret Keybag::PasswordKey(const Secret& password) const {
  if (m_strongSalt.empty() || nStrongRounds == 0)
    return DeriveKey(password, m_salt, static_cast<int>(nRounds), Digest::Sha1);
  const Secret strong = DeriveKey(password, m_strongSalt, static_cast<int>(nStrongRounds), Digest::Sha256);
  return DeriveKey(strong, m_salt, static_cast<int>(nRounds), Digest::Sha1);
}

bool Keybag::Unlock(const Secret& password) {
  Secret passwordKey;
  bool bTried = false, bUnlocked = false;
  for (auto& [nNumber, entry] : m_classes) {
    if (!(entry.nWrap & kUnderPassword) || entry.wrapped.size() != kWrappedKeySize) continue;
    if (!bTried) passwordKey = PasswordKey(password);
    bTried = true;
    if (UnwrapKey(passwordKey, entry.wrapped.data(), entry.wrapped.size(), entry.key)) bUnlocked = true;
  }
  if (!bTried)
    throw std::runtime_error("the keybag is damaged: no class has a key wrapped with the password");
  return bUnlocked;
}

Secret Keybag::FileKey(const Bytes& wrapped) const {
  if (wrapped.size() != kClassNumberSize + kWrappedKeySize)
    throw std::runtime_error("its key has " + std::to_string(wrapped.size()) + " bytes instead of 44");
  const uint32_t nClass = static_cast<uint32_t>(wrapped[0]) | static_cast<uint32_t>(wrapped[1]) << 8 |
                          static_cast<uint32_t>(wrapped[2]) << 16 | static_cast<uint32_t>(wrapped[3]) << 24;
  const auto it = m_classes.find(nClass);
  if (it == m_classes.end() || it->second.key.IsEmpty())
    throw std::runtime_error("no key for its class " + std::to_string(nClass));
  Secret key;
  if (!UnwrapKey(it->second.key, wrapped.data() + kClassNumberSize, kWrappedKeySize, key))
    throw std::runtime_error("its key is damaged");
  return key;
}

}  // namespace orvandel
