#pragma once
#include <string>

#include "tests/faults/reference.h"

// What may be missing without a report. Each exception is listed in docs/reliability.md and is as narrow as
// possible: the run must show that the reason applies.

namespace orvandel {

/// The exception for a product of a recovery or of the decrypt tool; empty for none.
std::string ExceptionFor(const Reference& reference, const Variant& variant, const Fault& fault,
                         const Run& run, const std::string& strProduct, const std::string& strBackup);

/// The exception for what a command printed; empty for none.
std::string OutputException(const Reference& reference, Command command, const Variant& variant,
                            const Fault& fault, const Run& run, const std::string& strBackup);

}  // namespace orvandel
