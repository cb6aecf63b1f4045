// The session's Get operations: each locates its stores, runs their reader and adds its share to the
// progress.

#include <cstring>

#include "backup/session.h"
#include "common/file.h"
#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

int CIphoneBackupFile::GetBackupCameraFile(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                                           std::vector<_IPHONE_CAMERA_INFO_>& photoStream) {
  const int nAnswer =
      WalkCameraFiles(m_vecManifest, GetLayout(), GetWalkProgress(), camera, photoStream, m_pUnknownMedia);
  Advance(m_nProgressStep * 2);
  return nAnswer;
}

int CIphoneBackupFile::GetBackupFileMessageInfo(MessageMap& messages) {
  CIPhoneMessage reader;
  reader.nProductVersionAbove11 = m_backupInfo.bProductVersionAbove11;
  reader.bNewContactsLayout = m_bHasManifestDb;
  reader.InitCallback(m_pfnCallback, m_pCallbackContext, m_nProgress, m_nProgressStep);
  const int nAnswer =
      reader.GetSMSInfo(StorePath(kMessageStore), StorePath(kContactsStore), m_mapMessages, m_nMaxMessageId);
  if (&messages != &m_mapMessages) messages = m_mapMessages;
  Advance(m_nProgressStep / 2);
  return nAnswer;
}

int CIphoneBackupFile::GetBackupMsgAttachments(std::vector<_IPHONE_ATTACHMENTS_>& attachments) {
  const int nAnswer =
      WalkMsgAttachments(m_vecManifest, GetLayout(), GetWalkProgress(), attachments, m_pUnknownMedia);
  Advance(m_nProgressStep);
  return nAnswer;
}

int CIphoneBackupFile::GetBackupFilePersonContent(std::vector<__PERSON_CONTENT__>& people) {
  CIPhoneContacts reader;
  reader.nProductVersionAbove11 = m_backupInfo.bProductVersionAbove11;
  // The format of the backup decides the columns, not the store's schema.
  reader.bNewContactsLayout = m_bHasManifestDb;
  const int nStatus = reader.GetContactsInfo(StorePath(kContactsStore), people, m_nMaxContactId);
  Advance(m_nProgressStep / 2);
  return nStatus;
}

int CIphoneBackupFile::GetBackupFileHistoryCallInfo(std::vector<__CALLHISTORY__>& calls) {
  CIPhoneHistoryCall reader;
  reader.nProductVersionAbove11 = m_backupInfo.bProductVersionAbove11;
  std::string strCallPath = StorePath(kCallStore);
  if (!EntryExists(strCallPath)) strCallPath = StorePath(kCallStoreFallback);
  const int nStatus = reader.GetHistoryCallInfo(strCallPath, StorePath(kContactsStore), calls);
  Advance(m_nProgressStep / 2);
  return nStatus;
}

int CIphoneBackupFile::GetBackupFileNotes(std::vector<__NOTES__>& notes) {
  CIPhoneNotes reader;
  int nStatus = reader.GetNotesInfo(StorePath(kNotesStore), notes);
  m_bSnippetsOnly = notes.empty();
  if (m_bSnippetsOnly) nStatus = reader.GetNotesStoreInfo(StorePath(kNotesCloudStore), notes);
  Advance(m_nProgressStep / 2);
  return nStatus;
}

int CIphoneBackupFile::GetAppFileInfo(std::vector<_IPHONE_APP_FILE_INFO_>& files) {
  m_vecWhatsAppAttachments.clear();
  const int nAnswer = WalkAppFiles(m_vecManifest, GetLayout(), GetWalkProgress(), files,
                                   m_vecWhatsAppAttachments, m_pUnknownMedia);
  Advance(m_nProgressStep);
  return nAnswer;
}

int CIphoneBackupFile::GetWhatsappMessageInfo(WhatsAppMap& chats) {
  // The opposite direction of the other operations: copies the caller's chats into the session, for the
  // transcript.
  if (&chats != &m_mapWhatsApp) m_mapWhatsApp = chats;
  return Advance(m_nProgressStep);
}

int CIphoneBackupFile::GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments) {
  attachments = m_vecWhatsAppAttachments;
  return Advance(m_nProgressStep);
}

int CIphoneBackupFile::GetQQMessageInfo(QQMap& messages) {
  static constexpr char kStoreName[] = "/QQ.db";
  m_mapQQ.clear();
  int nAnswer = 0;
  int nHits = 1;
  for (const __MBDB_FILE__& entry : m_vecManifest) {
    const size_t nHit = entry.strFileName.find(kStoreName);
    if (nHit == std::string::npos) continue;
    const size_t nSlash = nHit == 0 ? std::string::npos : entry.strFileName.rfind('/', nHit - 1);
    const size_t nAccount = nSlash == std::string::npos ? 0 : nSlash + 1;
    const std::string strAccount = entry.strFileName.substr(nAccount, nHit - nAccount);
    QQChats chats;
    CIPhoneQQ().GetQQInfo(m_strBackupPath + entry.strFileId, chats);
    messages[strAccount] = std::move(chats);
    if (m_pfnCallback) nAnswer = m_pfnCallback(m_pCallbackContext, m_nProgress + nHits);
    if (nAnswer != 0) break;
    ++nHits;
  }
  Advance(m_nProgressStep);
  if (&messages != &m_mapQQ) m_mapQQ = messages;
  return nAnswer;
}

int CIphoneBackupFile::GetWeiXinMessageInfo(WeiXinMap&) {
  return kStatusOk;
}
