#pragma once
#include <QMetaType>
#include <cstdint>
#include <string>
#include <vector>

#include "common/callback.h"
#include "extract/head_reader.h"
#include "extract/unknown_media.h"

// Media files of a backup. Sizes are in bytes on disk, low 32 bits; names are narrow, paths UTF-16.

/// A file of the camera roll or the photo stream, with its name on the device.
struct _IPHONE_CAMERA_INFO_ {
  uint32_t uFileSize = 0;
  std::string strFileName;
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_CAMERA_INFO_)

/// An attachment of a message, with the extension of its detected type.
struct _IPHONE_ATTACHMENTS_ {
  uint32_t uReserved = 0;
  uint32_t uFileSize = 0;
  std::string strFileName;
  std::u16string wstrFilePath;
};
Q_DECLARE_METATYPE(_IPHONE_ATTACHMENTS_)

/// A file of WhatsApp, with the extension of its detected type.
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

namespace orvandel {

/// Appends the existing files of the camera roll and of the photo stream that have a known type. The camera
/// roll is sorted by name, the photo stream is in catalogue order.
/// @param progress covers two steps. @param pUnknown receives the files of unknown type; may be null.
/// @return the callback's last result; not 0 when it ended the walk.
int WalkCameraFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                    std::vector<_IPHONE_CAMERA_INFO_>& camera, std::vector<_IPHONE_CAMERA_INFO_>& photoStream,
                    UnknownMedia* pUnknown = nullptr);

/// Appends the existing, non-empty attachments of messages that have a known type, sorted by name.
/// @param pUnknown as above. @return as above.
int WalkMsgAttachments(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                       std::vector<_IPHONE_ATTACHMENTS_>& attachments, UnknownMedia* pUnknown = nullptr);

/// The part of a catalogue name after the last "/"; the whole name without one.
std::string DeviceFileName(const std::string& strCatalogueName);

/// A device file name with its extension replaced by the detected one, in upper case.
/// @param pszJudged output of CFileTypeJudge::ParseFileBuf.
std::string DisplayName(const std::string& strCatalogueName, const char* pszJudged);

/// Path of a file returned by a walk's HeadReader.
std::u16string WidePathOf(const HeadReader::File& file, const __MBDB_FILE__& entry,
                          const BackupLayout& layout);

/// Size in bytes, low 32 bits, of a file that a walk could open. For a non-ASCII path same as FileSize32,
/// which uses its Latin-1 form. @param wstrPath from WidePathOf.
uint32_t SizeOf(const HeadReader::File& file, const std::u16string& wstrPath);

/// Size of a file in bytes, low 32 bits; 0 when it can't be read.
uint32_t FileSize32(const std::u16string& wstrPath);

}  // namespace orvandel
