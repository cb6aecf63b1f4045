#pragma once
#include <QMetaType>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "extract/media.h"

/// A file of an app.
struct _IPHONE_APP_FILE_INFO_ {
  uint32_t uFileSize = 0;   ///< bytes on disk, cut to 32 bits
  std::string strAppName;   ///< the middle of the bundle identifier, or "other"
  std::string strFileName;  ///< with the extension that the content calls for
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_APP_FILE_INFO_)

/// Ascending by name, ignoring case.
bool AppVectorCmp(const _IPHONE_APP_FILE_INFO_& first, const _IPHONE_APP_FILE_INFO_& second);

/// Appends the app files of a known type, sorted by name; those of WhatsApp that aren't empty go to a list of
/// their own.
/// @return the callback's last answer; other than 0 when it ended the walk.
int WalkAppFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                 std::vector<_IPHONE_APP_FILE_INFO_>& files, std::vector<_WHATSAPP_ATTACHMENTS_>& whatsApp);

/// Files by app.
using AppFileMap = std::map<std::string, std::vector<_IPHONE_APP_FILE_INFO_>>;

/// True when a file counts as a video (sounds do), by the extension of its display name; else it is a photo.
bool IsAppVideo(const std::string& strFileName);

/// Adds each file to the map of photos or to that of videos. The maps keep what they held; the counts are
/// those of this call alone.
void GroupAppFiles(const std::vector<_IPHONE_APP_FILE_INFO_>& files, AppFileMap& photos, AppFileMap& videos,
                   int& nPhotos, int& nVideos);
