#pragma once
#include <QMetaType>
#include <cstdint>
#include <string>
#include <vector>

#include "common/callback.h"
#include "extract/head_reader.h"

// Media files of a backup. Sizes are those on disk, cut to 32 bits; names narrow, paths UTF-16.

/// A file of the camera roll or the photo stream, under its name on the device.
struct _IPHONE_CAMERA_INFO_ {
  uint32_t uFileSize = 0;
  std::string strFileName;
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_CAMERA_INFO_)

/// An attachment of a message, with the extension that its content calls for.
struct _IPHONE_ATTACHMENTS_ {
  uint32_t uReserved = 0;
  uint32_t uFileSize = 0;
  std::string strFileName;
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_ATTACHMENTS_)

/// A file of WhatsApp, with the extension that its content calls for.
struct _WHATSAPP_ATTACHMENTS_ {
  uint32_t uFileSize = 0;
  std::string strFileName;
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_WHATSAPP_ATTACHMENTS_)

/// Ascending by name, ignoring case.
bool CamVectorCmp(const _IPHONE_CAMERA_INFO_& first, const _IPHONE_CAMERA_INFO_& second);
bool AttVectorCmp(const _IPHONE_ATTACHMENTS_& first, const _IPHONE_ATTACHMENTS_& second);
bool WhatsAppAttVectorCmp(const _WHATSAPP_ATTACHMENTS_& first, const _WHATSAPP_ATTACHMENTS_& second);

/// Appends the files of the camera roll and of the photo stream that are there and of a known type. The
/// camera roll comes out sorted by name, the photo stream in the order of the catalogue.
/// @param progress covers two steps.
/// @return the callback's last answer; other than 0 when it ended the walk.
int WalkCameraFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                    std::vector<_IPHONE_CAMERA_INFO_>& camera,
                    std::vector<_IPHONE_CAMERA_INFO_>& photoStream);

/// Appends the attachments of messages that are there, not empty and of a known type, sorted by name.
/// @return as above.
int WalkMsgAttachments(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                       std::vector<_IPHONE_ATTACHMENTS_>& attachments);

/// What follows the last "/" of a catalogue name; the whole name without one.
std::string DeviceFileName(const std::string& strCatalogueName);

/// A device file name with its extension replaced by the judge's, in upper case.
/// @param pszJudged the text of CFileTypeJudge::ParseFileBuf.
std::string DisplayName(const std::string& strCatalogueName, const char* pszJudged);

/// Path of a file that a walk has read.
std::u16string WidePathOf(const HeadReader::File& file, const __MBDB_FILE__& entry,
                          const BackupLayout& layout);

/// Size of a file that a walk could open, in the low 32 bits. That of a path that isn't plain ASCII is asked
/// for under its Latin-1 form, as FileSize32 does. @param wstrPath of WidePathOf.
uint32_t SizeOf(const HeadReader::File& file, const std::u16string& wstrPath);

/// Size of a file in the low 32 bits, 0 when it can't be read.
uint32_t FileSize32(const std::u16string& wstrPath);
