#pragma once
#include <cstdint>
#include <string>

#include "decrypt/content_stream.h"

namespace orvandel {

/// Writes a file's content. The target is replaced completely or not at all, and readable only by its owner.
/// Uses constant memory. Throws std::runtime_error with the reason.
void WriteContent(ContentStream& content, const std::string& strTarget);

/// Writes a file's content to an open file. Throws ContentError; its step is Write for the target.
void WriteContent(ContentStream& content, int nTarget);

}  // namespace orvandel
