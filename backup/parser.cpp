#include "backup/parser.h"

#include "common/status.h"

using namespace orvandel;

int CLocalBuckupRecovery::Init(void* pSession) {
  m_pBackupFile = static_cast<CIphoneBackupFile*>(pSession);
  return kStatusOk;
}

int CLocalBuckupRecovery::InitCallback(ProgressCallback pfnCallback, void* pContext) {
  return m_pBackupFile->InitCallback(pfnCallback, pContext);
}

// Whether a backup is encrypted is in its __BACK_FILE_INFO__; the password is checked by the decrypt tool.
int CLocalBuckupRecovery::IsEncrypt(bool&) {
  return 0;
}
int CLocalBuckupRecovery::CheckPassword(char*) {
  return 1;
}

int CLocalBuckupRecovery::Scan(QString qstrDecryptedFolder) {
  return m_pBackupFile->Scan(qstrDecryptedFolder);
}

int CLocalBuckupRecovery::GetIPhoneMessageInfo(MessageMap& messages) {
  return m_pBackupFile->GetBackupFileMessageInfo(messages);
}

int CLocalBuckupRecovery::GetAttachmentsFilePath(std::vector<_IPHONE_ATTACHMENTS_>& attachments) {
  return m_pBackupFile->GetBackupMsgAttachments(attachments);
}

int CLocalBuckupRecovery::GetIPhonePersonContent(std::vector<__PERSON_CONTENT__>& people) {
  return m_pBackupFile->GetBackupFilePersonContent(people);
}

int CLocalBuckupRecovery::GetIPhoneNotes(std::vector<__NOTES__>& notes) {
  return m_pBackupFile->GetBackupFileNotes(notes);
}

int CLocalBuckupRecovery::GetIPhoneHistoryCallInfo(std::vector<__CALLHISTORY__>& calls) {
  return m_pBackupFile->GetBackupFileHistoryCallInfo(calls);
}

int CLocalBuckupRecovery::GetCameraFilePath(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                                            std::vector<_IPHONE_CAMERA_INFO_>& photoStream) {
  return m_pBackupFile->GetBackupCameraFile(camera, photoStream);
}

int CLocalBuckupRecovery::GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments) {
  return m_pBackupFile->GetWhatsAppAttachment(attachments);
}

int CLocalBuckupRecovery::GetAppFilePath(std::vector<_IPHONE_APP_FILE_INFO_>& files) {
  return m_pBackupFile->GetAppFileInfo(files);
}

int CLocalBuckupRecovery::GetQQMessageInfo(QQMap& messages) {
  return m_pBackupFile->GetQQMessageInfo(messages);
}

int CLocalBuckupRecovery::GetWeiXinMessageInfo(WeiXinMap& messages) {
  return m_pBackupFile->GetWeiXinMessageInfo(messages);
}

int CLocalBuckupRecovery::GetWhatsappMessageInfo(WhatsAppMap& chats) {
  return m_pBackupFile->GetWhatsappMessageInfo(chats);
}

int CLocalBuckupRecovery::PreView(char16_t* pFirst, char16_t* pSecond, ProgressCallback pfnCallback,
                                  void* pContext) {
  return m_pBackupFile->PreView(pFirst, pSecond, pfnCallback, pContext);
}

int CLocalBuckupRecovery::Recovery(char16_t* pFirst, char16_t* pSecond, RecoveryCallback pfnCallback,
                                   void* pContext) {
  return m_pBackupFile->Recovery(pFirst, pSecond, pfnCallback, pContext);
}

int CLocalBuckupRecovery::RecoverySMSMessage(char* pszDestination) {
  return m_pBackupFile->RecoverySMSMessage(pszDestination);
}

int CLocalBuckupRecovery::RecoveryPersonContacts(char* pszDestination) {
  return m_pBackupFile->RecoveryPersonContacts(pszDestination);
}

int CLocalBuckupRecovery::RecoveryWhatsAppMessage(unsigned int nChatId, char16_t* pPath,
                                                  RecoveryCallback pfnCallback, void* pContext) {
  return m_pBackupFile->RecoveryWhatsAppMessage(nChatId, pPath, pfnCallback, pContext);
}

int CLocalBuckupRecovery::RecoveryQQMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                                            RecoveryCallback pfnCallback, void* pContext) {
  return m_pBackupFile->RecoveryQQMessage(pFirst, pSecond, pThird, pfnCallback, pContext);
}

int CLocalBuckupRecovery::RecoveryWeiXinMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                                                RecoveryCallback pfnCallback, void* pContext) {
  return m_pBackupFile->RecoveryWeiXinMessage(pFirst, pSecond, pThird, pfnCallback, pContext);
}

CIphoneRecoveryFactory* CIphoneRecoveryFactory::getInstance() {
  static CIphoneRecoveryFactory factory;
  return &factory;
}

IPhoneRecoveryParse* CIphoneRecoveryFactory::CreateRecoveryParse(void* pBackupFile, RECOVERY_TYPE nType) {
  if (nType != RECOVERY_TYPE_LOCAL_BACKUP) return nullptr;
  auto pParser = std::make_unique<CLocalBuckupRecovery>();
  pParser->Init(pBackupFile);
  return pParser.release();
}
