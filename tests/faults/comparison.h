#pragma once
#include <string>
#include <vector>

#include "tests/faults/reference.h"

namespace orvandel {

/// Lines that report a failure and that an undisturbed run doesn't print: on standard error, and "Failed" on
/// standard output.
std::vector<std::string> ReportsOf(const Reference& reference, const Run& run);

/// Products of an undisturbed run that a result lacks. A product that has another name in its folder, because
/// a file of the same name is missing, isn't counted.
std::vector<std::string> Missing(const Products& expected, const Products& actual);

/// True if one of the reports mentions a product or one of its sources, or if the whole run failed with a
/// reason.
bool IsReported(const Reference& reference, const Run& run, const std::vector<std::string>& reports,
                const std::string& strProduct);

/// True for a complete file: a copy of a file as it is in the backup, or a page or text with its end.
bool IsWhole(const Reference& reference, const Run& run, const std::string& strPath,
             const std::string& strMaster, const std::string& strBackup, bool bEncrypted);

}  // namespace orvandel
