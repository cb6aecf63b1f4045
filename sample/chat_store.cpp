#include "sample/chat_store.h"

#include "sample/store_guid.h"

namespace orvandel {

namespace {

/// Entity numbers (Z_ENT), defined by Z_PRIMARYKEY.
enum Entity { kSession = 4, kGroupInfo = 5, kMember = 6, kMedia = 8, kMessage = 9, kPushName = 12 };

struct EntityName {
  Entity number;
  const char* name;
};

const EntityName kEntities[] = {{kSession, "WAChatSession"}, {kGroupInfo, "WAGroupInfo"},
                                {kMember, "WAGroupMember"},  {kMedia, "WAMediaItem"},
                                {kMessage, "WAMessage"},     {kPushName, "WAProfilePushName"}};

constexpr int kPersonSession = 0, kGroupSession = 1, kStatusSession = 3;
constexpr int kDelivered = 8, kSent = 5;  // of ZMESSAGESTATUS
const QString kOwnJid = "4930901820@s.whatsapp.net";

QVariant orNull(qint64 row) {
  return row ? QVariant(row) : QVariant();
}

}  // namespace

namespace store_places {

StorePlace chats() {
  return {"AppDomainGroup-group.net.whatsapp.WhatsApp.shared", "ChatStorage.sqlite"};
}
StorePlace earlyChats() {
  return {"AppDomain-net.whatsapp.WhatsApp", "Documents/ChatStorage.sqlite"};
}

}  // namespace store_places

ChatStore::ChatStore(const QString& path, bool wal) : SampleStore(path, wal) {
  create(
      {"CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZARCHIVED "
       "INTEGER, ZCONTACTABID INTEGER, ZFLAGS INTEGER, ZHIDDEN INTEGER, ZIDENTITYVERIFICATIONEPOCH INTEGER, "
       "ZIDENTITYVERIFICATIONSTATE INTEGER, ZMESSAGECOUNTER INTEGER, ZREMOVED INTEGER, ZSESSIONTYPE INTEGER, "
       "ZSPOTLIGHTSTATUS INTEGER, ZUNREADCOUNT INTEGER, ZGROUPINFO INTEGER, ZLASTMESSAGE INTEGER, "
       "ZPROPERTIES INTEGER, ZLASTMESSAGEDATE TIMESTAMP, ZLOCATIONSHARINGENDDATE TIMESTAMP, "
       "ZCONTACTIDENTIFIER VARCHAR, ZCONTACTJID VARCHAR, ZETAG VARCHAR, ZLASTMESSAGETEXT VARCHAR, "
       "ZPARTNERNAME VARCHAR, ZSAVEDINPUT VARCHAR)",
       "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
       "ZCHILDMESSAGESDELIVEREDCOUNT INTEGER, ZCHILDMESSAGESPLAYEDCOUNT INTEGER, "
       "ZCHILDMESSAGESREADCOUNT INTEGER, ZDATAITEMVERSION INTEGER, ZDOCID INTEGER, ZENCRETRYCOUNT INTEGER, "
       "ZFILTEREDRECIPIENTCOUNT INTEGER, ZFLAGS INTEGER, ZGROUPEVENTTYPE INTEGER, ZISFROMME INTEGER, "
       "ZMESSAGEERRORSTATUS INTEGER, ZMESSAGESTATUS INTEGER, ZMESSAGETYPE INTEGER, ZSORT INTEGER, "
       "ZSPOTLIGHTSTATUS INTEGER, ZSTARRED INTEGER, ZCHATSESSION INTEGER, ZGROUPMEMBER INTEGER, "
       "ZLASTSESSION INTEGER, ZMEDIAITEM INTEGER, ZMESSAGEINFO INTEGER, ZPARENTMESSAGE INTEGER, "
       "ZMESSAGEDATE TIMESTAMP, ZSENTDATE TIMESTAMP, ZFROMJID VARCHAR, ZMEDIASECTIONID VARCHAR, "
       "ZPHASH VARCHAR, ZPUSHNAME VARCHAR, ZSTANZAID VARCHAR, ZTEXT VARCHAR, ZTOJID VARCHAR)",
       "CREATE TABLE ZWAGROUPMEMBER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZCONTACTABID "
       "INTEGER, ZISACTIVE INTEGER, ZISADMIN INTEGER, ZSENDERKEYSENT INTEGER, ZCHATSESSION INTEGER, "
       "ZRECENTGROUPCHAT INTEGER, ZCONTACTIDENTIFIER VARCHAR, ZCONTACTNAME VARCHAR, ZFIRSTNAME VARCHAR, "
       "ZMEMBERJID VARCHAR)",
       "CREATE TABLE ZWAGROUPINFO (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZSTATE INTEGER, "
       "ZCHATSESSION INTEGER, ZLASTMESSAGEOWNER INTEGER, ZCREATIONDATE TIMESTAMP, ZSUBJECTTIMESTAMP "
       "TIMESTAMP, ZCREATORJID VARCHAR, ZOWNERJID VARCHAR, ZPICTUREID VARCHAR, ZPICTUREPATH VARCHAR, "
       "ZSOURCEJID VARCHAR, ZSUBJECTOWNERJID VARCHAR)",
       "CREATE TABLE ZWAMEDIAITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZCLOUDSTATUS "
       "INTEGER, ZFILESIZE INTEGER, ZMEDIAORIGIN INTEGER, ZMOVIEDURATION INTEGER, ZMESSAGE INTEGER, "
       "ZASPECTRATIO FLOAT, ZHACCURACY FLOAT, ZLATITUDE FLOAT, ZLONGITUDE FLOAT, ZMEDIAURLDATE TIMESTAMP, "
       "ZAUTHORNAME VARCHAR, ZCOLLECTIONNAME VARCHAR, ZMEDIALOCALPATH VARCHAR, ZMEDIAURL VARCHAR, "
       "ZTHUMBNAILLOCALPATH VARCHAR, ZTITLE VARCHAR, ZVCARDNAME VARCHAR, ZVCARDSTRING VARCHAR, "
       "ZXMPPTHUMBPATH VARCHAR, ZMEDIAKEY BLOB, ZMETADATA BLOB)",
       "CREATE TABLE ZWAPROFILEPUSHNAME (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZJID "
       "VARCHAR, ZPUSHNAME VARCHAR)",
       "CREATE TABLE ZWAMESSAGEINFO (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZMESSAGE "
       "INTEGER, ZRECEIPTINFO BLOB)",
       "CREATE TABLE ZWAPROFILEPICTUREITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
       "ZREQUESTDATE TIMESTAMP, ZJID VARCHAR, ZPATH VARCHAR, ZPICTUREID VARCHAR)",
       "CREATE TABLE ZWABLACKLISTITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZJID VARCHAR)",
       "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB)",
       "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX "
       "INTEGER)",
       "CREATE INDEX ZWAMESSAGE_ZCHATSESSION_INDEX ON ZWAMESSAGE (ZCHATSESSION)",
       "CREATE INDEX ZWAMEDIAITEM_ZMESSAGE_INDEX ON ZWAMEDIAITEM (ZMESSAGE)"});
  for (const EntityName& entity : kEntities)
    run("INSERT INTO Z_PRIMARYKEY VALUES (?, ?, 0, 0)", {entity.number, QString(entity.name)});
  run("INSERT INTO Z_METADATA (Z_VERSION, Z_UUID) VALUES (1, ?)", {storeGuid("chats")});
}

void ChatStore::noteMost(int entity, qint64 row) {
  run("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_ENT = ?", {row, entity});
}

qint64 ChatStore::addSession(const QString& jid, const QString& name) {
  const int type = jid.startsWith("status@") ? kStatusSession
                   : jid.endsWith("@g.us")   ? kGroupSession
                                             : kPersonSession;
  const qint64 row = insert(
      "INSERT INTO ZWACHATSESSION (Z_ENT, Z_OPT, ZARCHIVED, ZCONTACTABID, ZFLAGS, ZHIDDEN, ZMESSAGECOUNTER, "
      "ZREMOVED, ZSESSIONTYPE, ZUNREADCOUNT, ZCONTACTJID, ZPARTNERNAME) "
      "VALUES (?, 1, 0, 0, 0, 0, 0, 0, ?, 0, ?, ?)",
      {kSession, type, jid, name});
  m_sessions[row] = {jid, 0};
  noteMost(kSession, row);
  return row;
}

qint64 ChatStore::addGroup(const QString& jid, const QString& subject, const QString& ownerJid,
                           double created) {
  const qint64 session = addSession(jid, subject);
  const qint64 info = insert(
      "INSERT INTO ZWAGROUPINFO (Z_ENT, Z_OPT, ZSTATE, ZCHATSESSION, ZCREATIONDATE, ZSUBJECTTIMESTAMP, "
      "ZCREATORJID, ZOWNERJID, ZSUBJECTOWNERJID) VALUES (?, 1, 0, ?, ?, ?, ?, ?, ?)",
      {kGroupInfo, session, created, created, ownerJid, ownerJid, ownerJid});
  run("UPDATE ZWACHATSESSION SET ZGROUPINFO = ? WHERE Z_PK = ?", {info, session});
  noteMost(kGroupInfo, info);
  return session;
}

qint64 ChatStore::addMember(qint64 session, const QString& jid, const QString& contactName,
                            const QString& firstName) {
  const qint64 row = insert(
      "INSERT INTO ZWAGROUPMEMBER (Z_ENT, Z_OPT, ZCONTACTABID, ZISACTIVE, ZISADMIN, ZSENDERKEYSENT, "
      "ZCHATSESSION, ZCONTACTNAME, ZFIRSTNAME, ZMEMBERJID) VALUES (?, 1, 0, 1, 0, 1, ?, ?, ?, ?)",
      {kMember, session, contactName, firstName, jid});
  m_members[row] = jid;
  noteMost(kMember, row);
  return row;
}

void ChatStore::addPushName(const QString& jid, const QString& name) {
  noteMost(kPushName,
           insert("INSERT INTO ZWAPROFILEPUSHNAME (Z_ENT, Z_OPT, ZJID, ZPUSHNAME) VALUES (?, 1, ?, ?)",
                  {kPushName, jid, name}));
}

qint64 ChatStore::addMessage(const Message& message, const Media* media) {
  static const QString kInsert =
      "INSERT INTO ZWAMESSAGE (Z_ENT, Z_OPT, ZDATAITEMVERSION, ZDOCID, ZFLAGS, ZGROUPEVENTTYPE, ZISFROMME, "
      "ZMESSAGEERRORSTATUS, ZMESSAGESTATUS, ZMESSAGETYPE, ZSORT, ZSPOTLIGHTSTATUS, ZSTARRED, ZCHATSESSION, "
      "ZGROUPMEMBER, ZMESSAGEDATE, ZSENTDATE, ZFROMJID, ZPUSHNAME, ZSTANZAID, ZTEXT, ZTOJID) "
      "VALUES (?, 1, 3, ?, 0, ?, ?, 0, ?, ?, ?, 0, 0, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
  Session& session = m_sessions[message.session];
  const QString stanza = storeGuid(QString("chat message %1").arg(++m_messages)).remove('-').left(20);
  // In a group ZFROMJID is the group; the sender is the member.
  const qint64 row = insert(
      kInsert, {kMessage, m_messages, message.groupEvent, message.fromMe ? 1 : 0,
                message.fromMe ? kSent : kDelivered, message.type, ++session.messages, message.session,
                orNull(message.member), message.date, message.date, message.fromMe ? QString() : session.jid,
                message.pushName, stanza, message.text, message.fromMe ? session.jid : kOwnJid});
  if (media) {
    run("UPDATE ZWAMESSAGE SET ZMEDIAITEM = ?, ZMEDIASECTIONID = '2016-12' WHERE Z_PK = ?",
        {addMedia(row, *media, message.date), row});
  }
  run("UPDATE ZWAMESSAGE SET ZLASTSESSION = NULL WHERE ZLASTSESSION = ?", {message.session});
  run("UPDATE ZWAMESSAGE SET ZLASTSESSION = ? WHERE Z_PK = ?", {message.session, row});
  run("UPDATE ZWACHATSESSION SET ZLASTMESSAGE = ?, ZLASTMESSAGEDATE = ?, ZMESSAGECOUNTER = ? WHERE Z_PK = ?",
      {row, message.date, session.messages, message.session});
  noteMost(kMessage, row);
  return row;
}

qint64 ChatStore::addMedia(qint64 message, const Media& media, double date) {
  const auto orNothing = [](double value) { return value == 0 ? QVariant() : QVariant(value); };
  const qint64 row = insert(
      "INSERT INTO ZWAMEDIAITEM (Z_ENT, Z_OPT, ZCLOUDSTATUS, ZFILESIZE, ZMEDIAORIGIN, ZMOVIEDURATION, "
      "ZMESSAGE, ZLATITUDE, ZLONGITUDE, ZMEDIAURLDATE, ZMEDIALOCALPATH, ZMEDIAURL, ZTITLE, ZVCARDNAME, "
      "ZVCARDSTRING) VALUES (?, 1, 4, ?, 0, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {kMedia, media.size, media.duration, message, orNothing(media.latitude), orNothing(media.longitude),
       date, media.localPath, media.url, media.title, media.vcardName, media.vcardString});
  noteMost(kMedia, row);
  return row;
}

}  // namespace orvandel
