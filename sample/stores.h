#pragma once
#include <QString>
#include <QVariant>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "sample/backup_builder.h"

// Writers of the well-known SQLite stores, with the tables and columns of devices (not only those that are
// read). Each is created for a file path (see BackupBuilder::reserveFile), filled, and completed on
// destruction. All rows are written in one transaction. Throws std::runtime_error when something can't be
// written. The tables lack the UNIQUE and NOT NULL constraints of devices, to allow damaged rows. Needs a
// QCoreApplication; use a store only on the thread that created it.

namespace orvandel {

/// Domain and path of each well-known store on the device, for BackupBuilder::reserveFile.
struct StorePlace {
  QString domain;
  QString relativePath;
};
namespace store_places {
StorePlace contacts();       // HomeDomain, Library/AddressBook/AddressBook.sqlitedb          31bb7ba8...
StorePlace messages();       // HomeDomain, Library/SMS/sms.db                                3d0d7e5f...
StorePlace notes();          // HomeDomain, Library/Notes/notes.sqlite                        ca3bc056...
StorePlace notesCloud();     // AppDomainGroup-group.com.apple.notes, NoteStore.sqlite        4f98687d...
StorePlace calls();          // HomeDomain, Library/CallHistoryDB/CallHistory.storedata       5a4935c7...
StorePlace callsFallback();  // WirelessDomain, Library/CallHistory/call_history.db           2b2b0084...
}  // namespace store_places

/// Base class: one SQLite file and its open transaction.
class SampleStore {
 public:
  /// Replaces an existing file.
  /// @param wal leaves the file in WAL mode (header bytes 18 and 19 are 2), all content in the main file.
  SampleStore(const QString& path, bool wal);
  /// Closes the store; errors are only warnings.
  virtual ~SampleStore();
  SampleStore(const SampleStore&) = delete;
  SampleStore& operator=(const SampleStore&) = delete;
  /// Writes all rows and closes the file; throws on errors. Nothing may be added afterwards.
  void close();
  /// Runs any statement on the store. Values are bound to "?". Statements with values are prepared only once.
  void run(const QString& sql, const std::vector<QVariant>& values = {});
  /// Same as run(). @return the id of the inserted row.
  qint64 insert(const QString& sql, const std::vector<QVariant>& values);

 protected:
  /// Runs each statement of a schema.
  void create(std::initializer_list<const char*> statements);

 private:
  struct Private;
  std::unique_ptr<Private> d;
};

/// Address book. The full-text table has the old columns (c15Phone, c16Email, c17Address, c19URL) or the new
/// ones (c16Phone, c17Email, c18Address, c20URL); ABPerson and ABMultiValue are filled too.
class ContactsStore : public SampleStore {
 public:
  struct Person {
    QString first, last, company, phone, email, address,
        url;  ///< several values of one kind are in one text
  };
  ContactsStore(const QString& path, bool newLayout, bool wal = false);
  /// @return the docid, starting with 1.
  qint64 add(const Person& person);

 private:
  void addValues(qint64 person, int property, const QString& lines);

  QString m_insertText;
};

/// SMS and iMessage.
class MessageStore : public SampleStore {
 public:
  /// A message with what later systems know of it. Columns that the store doesn't have are left out.
  struct Message {
    qint64 handle = 0;  ///< 0 for an own message in a group
    QString text;       ///< a null text is stored as NULL
    qint64 date = 0;    ///< as stored: seconds or nanoseconds from 2001-01-01
    bool fromMe = false;
    std::vector<qint64> chats;  ///< a row is added to chat_message_join for each
    QByteArray attributedBody;  ///< stored as NULL if empty
    QString associatedGuid;     ///< of the message that a tapback is for, with "p:0/"; null for none
    int associatedType = 0;     ///< 2000 to 2005 for a tapback, 3000 to 3005 for one taken back
    int associatedLength = 0;   ///< of the text that the tapback is for
    QString threadGuid;         ///< of the message that is answered; null for none
    qint64 dateEdited = 0, dateRetracted = 0;
  };

  /// @param ios major version of the system whose columns the tables have; 0 for those of iOS 9 with an empty
  /// attributedBody.
  explicit MessageStore(const QString& path, bool wal = false, int ios = 0);
  qint64 addHandle(const QString& id, const QString& service = "iMessage");  ///< @return its row id
  /// @param displayName of a group, null for none. @return its row id.
  qint64 addChat(const QString& identifier, const QString& displayName = {});
  /// Adds a handle to a chat. addMessage() does it for the chats of a message.
  void addMember(qint64 chat, qint64 handle);
  /// Same as below for a plain message. @return the message's row id.
  qint64 addMessage(qint64 handle, const QString& text, qint64 date, bool fromMe,
                    const std::vector<qint64>& chats);
  /// @return the message's row id.
  qint64 addMessage(const Message& message);
  /// Attaches a file to a message. @param path begins with "~/Library/SMS/Attachments/".
  void addAttachment(qint64 message, const QString& path, const QString& mimeType, qint64 size);

  /// The GUID of the message added as number `count`, the first is 1.
  static QString messageGuid(int count);
  /// The GUID of the attachment with a path, as addAttachment() stores it.
  static QString attachmentGuid(const QString& path);
  /// Number of messages added so far.
  int messageCount() const { return m_messages; }

 private:
  int m_ios;
  std::map<qint64, QString> m_services;               // by handle
  std::set<std::pair<qint64, qint64>> m_chatHandles;  // handles already in a chat
  int m_messages = 0;
};

/// Call log with ZCALLRECORD, for both locations.
class CallStore : public SampleStore {
 public:
  /// @param early adds the table `call`, in which systems before iOS 8 have their calls, with the same calls.
  explicit CallStore(const QString& path, bool wal = false, bool early = false);
  /// @param date seconds from 2001-01-01. @param duration may have a fraction. A null address is stored as
  /// NULL.
  /// @param originated 1 for an outgoing call.
  void add(int answered, double duration, const QString& address, double date, int originated = 0);

 private:
  bool m_early;
};

/// Notes with ZNOTE and ZNOTEBODY.
class NotesStore : public SampleStore {
 public:
  explicit NotesStore(const QString& path, bool wal = false);
  /// @param date seconds from 2001-01-01, or a null QVariant. With a null body the note has no ZNOTEBODY row.
  void add(const QVariant& date, const QString& title, const QString& body);
};

/// Notes with ZICCLOUDSYNCINGOBJECT.
class NotesCloudStore : public SampleStore {
 public:
  /// @param ios major version of the system whose columns the tables have; 0 for the common ones.
  explicit NotesCloudStore(const QString& path, bool wal = false, int ios = 0);
  /// @param date1 value of ZCREATIONDATE1, seconds from 2001-01-01, or null; ZCREATIONDATE3 has it as well
  /// where there is such a column. @param text the whole note, which is stored compressed; null for none.
  void add(const QVariant& date1, const QString& title, const QString& snippet, const QString& text = {});
  /// Adds the rows for an account and a folder, which are in the same table; later notes are in that folder.
  void addFolder(const QString& name);

 private:
  int m_ios;
  QVariant m_folder, m_account;  // row ids, null before addFolder()
};

}  // namespace orvandel
