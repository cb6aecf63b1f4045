#pragma once
#include "sample/stores.h"

namespace orvandel {

namespace store_places {
StorePlace chats();  // AppDomainGroup-group.net.whatsapp.WhatsApp.shared, ChatStorage.sqlite   7c7fba66...
StorePlace earlyChats();  // AppDomain-net.whatsapp.WhatsApp, Documents/ChatStorage.sqlite 1b6b187a...
}  // namespace store_places

/// WhatsApp's chats: "ChatStorage.sqlite". A null text is stored as NULL everywhere.
class ChatStore : public SampleStore {
 public:
  /// Values of ZMESSAGETYPE.
  enum Type {
    Text = 0,
    Picture = 1,
    Video = 2,
    Voice = 3,
    Contact = 4,
    Place = 5,
    GroupEvent = 6,
    Link = 7,
    Document = 8,
    Deleted = 14,
    Sticker = 15
  };

  struct Media {
    QString localPath;               ///< relative to the folder that holds "Media"; null without a file
    QString title;                   ///< caption, or the name of a document
    QString vcardName, vcardString;  ///< of a contact; the latter is the MIME type of a document
    QString url;
    double latitude = 0, longitude = 0;
    int size = 0;      ///< bytes
    int duration = 0;  ///< seconds
  };

  struct Message {
    qint64 session = 0;
    qint64 member = 0;  ///< row id of the sender in a group; 0 for none
    bool fromMe = false;
    double date = 0;  ///< seconds from 2001-01-01
    QString text;
    int type = Text;
    int groupEvent = 0;  ///< with GroupEvent
    QString pushName;
  };

  explicit ChatStore(const QString& path, bool wal = false);
  /// @return the row id of a chat with a person, or of the list of states. @param name null if unknown.
  qint64 addSession(const QString& jid, const QString& name);
  /// @return the row id of a group's chat. @param created seconds from 2001-01-01.
  qint64 addGroup(const QString& jid, const QString& subject, const QString& ownerJid, double created);
  /// @return the member's row id.
  qint64 addMember(qint64 session, const QString& jid, const QString& contactName, const QString& firstName);
  void addPushName(const QString& jid, const QString& name);
  /// Adds a message; its chat's last message is the latest. @param media null for none. @return its row id.
  qint64 addMessage(const Message& message, const Media* media = nullptr);

 private:
  struct Session {
    QString jid;
    int messages = 0;
  };
  void noteMost(int entity, qint64 row);
  qint64 addMedia(qint64 message, const Media& media, double date);

  std::map<qint64, Session> m_sessions;
  std::map<qint64, QString> m_members;  // JIDs
  int m_messages = 0;
};

}  // namespace orvandel
