#pragma once
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "backup/info.h"
#include "common/callback.h"
#include "common/catalogue.h"
#include "common/layout.h"
#include "extract/app_files.h"
#include "extract/call_history.h"
#include "extract/chats.h"
#include "extract/contacts.h"
#include "extract/media.h"
#include "extract/messages.h"
#include "extract/notes.h"

/// One open backup: the location of its files, its catalogue and the progress of a scan.
///
/// One object is used for the whole run; Init switches to another backup. Not thread-safe: during a scan or a
/// recovery only its worker may use it. Failures are silent: data that can't be read is missing.
class CIphoneBackupFile {
 public:
  /// Empties the temporary folder and lists the folders below the backup root.
  CIphoneBackupFile();
  ~CIphoneBackupFile();
  CIphoneBackupFile(const CIphoneBackupFile&) = delete;
  CIphoneBackupFile& operator=(const CIphoneBackupFile&) = delete;

  // Discovery.

  /// Lists the folders below the backup root. Called by the constructor. @return 0.
  int LocalBackUpFileInfo();
  /// Appends a record for each of these folders with a readable "Info.plist". Fields missing in a file are
  /// inherited from the previous record. @return 0.
  int GetBackFileInfo(std::vector<__BACK_FILE_INFO__>& backups);
  /// Reads the description of one backup. @return 0, or 87 without a readable "Info.plist", with the record
  /// unchanged.
  int GetBackFileInfo(const char* pszFolder, __BACK_FILE_INFO__* pInfo);
  /// @return 1 for an encrypted backup, else 0.
  int IsEncrypted(const char* pszFolder);
  /// Inserts the full path of each sub-folder (file) of a folder at the front of the vector. @return 1.
  int TraverseFolder(const std::string& strFolder, std::vector<std::string>& folders);
  int TraverseFile(const std::string& strFolder, std::vector<std::string>& files);

  // The open backup.

  /// Selects a backup. @return 0.
  int Init(const __BACK_FILE_INFO__* pInfo);
  /// Sets the progress callback; null for none. @return 0.
  int InitCallback(orvandel::ProgressCallback pfnCallback, void* pContext);
  /// Sets what collects the photos and videos that the Get operations leave out; null for none (the default).
  void SetUnknownMedia(orvandel::UnknownMedia* pUnknown) { m_pUnknownMedia = pUnknown; }
  /// The selected backup; after the scan of an encrypted one its path is the folder of decrypted files.
  __BACK_FILE_INFO__* GetSelectBackUpFileInfo();
  /// Empties the folder of decrypted files and removes the temporary files of an earlier run. @return 0.
  int ClearTempDir();

  /// Reads the manifest. Call before the Get operations.
  /// @param qstrDecryptedFolder folder of the decrypted files; empty for an unencrypted backup.
  /// @return 0, or 87 when the manifest is missing or can't be read; the stores can still be read.
  int Scan(const QString& qstrDecryptedFolder);

  // The categories. Each reports its share of the progress. Walks over the manifest end early when the
  // callback returns a value other than 0, and return that value; records found before are delivered.

