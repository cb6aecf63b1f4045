#pragma once

namespace orvandel {

// Status codes shared by all layers. Operations may also return an errno value.
constexpr int kStatusOk = 0;
constexpr int kStatusStopped = 1;     // a callback requested a stop; the step ended early
constexpr int kStatusStopWalk = 2;    // end the iteration over the categories
constexpr int kStatusShortRead = 30;  // fewer bytes than requested
constexpr int kStatusMissing = 87;    // a required file is missing, or invalid argument
constexpr int kStatusFailed = -1;     // general failure of a scan
constexpr int kStatusWrongPassword = -110;

}  // namespace orvandel
