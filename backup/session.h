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

/// One open backup: where its files lie, what its manifest holds and how far a scan has come.
///
/// One object serves a whole run; Init begins the next backup. It has no lock: a scan or a recovery uses it
/// from one worker, and nobody else touches it meanwhile. Failures are silent: what can't be read is missing.
class CIphoneBackupFile {
 public:
  /// Empties the temporary folder and finds the backups below the backup root.
  CIphoneBackupFile();
  ~CIphoneBackupFile();
  CIphoneBackupFile(const CIphoneBackupFile&) = delete;
  CIphoneBackupFile& operator=(const CIphoneBackupFile&) = delete;

  // Discovery.

  /// Lists the folders below the backup root. The constructor's part: it runs before any Init. @return 0.
  int LocalBackUpFileInfo();
  /// Appends a record for each of these folders that has a readable "Info.plist". A record inherits what its
  /// own file doesn't tell from the one before it. @return 0.
  int GetBackFileInfo(std::vector<__BACK_FILE_INFO__>& backups);
  /// Reads the facts of one backup. @return 0, or 87 without a readable "Info.plist", with the record
  /// untouched.
  int GetBackFileInfo(const char* pszFolder, __BACK_FILE_INFO__* pInfo);
  /// 1 for an encrypted backup, else 0.
  int IsEncrypted(const char* pszFolder);
  /// Full paths of the sub-folders (files) of a folder, each put at the front of the vector. @return 1.
  int TraverseFolder(const std::string& strFolder, std::vector<std::string>& folders);
  int TraverseFile(const std::string& strFolder, std::vector<std::string>& files);

  // The open backup.

  /// Chooses a backup. @return 0.
  int Init(const __BACK_FILE_INFO__* pInfo);
  /// Sets whom to report progress to; null for nobody. @return 0.
  int InitCallback(ProgressCallback pfnCallback, void* pContext);
  /// The chosen backup; its path is the decrypted folder once an encrypted one has been scanned.
  __BACK_FILE_INFO__* GetSelectBackUpFileInfo();
  /// Empties the folder of decrypted files and removes the temporary files of an earlier run. @return 0.
  int ClearTempDir();

  /// Reads the manifest. Comes before the Get operations.
  /// @param qstrDecryptedFolder folder of the decrypted files; empty for a backup that isn't encrypted.
  /// @return 0, or 87 when the manifest is missing or can't be read; the stores can be read all the same.
  int Scan(const QString& qstrDecryptedFolder);

  // The categories. Each adds its share to the progress and reports it. The walks end early when the callback
  // answers other than 0, and return that answer; what they have so far is delivered.

  int GetBackupCameraFile(std::vector<_IPHONE_CAMERA_INFO_>& camera,
                          std::vector<_IPHONE_CAMERA_INFO_>& photoStream);
  /// The session keeps the messages for the export; who passes MessageMap() itself gets no copy.
  int GetBackupFileMessageInfo(MessageMap& messages);
  int GetBackupMsgAttachments(std::vector<_IPHONE_ATTACHMENTS_>& attachments);
  int GetBackupFilePersonContent(std::vector<__PERSON_CONTENT__>& people);
  int GetBackupFileHistoryCallInfo(std::vector<__CALLHISTORY__>& calls);
  int GetBackupFileNotes(std::vector<__NOTES__>& notes);
  /// Also gathers WhatsApp's files for GetWhatsAppAttachment.
  int GetAppFileInfo(std::vector<_IPHONE_APP_FILE_INFO_>& files);
  /// Takes the caller's chats into the session. @return the callback's answer.
  int GetWhatsappMessageInfo(WhatsAppMap& chats);
  /// Replaces the caller's list by what GetAppFileInfo gathered. @return the callback's answer.
  int GetWhatsAppAttachment(std::vector<_WHATSAPP_ATTACHMENTS_>& attachments);
  /// Makes an empty entry for each QQ account of the manifest. @return 0, or the answer that ended the walk.
  int GetQQMessageInfo(QQMap& messages);
  int GetWeiXinMessageInfo(WeiXinMap& messages);  ///< @return 0, nothing is read

  // Copies and transcripts. Destinations narrow (char) or UTF-16 (char16_t).

  /// Copies the message store. @return 0.
  int RecoverySMSMessage(const char* pszDestination);
  /// Copies the contacts store. @return 0.
  int RecoveryPersonContacts(const char* pszDestination);
  /// Writes one chat as plain text.
  /// @return 0, the callback's answer other than 0, or the system's error number.
  int RecoveryWhatsAppMessage(unsigned int nChatId, const char16_t* pPath, RecoveryCallback pfnCallback,
                              void* pContext);

  // Parts of the interface without any work. @return 0.
  int DecryptBackupFile(const char* pszPassword, const char16_t* pFolder, std::string& strResult);
  int PreView(const char16_t* pFirst, const char16_t* pSecond, ProgressCallback pfnCallback, void* pContext);
  int Recovery(const char16_t* pFirst, const char16_t* pSecond, RecoveryCallback pfnCallback, void* pContext);
  int RecoveryQQMessage(const char16_t* pFirst, const char16_t* pSecond, const char16_t* pThird,
                        RecoveryCallback pfnCallback, void* pContext);
  int RecoveryWeiXinMessage(const char16_t* pFirst, const char16_t* pSecond, const char16_t* pThird,
                            RecoveryCallback pfnCallback, void* pContext);

  // What the session holds.
  MessageMap& GetMessageMap() { return m_mapMessages; }
  const Catalogue& GetManifest() const { return m_vecManifest; }
  const std::vector<std::string>& GetBackupDirs() const { return m_vecBackupDirs; }
  const WhatsAppMap& GetWhatsAppMap() const { return m_mapWhatsApp; }
  const QQMap& GetQQMap() const { return m_mapQQ; }
  int GetProgress() const { return m_nProgress; }
  uint64_t GetMaxMessageId() const { return m_nMaxMessageId; }
  uint64_t GetMaxContactId() const { return m_nMaxContactId; }
  /// The rule by which the open backup's files are found.
  BackupLayout GetLayout() const;
  /// The open backup's own folder, also once its decrypted files are read from elsewhere. Narrow.
  const std::string& GetBackupFolder() const { return m_strBackupFolder; }

 private:
  /// Narrow path of a store of the open backup.
  std::string StorePath(const char* pszStoreId) const;
  WalkProgress GetWalkProgress() const;
  /// Fills the catalogue from the manifest in the backup's own folder, or from the decrypted one.
  /// @param strDecryptedFolder as of Scan. @return as Scan.
  int ReadManifest(const std::string& strDecryptedFolder);
  /// Adds to the progress and reports it. @return the callback's answer, 0 without one.
  int Advance(int nShare);

  std::string m_strBackupPath;
  std::string m_strBackupFolder;
  std::string m_strWorkDir;
  __BACK_FILE_INFO__ m_backupInfo;
  std::vector<std::string> m_vecBackupDirs;
  std::vector<std::string> m_vecDecryptedFiles;
  Catalogue m_vecManifest;
  ProgressCallback m_pfnCallback = nullptr;
  void* m_pCallbackContext = nullptr;
  int m_nProgress = 0;
  int m_nProgressStep = 0;
  uint64_t m_nMaxMessageId = 20000;
  uint64_t m_nMaxContactId = 20000;
  bool m_bHasManifestDb = false;
  MessageMap m_mapMessages;
  QQMap m_mapQQ;
  WeiXinMap m_mapWeiXin;
  WhatsAppMap m_mapWhatsApp;
  std::vector<_WHATSAPP_ATTACHMENTS_> m_vecWhatsAppAttachments;
};
