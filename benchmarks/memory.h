#pragma once

namespace orvandel {

/// Measures the peak memory of "orvandel-cli scan" on the large backup, in MiB. Throws std::runtime_error
/// when the scan fails.
double ScanPeakMemory();

}  // namespace orvandel
