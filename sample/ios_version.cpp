#include "sample/ios_version.h"

#include <stdexcept>
#include <string>

namespace orvandel {

namespace {

using Age = Encryption::Age;

constexpr char kOldUdid[] = "b5c1f09d7a3e42681f0c9d8e7b6a5f4e3d2c1b0a";

// clang-format off
const IosVersion kByMajor[] = {
    {"5.1.1", "9B206", "iPhone4,1", "iPhone 4S", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "12.0", "12.5.4.42", 5, Age::BeforeIos10},
    {"6.1.3", "10B329", "iPhone5,1", "iPhone 5", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "14.0", "12.5.4.42", 6, Age::BeforeIos10},
    {"7.1.2", "11D257", "iPhone6,2", "iPhone 5s", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "16.0", "12.5.4.42", 7, Age::BeforeIos10},
    {"8.4.1", "12H321", "iPhone7,2", "iPhone 6", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "20.0", "12.5.4.42", 8, Age::BeforeIos10},
    {"9.3.5", "13G36", "iPhone7,2", "iPhone 6", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "20.0", "12.5.4.42", 9, Age::BeforeIos10},
    {"10.3.3", "14G60", "iPhone9,3", "iPhone 7", kOldUdid, "2017-09-02T18:04:11Z", "10.0", "3.2", "24.0", "12.6.2.20", 10, Age::From102},
    {"11.4.1", "15G77", "iPhone9,3", "iPhone 7", kOldUdid, "2018-08-12T07:41:09Z", "10.0", "3.3", "24.0", "12.8.0.150", 11, Age::From102},
    {"12.4.1", "16G102", "iPhone11,2", "iPhone XS", "00008020-000A1C2E3D44002E", "2019-09-08T07:41:09Z", "10.0", "3.3", "24.0", "12.10.0.7", 12, Age::From102},
    {"13.7", "17H35", "iPhone12,1", "iPhone 11", "00008030-000B2D3F4E55802E", "2020-09-10T07:41:09Z", "10.0", "3.3", "24.0", "12.10.9.3", 13, Age::From102},
    {"14.8.1", "18H107", "iPhone12,1", "iPhone 11", "00008030-000B2D3F4E55802E", "2021-11-03T07:41:09Z", "10.0", "3.3", "24.0", "12.12.2.2", 14, Age::From102},
    {"15.6.1", "19G82", "iPhone13,2", "iPhone 12", "00008101-000C3E405F66001E", "2022-08-28T07:41:09Z", "10.0", "3.3", "24.0", "12.12.4.1", 15, Age::From102},
    {"16.6.1", "20G81", "iPhone14,5", "iPhone 13", "00008110-000D4F516077401E", "2023-09-10T07:41:09Z", "10.0", "3.3", "24.0", "12.12.10.1", 16, Age::From102},
    {"17.6.1", "21G93", "iPhone15,2", "iPhone 14 Pro", "00008120-000E50627188401E", "2024-08-18T07:41:09Z", "10.0", "3.3", "24.0", "12.13.2.3", 17, Age::From102},
    {"18.5", "22F76", "iPhone16,1", "iPhone 15 Pro", "00008130-000F61738299001C", "2025-05-25T07:41:09Z", "10.0", "3.3", "24.0", "12.13.7.1", 18, Age::From102},
};

// The last has the date format of 11, in nanoseconds.
const IosVersion kByAge[] = {
    {"9.3.5", "13G36", "iPhone7,2", "iPhone 6", kOldUdid, "2016-12-30T18:04:11Z", "9.1", "2.4", "20.0", "12.5.4.42", 9, Age::BeforeIos10},
    {"10.1.1", "14B100", "iPhone7,2", "iPhone 6", kOldUdid, "2016-12-30T18:04:11Z", "10.0", "3.2", "24.0", "12.5.4.42", 10, Age::Ios10},
    {"11.0.3", "15A432", "iPhone7,2", "iPhone 6", kOldUdid, "2017-10-15T07:41:09Z", "10.0", "3.3", "24.0", "12.7.0.166", 11, Age::From102},
};
// clang-format on

}  // namespace

const IosVersion& iosVersion(int major) {
  for (const IosVersion& version : kByMajor) {
    if (version.major == major) return version;
  }
  throw std::out_of_range("no release of iOS " + std::to_string(major));
}

const IosVersion& iosVersionOfAge(Encryption::Age age) {
  for (const IosVersion& version : kByAge) {
    if (version.age == age) return version;
  }
  throw std::out_of_range("no release of this age");
}

}  // namespace orvandel
