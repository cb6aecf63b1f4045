#include "extract/unknown_media.h"

#include <algorithm>
#include <iterator>

#include "extract/file_type.h"

namespace orvandel {

namespace {

struct Extension {
  const char* pszName;
  bool bVideo;
};

// clang-format off
constexpr Extension kExtensions[] = {
    {"HEIC", false}, {"HEIF", false}, {"HEICS", false}, {"HIF", false}, {"AVIF", false}, {"JXL", false},
    {"WEBP", false}, {"TIFF", false}, {"TIF", false}, {"JPG", false}, {"JPEG", false}, {"JPE", false},
    {"JP2", false}, {"PNG", false}, {"GIF", false}, {"BMP", false}, {"DNG", false}, {"RAW", false},
    {"CR2", false}, {"CR3", false}, {"NEF", false}, {"NRW", false}, {"ARW", false}, {"ORF", false},
    {"RW2", false}, {"RAF", false}, {"PEF", false}, {"SRW", false}, {"INSP", false},
    {"MOV", true}, {"MP4", true}, {"M4V", true}, {"QT", true}, {"3GP", true}, {"3G2", true}, {"AVI", true},
    {"MKV", true}, {"WEBM", true}, {"HEVC", true}, {"INSV", true}, {"MPG", true}, {"MPEG", true},
    {"MTS", true}, {"M2TS", true}, {"WMV", true}, {"FLV", true},
};
// clang-format on

constexpr size_t kLongest = 5;  // characters

/// The row of a name's extension, ignoring case; null for any other.
const Extension* FindExtension(const std::string& strName) {
  const size_t nDot = strName.rfind('.');
  if (nDot == std::string::npos || strName.size() - nDot - 1 > kLongest) return nullptr;
  std::string strUpper = strName.substr(nDot + 1);
  for (char& ch : strUpper) {
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
  }
  const auto it = std::find_if(std::begin(kExtensions), std::end(kExtensions),
                               [&](const Extension& extension) { return strUpper == extension.pszName; });
  return it == std::end(kExtensions) ? nullptr : it;
}

}  // namespace

void UnknownMedia::Add(MediaList list, const HeadReader::File& file, const std::string& strName) {
  if (file.head.nOpenError != 0 || file.head.nReadError != 0) return;
  const Extension* pExtension = FindExtension(strName);
  if (!pExtension || (m_isWanted && !m_isWanted(list, pExtension->bVideo))) return;
  if (!file.head.bWhole && CFileTypeJudge::GetExtendNameType(pExtension->pszName) != CFileTypeJudge::kUnknown)
    return;
  if (m_isCounted.size() <= file.nEntry) m_isCounted.resize(file.nEntry + 1);
  if (m_isCounted[file.nEntry]) return;
  m_isCounted[file.nEntry] = true;
  ++m_counts[pExtension->pszName];
}

}  // namespace orvandel
