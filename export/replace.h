#pragma once
#include <string>

/// Replaces every occurrence of a text, going on behind what was put in, so that it isn't searched itself.
void ReplaceEvery(std::string& strText, const std::string& strFrom, const std::string& strTo);
