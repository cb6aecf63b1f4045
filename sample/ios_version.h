#pragma once
#include "sample/encryption.h"

namespace orvandel {

/// A release of the system, and what a backup made by it says about itself.
struct IosVersion {
  const char *productVersion, *buildVersion;
  const char *productType, *productName, *udid;
  const char* backupDate;            ///< ISO 8601, UTC
  const char* manifestVersion;       ///< of "Manifest.plist"
  const char* statusVersion;         ///< of "Status.plist"
  const char* systemDomainsVersion;  ///< of "Manifest.plist"
  const char* desktopVersion;        ///< "iTunes Version" of "Info.plist"
  int major;
  Encryption::Age age;  ///< the format of its keybag and manifest
};

constexpr int kFirstIos = 5;
constexpr int kLastIos = 18;

/// @return the release for a major version from kFirstIos to kLastIos. Throws std::out_of_range for others.
const IosVersion& iosVersion(int major);

/// @return the release of a backup for which only the age is given.
const IosVersion& iosVersionOfAge(Encryption::Age age);

}  // namespace orvandel
