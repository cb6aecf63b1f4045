#pragma once
#include <string>

// Typed streams byte by byte, as devices archive the bodies of messages. Independent of the reader.

namespace orvandel::attributed_bytes {

using namespace std::string_literals;

const std::string kHead = "\x04\x0Bstreamtyped\x81\xE8\x03"s;

/// The outer object up to its first value.
const std::string kImmutable =
    "\x84\x01@\x84\x84\x84\x12"
    "NSAttributedString\x00\x84\x84\x08NSObject\x00\x85\x92"s;
const std::string kMutable =
    "\x84\x01@\x84\x84\x84\x19"
    "NSMutableAttributedString\x00\x84\x84\x12"
    "NSAttributedString\x00\x84\x84\x08NSObject\x00\x85\x92"s;

/// The text's object up to its length, behind kImmutable and kMutable.
const std::string kString = "\x84\x84\x84\x08NSString\x01\x94\x84\x01+"s;
const std::string kMutableString =
    "\x84\x84\x84\x0FNSMutableString\x01\x84\x84\x08NSString\x01\x95\x84\x01+"s;

/// The end of the text's object, and the attributes of one run of eleven characters.
const std::string kRest =
    "\x86\x84\x02iI\x01\x0B\x92\x84\x84\x84\x0CNSDictionary\x00\x94\x84\x01i\x01\x92\x84\x96\x96\x1D"
    "__kIMMessagePartAttributeName\x86\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x94\x84\x01*"
    "\x84\x99\x99\x00\x86\x86\x86"s;

/// A length in one byte, or in two or four behind their marks.
inline std::string Length(size_t nLength) {
  std::string strLength;
  const int nBytes = nLength < 0x80 ? 1 : nLength < 0x8000 ? 2 : 4;
  if (nBytes > 1) strLength += nBytes == 2 ? '\x81' : '\x82';
  for (int i = 0; i < nBytes; ++i) strLength += static_cast<char>(nLength >> (8 * i));
  return strLength;
}

/// The archive of a text in UTF-8.
inline std::string Immutable(const std::string& strText) {
  return kHead + kImmutable + kString + Length(strText.size()) + strText + kRest;
}
inline std::string Mutable(const std::string& strText) {
  return kHead + kMutable + kMutableString + Length(strText.size()) + strText + kRest;
}

}  // namespace orvandel::attributed_bytes
