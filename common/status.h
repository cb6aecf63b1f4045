#pragma once

// Status numbers that cross the layers. An operation may also hand on an errno value.
constexpr int kStatusOk = 0;
constexpr int kStatusStopped = 1;     // a callback asked to stop, the step ended early
constexpr int kStatusStopWalk = 2;    // end the walk over the categories
constexpr int kStatusShortRead = 30;  // fewer bytes than asked for
constexpr int kStatusMissing = 87;    // a file that is needed is missing, or a bad argument
constexpr int kStatusFailed = -1;     // general failure of a scan
constexpr int kStatusWrongPassword = -110;
