#pragma once
#include <string>

namespace orvandel {

/// Replaces every occurrence of a text. Inserted text isn't searched again.
void ReplaceEvery(std::string& strText, const std::string& strFrom, const std::string& strTo);

}  // namespace orvandel
