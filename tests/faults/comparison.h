#pragma once
#include <string>
#include <vector>

#include "tests/faults/reference.h"

/// Lines that report a failure and that an undisturbed run doesn't print: on standard error, and "Failed" on
/// standard output.
std::vector<std::string> ReportsOf(const Reference& reference, const Run& run);

/// Products of an undisturbed run that a result lacks. One that has got another name in its folder, since a
/// file of the same name is missing, isn't missing itself.
std::vector<std::string> Missing(const Products& expected, const Products& actual);

/// True when one of the reports mentions a product, or something that it is made of, or when the run gave up
/// as a whole and said why.
bool IsReported(const Reference& reference, const Run& run, const std::vector<std::string>& reports,
                const std::string& strProduct);

/// True for a file that isn't cut short: a copy of a file as it is in the backup, or a page or text with its
/// end.
bool IsWhole(const Reference& reference, const Run& run, const std::string& strPath,
             const std::string& strMaster, const std::string& strBackup, bool bEncrypted);
