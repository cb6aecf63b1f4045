#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "extract/head_reader.h"

namespace orvandel {

/// The lists that walks over the catalogue fill.
enum class MediaList { CameraRoll, PhotoStream, AppFiles, MessageAttachments, WhatsAppAttachments };

/// Counts the photos and videos that walks leave out, because the type of their content isn't one that is
/// detected: HEIC, DNG and the like, by the extensions of their names. Lives as long as the walks; not
/// thread-safe.
class UnknownMedia {
 public:
  /// Decides whether a file counts that would be in a list. @param bVideo false for a picture.
  using IsWanted = std::function<bool(MediaList list, bool bVideo)>;

  /// @param isWanted empty for all.
  explicit UnknownMedia(IsWanted isWanted) : m_isWanted(std::move(isWanted)) {}

  /// Adds a file without a detected type. Counts it once, whatever number of walks add it, if its extension
  /// is that of a picture or video. Not counted are a file that can't be read, which is reported as lost, and
  /// one shorter than a head whose type would be detected otherwise, such as a thumbnail in PNG.
  /// @param strName its name in the catalogue.
  void Add(MediaList list, const HeadReader::File& file, const std::string& strName);

  /// Number of files by extension, in upper case: "HEIC".
  const std::map<std::string, uint64_t>& Counts() const { return m_counts; }

 private:
  IsWanted m_isWanted;
  std::map<std::string, uint64_t> m_counts;
  std::vector<bool> m_isCounted;  // by entry of the catalogue; may be shorter than that
};

}  // namespace orvandel