  int GetBackupCameraFile(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                          std::vector<_IPHONE_CAMERA_INFO_>& photoStream);
  /// The session keeps the messages for the export; pass GetMessageMap() itself to avoid a copy.
  int GetBackupFileMessageInfo(orvandel::MessageMap& messages);
  int GetBackupMsgAttachments(std::vector<_IPHONE_ATTACHMENTS_>& attachments);
  int GetBackupFilePersonContent(std::vector<__PERSON_CONTENT__>& people);
  int GetBackupFileHistoryCallInfo(std::vector<__CALLHISTORY__>& calls);
  int GetBackupFileNotes(std::vector<__NOTES__>& notes);
  /// Also collects the files for GetWhatsAppAttachment.
  int GetAppFileInfo(std::vector<_IPHONE_APP_FILE_INFO_>& files);
  /// Copies the caller's chats into the session. @return the callback's result.
  int GetWhatsappMessageInfo(orvandel::WhatsAppMap& chats);
  /// Replaces the caller's list with the files collected by GetAppFileInfo. @return the callback's result.
  int GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments);
  /// Adds an empty entry for each QQ account of the manifest. @return 0, or the callback's result that ended
  /// the walk.
  int GetQQMessageInfo(orvandel::QQMap& messages);
  int GetWeiXinMessageInfo(orvandel::WeiXinMap& messages);  ///< reads nothing; @return 0

  // Copies and transcripts. Destinations are narrow (char) or UTF-16 (char16_t).

  /// Copies the message store. @return 0.
  int RecoverySMSMessage(const char* pszDestination);
  /// Copies the contacts store. @return 0.
  int RecoveryPersonContacts(const char* pszDestination);
  /// Writes one chat as plain text.
  /// @return 0, the callback's result if other than 0, or an errno value.
  int RecoveryWhatsAppMessage(unsigned int nChatId, const char16_t* pPath,
                              orvandel::RecoveryCallback pfnCallback, void* pContext);

  // Parts of the interface that do nothing. @return 0.
  int DecryptBackupFile(const char* pszPassword, const char16_t* pFolder, std::string& strResult);
  int PreView(const char16_t* pFirst, const char16_t* pSecond, orvandel::ProgressCallback pfnCallback,
              void* pContext);
  int Recovery(const char16_t* pFirst, const char16_t* pSecond, orvandel::RecoveryCallback pfnCallback,
               void* pContext);
  int RecoveryQQMessage(const char16_t* pFirst, const char16_t* pSecond, const char16_t* pThird,
                        orvandel::RecoveryCallback pfnCallback, void* pContext);
  int RecoveryWeiXinMessage(const char16_t* pFirst, const char16_t* pSecond, const char16_t* pThird,
                            orvandel::RecoveryCallback pfnCallback, void* pContext);

  // State of the session.
  orvandel::MessageMap& GetMessageMap() { return m_mapMessages; }
  const orvandel::Catalogue& GetManifest() const { return m_vecManifest; }
  const std::vector<std::string>& GetBackupDirs() const { return m_vecBackupDirs; }
  orvandel::WhatsAppMap& GetWhatsAppMap() { return m_mapWhatsApp; }
  const orvandel::QQMap& GetQQMap() const { return m_mapQQ; }
  /// True when the notes are from the store of which only snippets are read.
  bool HasSnippetsOnly() const { return m_bSnippetsOnly; }
  int GetProgress() const { return m_nProgress; }
  uint64_t GetMaxMessageId() const { return m_nMaxMessageId; }
  uint64_t GetMaxContactId() const { return m_nMaxContactId; }
  /// Locates the files of the open backup.
  orvandel::BackupLayout GetLayout() const;
  /// The open backup's own folder, even when decrypted files are read from another. Narrow.
  const std::string& GetBackupFolder() const { return m_strBackupFolder; }

 private:
  /// Narrow path of a store of the open backup.
  std::string StorePath(const char* pszStoreId) const;
  orvandel::WalkProgress GetWalkProgress() const;
  /// Fills the catalogue from the manifest in the backup's own folder, or from the decrypted one.
  /// @param strDecryptedFolder see Scan. @return see Scan.
  int ReadManifest(const std::string& strDecryptedFolder);
  /// Adds to the progress and reports it. @return the callback's result, 0 without a callback.
  int Advance(int nShare);

  std::string m_strBackupPath;
  std::string m_strBackupFolder;
  std::string m_strWorkDir;
  __BACK_FILE_INFO__ m_backupInfo;
  std::vector<std::string> m_vecBackupDirs;
  std::vector<std::string> m_vecDecryptedFiles;
  orvandel::Catalogue m_vecManifest;
  orvandel::ProgressCallback m_pfnCallback = nullptr;
  void* m_pCallbackContext = nullptr;
  int m_nProgress = 0;
  int m_nProgressStep = 0;
  uint64_t m_nMaxMessageId = 20000;
  uint64_t m_nMaxContactId = 20000;
  bool m_bHasManifestDb = false;
  bool m_bSnippetsOnly = false;
  orvandel::UnknownMedia* m_pUnknownMedia = nullptr;
  orvandel::MessageMap m_mapMessages;
  orvandel::QQMap m_mapQQ;
  orvandel::WeiXinMap m_mapWeiXin;
  orvandel::WhatsAppMap m_mapWhatsApp;
  std::vector<_WHATSAPP_ATTACHMENTS_> m_vecWhatsAppAttachments;
};
