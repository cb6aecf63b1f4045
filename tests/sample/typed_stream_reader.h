#pragma once
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Reads message bodies byte by byte along the grammar of typed streams, for the tests of the sample.

namespace orvandel {

/// A run of characters with the same attributes.
struct BodyRun {
  int64_t nLength = 0;  ///< UTF-16 units
  int64_t nPart = -1;
  std::string strAttachment;  ///< GUID; empty for text
};

struct MessageBody {
  std::string strText;               ///< UTF-8
  std::vector<std::string> classes;  ///< of the string and of its text, the outer one first
  size_t nLengthBytes = 0;           ///< that the length of the text takes: 1, 3 or 5
  std::vector<BodyRun> runs;
};

/// Parses a whole stream. Throws std::runtime_error for any byte that isn't as expected.
MessageBody ReadMessageBody(const std::string& strBytes);

}  // namespace orvandel
