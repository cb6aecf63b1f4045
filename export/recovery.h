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

/// Writes the documents of one recovery: pages, text files and copies of stores, below the folder chosen by
/// the user.
///
/// One object per recovery, on the stack of its worker. Call Init first; then for each category add its
/// records one by one and save them. Texts from the backup are written without escaping; the templates
/// prevent scripts in them from running. Statuses are 0 or an errno value.
class CRecovery {
 public:
  /// @param qstrProgramFolder the program's folder, which contains "template".
  explicit CRecovery(const QString& qstrProgramFolder = QCoreApplication::applicationDirPath());

  /// Sets the handler called for every document written or failed. May be empty.
  void SetWrittenFileHandler(orvandel::WrittenFileHandler handler);

  /// Sets how conversations whose names aren't valid folder names are handled; AsTheyStand by default.
  void SetNamePolicy(orvandel::NamePolicy policy) { m_namePolicy = policy; }

  /// Finds a template that can't be read, or that has no place for the content. A page without its template
  /// consists of rows only, and nothing prevents scripts in its texts from running.
  /// @return its path and the reason; empty when all five are usable.
  QString FindUnusableTemplate() const;

  /// Begins a recovery: sets the time stamp used in the names of its folders and loads the five templates.
  /// Throws std::out_of_range, naming the template, when one lacks "{|content|}".
  /// @param pBackupFile the session; must outlive this object.
  void Init(const QString& qstrSavePath, CIphoneBackupFile* pBackupFile);

  /// Reads one template, splits it at "{|content|}" and inserts the title.
  /// @param pszName such as "/template/Notes.html"; any other name does nothing.
  int LoadTemplateFile(const char* pszName);
  /// Loads all five. @return the result of the last.
  int LoadAllTemplateFile();

  // Messages: a text file and a page for each conversation, and a copy of the store.

  /// @param pMessage the first record of the conversation. @param messages all conversations.
  void RecoveryMsg(const __MESSAGE_INFO__* pMessage, const orvandel::MessageMap& messages);
  int SaveSMSMessageTxt(unsigned int nHandleId, const char16_t* pPath, const orvandel::MessageMap& messages);
  int SaveSMSMessage(unsigned int nHandleId, const char16_t* pPath, const orvandel::MessageMap& messages);
  /// Copies the store to "/Message/sms.db", if the folder "/Message" exists.
  void SaveMessage();

  // WhatsApp: a text file, a CSV file and a page for each chat.

  void RecoveryWhatsAppMsg(const __WHATSAPP_MESSAGE__* pMessage, const orvandel::WhatsAppMap& chats);
  int SaveWhatsAppTxt(unsigned int nChatId, const char16_t* pPath, const orvandel::WhatsAppMap& chats);
  int SaveWhatsAppCsv(unsigned int nChatId, const char16_t* pPath, const orvandel::WhatsAppMap& chats);
  int SaveWhatsApp(unsigned int nChatId, const char16_t* pPath, const orvandel::WhatsAppMap& chats);

  // Contacts: one page, and a copy of the store.

  /// Adds a row to the page and sets the CSV text, which holds only the latest contact and isn't written to a
  /// file.
  void RecoveryContacts(const __PERSON_CONTENT__* pPerson);
  /// Copies the store to "Contacts.db". @return always 0.
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
  /// A template: its name, its title and the members for its parts.
  struct Page {
    const char* pszName;
    const char* pszTitle;
    std::string CRecovery::*pTemplate;
    std::string CRecovery::*pHead;
    std::string CRecovery::*pBody;
    std::string CRecovery::*pTail;
  };
  static const std::array<Page, 5> kPages;

  /// Location of the documents of one conversation: folder with a trailing "/", and the name without
  /// extension. Narrow.
  struct ConversationPlace {
    std::string strFolder;
    std::string strStem;
    std::string strOriginalStem;  // if it isn't a valid file name; else empty
  };
  /// Chooses the location of a conversation and creates its folder.
  /// @param extensions of its documents, with their ".": on failure each is reported as failed.
  /// @return nullopt when it is refused or can't be created.
  std::optional<ConversationPlace> MakePlace(const char* pszCategoryFolder, const std::string& strLabel,
                                             const std::string& strStem,
                                             std::initializer_list<const char*> extensions);
  /// Same as above with exactly these names, without reporting. @return a problem with the folder's path on
  /// failure.
  orvandel::Result<ConversationPlace> TryPlace(const char* pszCategoryFolder, const std::string& strLabel,
                                               const std::string& strStem);
  /// A path in it that doesn't exist yet. @param pszExtension with its ".".
  std::u16string FreePath(const ConversationPlace& place, const char* pszExtension);
  /// The head of a template with the person inserted.
  static std::string HeadFor(const std::string& strHead, const std::string& strName,
                             const std::string& strPhone);

  /// Creates a folder below the destination.
  orvandel::Problem MakeFolder(const QString& qstrFolder);
  int SavePage(const QString& qstrFolder, const QString& qstrFileName, const std::string& strHead,
               const std::string& strBody, const std::string& strTail);
  /// Reports the result of a document to the handler. @return nError.
  int Tell(const QString& qstrPath, int nError, const std::string& strOriginalName = {}) const;
  /// Copies a store out of the backup and reports the result.
  /// @param copy operation of the session that copies it to a narrow path.
  /// @param bWasRead true when there are records from the store, so its absence is reported.
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
  orvandel::WrittenFileHandler m_handler;
  orvandel::NamePolicy m_namePolicy = orvandel::NamePolicy::AsTheyStand;
  orvandel::FreeNames m_freeNames;
  std::unique_ptr<orvandel::Destination> m_pDestination;  // made by Init
};
