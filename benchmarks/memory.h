#pragma once

/// Peak memory in MiB of "orvandel-cli scan" on the large backup. Throws std::runtime_error when the scan
/// fails.
double ScanPeakMemory();
