#include "cli/temporary_name.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <random>

namespace orvandel {

namespace {

// ".orvandel-", 16 hexadecimal digits, "-", a number, ".part".
constexpr char kStart[] = ".orvandel-";
constexpr size_t kStartSize = sizeof kStart - 1;
constexpr size_t kRandomDigits = 16;
constexpr char kEnd[] = ".part";
constexpr size_t kEndSize = sizeof kEnd - 1;

const std::string& OwnStart() {
  static const std::string strStart = [] {
    std::random_device device;
    char szDigits[kRandomDigits + 1];
    snprintf(szDigits, sizeof szDigits, "%08x%08x", static_cast<unsigned int>(device()),
             static_cast<unsigned int>(device()));
    return kStart + std::string(szDigits) + '-';
  }();
  return strStart;
}

bool StartsWith(const std::string& strName, const std::string& strStart) {
  return strName.compare(0, strStart.size(), strStart) == 0;
}

}  // namespace

std::string NewTemporaryName() {
  static std::atomic<uint64_t> nNumber{0};
  return OwnStart() + std::to_string(nNumber++) + kEnd;
}

bool IsTemporaryName(const std::string& strName) {
  const size_t nDash = kStartSize + kRandomDigits;
  if (strName.size() < nDash + 2 + kEndSize || !StartsWith(strName, kStart) || strName[nDash] != '-' ||
      strName.compare(strName.size() - kEndSize, kEndSize, kEnd) != 0)
    return false;
  const std::string strRandom = strName.substr(kStartSize, kRandomDigits);
  const std::string strNumber = strName.substr(nDash + 1, strName.size() - kEndSize - nDash - 1);
  return strRandom.find_first_not_of("0123456789abcdef") == std::string::npos &&
         strNumber.find_first_not_of("0123456789") == std::string::npos;
}

bool IsOwnTemporaryName(const std::string& strName) {
  return StartsWith(strName, OwnStart());
}

}  // namespace orvandel
