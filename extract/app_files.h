#pragma once
#include <QMetaType>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "extract/media.h"

/// A file of an app.
struct _IPHONE_APP_FILE_INFO_ {
  uint32_t uFileSize = 0;   ///< bytes on disk, low 32 bits
  std::string strAppName;   ///< the middle of the bundle identifier, or "other"
  std::string strFileName;  ///< with the extension of its detected type
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_APP_FILE_INFO_)

/// Ascending by name, ignoring case.
bool AppVectorCmp(const _IPHONE_APP_FILE_INFO_& first, const _IPHONE_APP_FILE_INFO_& second);

namespace orvandel {

/// Appends the app files of a known type, sorted by name; WhatsApp's non-empty files are added to a separate
/// list.
/// @param pUnknown receives the files of unknown type; may be null.
/// @return the callback's last result; not 0 when it ended the walk.
int WalkAppFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                 std::vector<_IPHONE_APP_FILE_INFO_>& files, std::vector<_WHATSAPP_ATTACHMENTS_>& whatsApp,
                 UnknownMedia* pUnknown = nullptr);

/// Files by app.
using AppFileMap = std::map<std::string, std::vector<_IPHONE_APP_FILE_INFO_>>;

/// True for a video or sound, by the extension of its display name; every other file counts as a photo.
bool IsAppVideo(const std::string& strFileName);

/// Adds each file to the map of photos or of videos. Existing entries of the maps stay; the counts are of
/// this call only.
void GroupAppFiles(const std::vector<_IPHONE_APP_FILE_INFO_>& files, AppFileMap& photos, AppFileMap& videos,
                   int& nPhotos, int& nVideos);

}  // namespace orvandel
