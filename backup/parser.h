#pragma once
#include <memory>

#include "backup/session.h"

/// Kinds of data source.
enum RECOVERY_TYPE { RECOVERY_TYPE_LOCAL_BACKUP = 1 };

/// Interface between the workflow and a source of device data.
///
/// Created, used and replaced on the scan's thread. Call order: Init, InitCallback, Scan, then the Get
/// operations in the order of the categories. All return a status: 0 success, 1 stopped early by a callback,
/// 2 end the walk, 87 manifest missing, -1 Scan failed, -110 wrong password.
class IPhoneRecoveryParse {
 public:
  virtual int Init(void* pSession) = 0;
  virtual int InitCallback(orvandel::ProgressCallback pfnCallback, void* pContext) = 0;
  virtual int IsEncrypt(bool& bEncrypted) = 0;
  virtual int CheckPassword(char* pszPassword) = 0;
  virtual int Scan(QString qstrDecryptedFolder) = 0;
  virtual int GetIPhoneMessageInfo(orvandel::MessageMap& messages) = 0;
  virtual int GetAttachmentsFilePath(std::vector<_IPHONE_ATTACHMENTS_>& attachments) = 0;
  virtual int GetIPhonePersonContent(std::vector<__PERSON_CONTENT__>& people) = 0;
  virtual int GetIPhoneNotes(std::vector<__NOTES__>& notes) = 0;
  virtual int GetIPhoneHistoryCallInfo(std::vector<__CALLHISTORY__>& calls) = 0;
  virtual int GetCameraFilePath(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                                std::vector<_IPHONE_CAMERA_INFO_>& photoStream) = 0;
  virtual int GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments) = 0;
  virtual int GetAppFilePath(std::vector<_IPHONE_APP_FILE_INFO_>& files) = 0;
  virtual int GetQQMessageInfo(orvandel::QQMap& messages) = 0;
  virtual int GetWeiXinMessageInfo(orvandel::WeiXinMap& messages) = 0;
  virtual int GetWhatsappMessageInfo(orvandel::WhatsAppMap& chats) = 0;
  virtual int PreView(char16_t* pFirst, char16_t* pSecond, orvandel::ProgressCallback pfnCallback,
                      void* pContext) = 0;
  virtual int Recovery(char16_t* pFirst, char16_t* pSecond, orvandel::RecoveryCallback pfnCallback,
                       void* pContext) = 0;
  virtual int RecoverySMSMessage(char* pszDestination) = 0;
  virtual int RecoveryPersonContacts(char* pszDestination) = 0;
  virtual int RecoveryWhatsAppMessage(unsigned int nChatId, char16_t* pPath,
                                      orvandel::RecoveryCallback pfnCallback, void* pContext) = 0;
  virtual int RecoveryQQMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                                orvandel::RecoveryCallback pfnCallback, void* pContext) = 0;
  virtual int RecoveryWeiXinMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                                    orvandel::RecoveryCallback pfnCallback, void* pContext) = 0;
  virtual ~IPhoneRecoveryParse() = default;
};

/// A local backup: forwards all calls to a session, which it doesn't own.
class CLocalBuckupRecovery : public IPhoneRecoveryParse {
 public:
  int Init(void* pSession) override;  ///< @param pSession a CIphoneBackupFile that outlives the parser
  int InitCallback(orvandel::ProgressCallback pfnCallback, void* pContext) override;
  int IsEncrypt(bool& bEncrypted) override;       ///< @return 0, with the argument unchanged
  int CheckPassword(char* pszPassword) override;  ///< @return 1 for any password
  int Scan(QString qstrDecryptedFolder) override;
  int GetIPhoneMessageInfo(orvandel::MessageMap& messages) override;
  int GetAttachmentsFilePath(std::vector<_IPHONE_ATTACHMENTS_>& attachments) override;
  int GetIPhonePersonContent(std::vector<__PERSON_CONTENT__>& people) override;
  int GetIPhoneNotes(std::vector<__NOTES__>& notes) override;
  int GetIPhoneHistoryCallInfo(std::vector<__CALLHISTORY__>& calls) override;
  int GetCameraFilePath(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                        std::vector<_IPHONE_CAMERA_INFO_>& photoStream) override;
  int GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments) override;
  int GetAppFilePath(std::vector<_IPHONE_APP_FILE_INFO_>& files) override;
  int GetQQMessageInfo(orvandel::QQMap& messages) override;
  int GetWeiXinMessageInfo(orvandel::WeiXinMap& messages) override;
  int GetWhatsappMessageInfo(orvandel::WhatsAppMap& chats) override;
  int PreView(char16_t* pFirst, char16_t* pSecond, orvandel::ProgressCallback pfnCallback,
              void* pContext) override;
  int Recovery(char16_t* pFirst, char16_t* pSecond, orvandel::RecoveryCallback pfnCallback,
               void* pContext) override;
  int RecoverySMSMessage(char* pszDestination) override;
  int RecoveryPersonContacts(char* pszDestination) override;
  int RecoveryWhatsAppMessage(unsigned int nChatId, char16_t* pPath, orvandel::RecoveryCallback pfnCallback,
                              void* pContext) override;
  int RecoveryQQMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                        orvandel::RecoveryCallback pfnCallback, void* pContext) override;
  int RecoveryWeiXinMessage(char16_t* pFirst, char16_t* pSecond, char16_t* pThird,
                            orvandel::RecoveryCallback pfnCallback, void* pContext) override;

 private:
  CIphoneBackupFile* m_pBackupFile = nullptr;
};

/// Creates parsers.
class CIphoneRecoveryFactory {
 public:
  static CIphoneRecoveryFactory* getInstance();

  /// @param pBackupFile a CIphoneBackupFile that outlives the parser.
  /// @return a parser owned by the caller; null for an unknown kind.
  IPhoneRecoveryParse* CreateRecoveryParse(void* pBackupFile, RECOVERY_TYPE nType);

 private:
  CIphoneRecoveryFactory() = default;
};
