#pragma once
#include <QCoreApplication>
#include <QString>
#include <array>
#include <memory>
#include <optional>
#include <string>

#include "backup/session.h"
#include "common/path.h"
#include "common/result.h"
#include "export/destination.h"
#include "export/file_name.h"
#include "export/written_file.h"

/// Writes the documents of one recovery: pages, text files and copies of stores, below the folder that the
/// user chose.
///
/// One object lives for one recovery, on the stack of its worker. Init comes first; then for each category
/// its records one by one, and what saves them. All texts go into the documents as the backup holds them:
/// nothing is escaped, so the templates are the fence around them. Statuses are 0 or the system's error
/// number.
class CRecovery {
 public:
  /// @param qstrProgramFolder where "/template/" lies: the folder of the program.
  explicit CRecovery(const QString& qstrProgramFolder = QCoreApplication::applicationDirPath());

  /// Sets what is called for every document written or failed. May be empty.
  void SetWrittenFileHandler(WrittenFileHandler handler);

  /// What happens to a conversation whose name can't be that of a folder; as it stands unless set.
  void SetNamePolicy(NamePolicy policy) { m_namePolicy = policy; }

  /// Looks for a template that can't be used: one that can't be read, or has no place for the content.
  /// Without its template a page has rows alone, and nothing keeps the texts of strangers in it from running.
  /// @return its path and the reason; empty when all five can be used.
  QString FindUnusableTemplate() const;

  /// Begins a recovery: sets the time stamp that names its folders, and loads the five templates.
  /// @param pBackupFile the session, which outlives the object.
  /// Throws std::out_of_range, naming the template, when one lacks "{|content|}".
  void Init(const QString& qstrSavePath, CIphoneBackupFile* pBackupFile);

  /// Reads one template, splits it at "{|content|}" and puts the title in.
  /// @param pszName such as "/template/Notes.html"; any other name does nothing.
  int LoadTemplateFile(const char* pszName);
  /// All five of them. @return the result of the last.
  int LoadAllTemplateFile();

  // Messages: a text file and a page for each conversation, and a copy of the store.

  /// @param pMessage the first record of the conversation. @param messages all conversations.
  void RecoveryMsg(const __MESSAGE_INFO__* pMessage, const MessageMap& messages);
  int SaveSMSMessageTxt(unsigned int nHandleId, const char16_t* pPath, const MessageMap& messages);
  int SaveSMSMessage(unsigned int nHandleId, const char16_t* pPath, const MessageMap& messages);
  /// Copies the store to "/Message/sms.db", if there is a folder "/Message".
  void SaveMessage();

  // WhatsApp: a text file, a CSV file and a page for each chat.

  void RecoveryWhatsAppMsg(const __WHATSAPP_MESSAGE__* pMessage, const WhatsAppMap& chats);
  int SaveWhatsAppTxt(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats);
  int SaveWhatsAppCsv(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats);
  int SaveWhatsApp(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats);

  // Contacts: one page, and a copy of the store.

  /// Adds a row to the page and composes the CSV text, which starts over with each contact and reaches no
  /// file.
  void RecoveryContacts(const __PERSON_CONTENT__* pPerson);
  /// Copies the store to "Contacts.db". @return 0 always.
  int SaveContactsCsv();
  int SaveContacts();

  // Calls and notes: one page each.

  void RecoveryCallHistory(const __CALLHISTORY__* pCall);
  int SaveCallHistory();
  void RecoveryNotes(const __NOTES__* pNote);
  int SaveNotes();

  const QString& GetTimeStamp() const { return m_strTimeStamp; }
  const std::string& GetContactsCsv() const { return m_strContactsCsv; }

 private:
  /// What a template differs by: its name, its title, and where its parts go.
  struct Page {
    const char* pszName;
    const char* pszTitle;
    std::string CRecovery::*pTemplate;
    std::string CRecovery::*pHead;
    std::string CRecovery::*pBody;
    std::string CRecovery::*pTail;
  };
  static const std::array<Page, 5> kPages;

  /// Where the documents of one conversation go: folder with its "/", and the name without an extension.
  /// Narrow.
  struct ConversationPlace {
    std::string strFolder;
    std::string strStem;
    std::string strOriginalStem;  // where it could not be a file name; else empty
  };
  /// Finds the place of a conversation and creates its folder.
  /// @param extensions of its documents, with their ".": each is reported as failed when the place is
  /// refused.
  /// @return nothing when it is refused or can't be created.
  std::optional<ConversationPlace> MakePlace(const char* pszCategoryFolder, const std::string& strLabel,
                                             const std::string& strStem,
                                             std::initializer_list<const char*> extensions);
  /// The same under these names, without a report. @return a problem names the folder.
  Result<ConversationPlace> TryPlace(const char* pszCategoryFolder, const std::string& strLabel,
                                     const std::string& strStem);
  /// A free path in it. @param pszExtension with its ".".
  std::u16string FreePath(const ConversationPlace& place, const char* pszExtension);
  /// The head of a template with the person put in.
  static std::string HeadFor(const std::string& strHead, const std::string& strName,
                             const std::string& strPhone);

  /// Makes a folder below the destination.
  Problem MakeFolder(const QString& qstrFolder);
  int SavePage(const QString& qstrFolder, const QString& qstrFileName, const std::string& strHead,
               const std::string& strBody, const std::string& strTail);
  /// Reports how a document came out. @return nError.
  int Tell(const QString& qstrPath, int nError, const std::string& strOriginalName = {}) const;
  /// Copies a store out of the backup and reports how that went.
  /// @param copy does it: an operation of the session that takes the narrow path.
  /// @param bWasRead whether there are records from the store, so that it is missed when it is gone.
  void SaveStore(const char* pszStoreId, const QString& qstrFolder, const char* pszName,
                 int (CIphoneBackupFile::*copy)(const char* pszDestination), bool bWasRead);

  QString m_strSavePath;
  QString m_strTimeStamp;  // yyyyMMddhhmmss, local time
  bool m_bMessageSaved = false;
  std::string m_strCallHistoryTemplate, m_strCallHistoryHead, m_strCallHistoryBody, m_strCallHistoryTail;
  std::string m_strNotesTemplate, m_strNotesHead, m_strNotesBody, m_strNotesTail;
  std::string m_strContactsTemplate, m_strContactsHead, m_strContactsBody, m_strContactsTail;
  std::string m_strSmsTemplate, m_strSmsHead, m_strSmsPageHead, m_strSmsBody, m_strSmsTail;
  std::string m_strWhatsAppTemplate, m_strWhatsAppHead, m_strWhatsAppPageHead, m_strWhatsAppBody,
      m_strWhatsAppTail;
  std::string m_strContactsCsv;
  CIphoneBackupFile* m_pBackupFile = nullptr;

  QString m_qstrProgramFolder;
  WrittenFileHandler m_handler;
  NamePolicy m_namePolicy = NamePolicy::AsTheyStand;
  FreeNames m_freeNames;
  std::unique_ptr<Destination> m_pDestination;  // made by Init
};
