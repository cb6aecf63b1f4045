#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Writes binary manifests byte by byte, including ones that no device would write.

namespace orvandel::manifest_bytes {

inline const std::string kHeader("mbdb\x05\0", 6);
inline const std::string kNoString("\xFF\xFF");

/// A big-endian number.
inline std::string Number(uint64_t nValue, int nBytes) {
  std::string strBytes;
  for (int nShift = 8 * (nBytes - 1); nShift >= 0; nShift -= 8)
    strBytes += static_cast<char>(nValue >> nShift);
  return strBytes;
}

/// Length and bytes. The maximum length is FFFE.
inline std::string Text(const std::string& strText) {
  return Number(strText.size(), 2) + strText;
}

struct Entry {
  std::string strDomain;
  std::string strPath;
  uint16_t nMode = 0x81A4;
  std::string strLink = {};
  std::string strHash = {};
  std::string strKey = {};
  std::vector<std::pair<std::string, std::string>> properties = {};
};

/// The 40 bytes between the strings and the properties, with values that readers must ignore.
inline std::string Block(uint16_t nMode, size_t nProperties) {
  return Number(nMode, 2) + Number(0xFFFFFFFFFFFFFFFF, 8) + Number(501, 4) + Number(501, 4) +
         Number(1462093953, 4) + Number(1462093954, 4) + Number(1462093955, 4) +
         Number(0x00000001FFFFFFFF, 8) + Number(4, 1) + Number(nProperties, 1);
}

inline std::string Bytes(const Entry& entry) {
  std::string strBytes = Text(entry.strDomain) + Text(entry.strPath) + Text(entry.strLink) +
                         Text(entry.strHash) + Text(entry.strKey) +
                         Block(entry.nMode, entry.properties.size());
  for (const auto& [strName, strValue] : entry.properties) strBytes += Text(strName) + Text(strValue);
  return strBytes;
}

}  // namespace orvandel::manifest_bytes
