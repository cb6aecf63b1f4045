#pragma once
#include <optional>
#include <string>

#include "decrypt/manifest_entry.h"

// Entries of a manifest as lines, appended to a buffer. Fast for names in ASCII, since a manifest may have a
// million entries.

namespace orvandel {

/// Appends a name in UTF-8 with control characters replaced (see Printable). @param strName narrow.
void AppendPrintable(const std::string& strName, std::string& strOut);

/// A time as "2016-05-01T09:12:33Z". @param nSeconds since 1970. @return empty if unknown or after the year
/// 9999.
std::string IsoTime(int64_t nSeconds);

/// The permissions that a mode has, in four octal digits: "0644".
std::string OctalPermissions(uint32_t nMode);

/// Appends a line: kind and permissions, size, time, identifier, whether the file is there, name, and of a
/// link its target; separated by tabs, "-" for what is unknown or doesn't apply.
/// @param entry with its record. @param strName its name. @param isPresent nullopt if it isn't a file.
void AppendEntryLine(const ManifestEntry& entry, const std::string& strName, std::optional<bool> isPresent,
                     std::string& strOut);

/// The same as a JSON object.
void AppendEntryJson(const ManifestEntry& entry, std::optional<bool> isPresent, std::string& strOut);

/// Appends a JSON object with domain and path alone.
void AppendNameJson(const ManifestEntry& entry, std::string& strOut);

}  // namespace orvandel
