#pragma once
#include <vector>

#include "extract/app_files.h"
#include "extract/call_history.h"
#include "extract/chats.h"
#include "extract/contacts.h"
#include "extract/media.h"
#include "extract/messages.h"
#include "extract/notes.h"

namespace orvandel {

/// All records found by a scan. Filled on the scan's thread; not to be used by others during a scan.
struct BackupRecords {
  /// @param messages receives the conversations: the session's own map, to avoid a second copy.
  explicit BackupRecords(MessageMap& messages) : m_mapMessage(messages), m_mapWhatsApp(m_ownWhatsApp) {}
  /// @param chats receives the chats of WhatsApp: the session's own map, for the same reason.
  BackupRecords(MessageMap& messages, WhatsAppMap& chats) : m_mapMessage(messages), m_mapWhatsApp(chats) {}
  BackupRecords(const BackupRecords&) = delete;
  BackupRecords& operator=(const BackupRecords&) = delete;

  std::vector<_IPHONE_CAMERA_INFO_> m_vecCamera;
  std::vector<_IPHONE_CAMERA_INFO_> m_vecPhotoStream;
  std::vector<_IPHONE_APP_FILE_INFO_> m_vecAppFile;
  AppFileMap m_mapAppPhotoFiles;
  AppFileMap m_mapAppVideoFiles;
  int m_nAppPhotoCount = 0;
  int m_nAppVideoCount = 0;
  MessageMap& m_mapMessage;
  std::vector<_IPHONE_ATTACHMENTS_> m_vecMessageAttachment;
  std::vector<__PERSON_CONTENT__> m_vecContact;
  std::vector<__CALLHISTORY__> m_vecCall;
  std::vector<__NOTES__> m_vecNote;
  WhatsAppMap& m_mapWhatsApp;
  std::vector<_WHATSAPP_ATTACHMENTS_> m_vecWhatsAppAttachment;

 private:
  WhatsAppMap m_ownWhatsApp;
};

}  // namespace orvandel
