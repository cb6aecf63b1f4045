#pragma once
#include <QString>
#include <optional>
#include <string>

#include "sample/stores.h"

// A WhatsApp store with the tables and columns that readers may find, for tests.

namespace orvandel {

/// Builds "ChatStorage.sqlite" row by row.
class WhatsAppTestStore : public SampleStore {
 public:
  explicit WhatsAppTestStore(const QString& path) : SampleStore(path, false) {
    create(
        {"CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, ZCONTACTJID VARCHAR, ZPARTNERNAME VARCHAR, "
         "ZGROUPINFO INTEGER)",
         "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZISFROMME INTEGER, "
         "ZMESSAGEDATE TIMESTAMP, ZTEXT VARCHAR, ZMESSAGETYPE INTEGER, ZGROUPEVENTTYPE INTEGER, "
         "ZGROUPMEMBER INTEGER, ZFROMJID VARCHAR, ZPUSHNAME VARCHAR)",
         "CREATE TABLE ZWAGROUPMEMBER (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZMEMBERJID VARCHAR, "
         "ZCONTACTNAME VARCHAR, ZFIRSTNAME VARCHAR)",
         "CREATE TABLE ZWAMEDIAITEM (Z_PK INTEGER PRIMARY KEY, ZMESSAGE INTEGER, ZMEDIALOCALPATH VARCHAR, "
         "ZTITLE VARCHAR, ZVCARDNAME VARCHAR, ZVCARDSTRING VARCHAR)",
         "CREATE TABLE ZWAPROFILEPUSHNAME (Z_PK INTEGER PRIMARY KEY, ZJID VARCHAR, ZPUSHNAME VARCHAR)"});
  }

  /// @return its Z_PK.
  qint64 AddPerson(const QString& jid, const QString& name) {
    return insert("INSERT INTO ZWACHATSESSION (ZCONTACTJID, ZPARTNERNAME) VALUES (?, ?)", {jid, name});
  }
  qint64 AddGroup(const QString& jid, const QString& subject) {
    return insert("INSERT INTO ZWACHATSESSION (ZCONTACTJID, ZPARTNERNAME, ZGROUPINFO) VALUES (?, ?, 1)",
                  {jid, subject});
  }
  qint64 AddMember(qint64 group, const QString& jid, const QString& name = {}, const QString& first = {}) {
    return insert(
        "INSERT INTO ZWAGROUPMEMBER (ZCHATSESSION, ZMEMBERJID, ZCONTACTNAME, ZFIRSTNAME) VALUES (?, ?, ?, ?)",
        {group, jid, name, first});
  }
  void AddPushName(const QString& jid, const QString& name) {
    insert("INSERT INTO ZWAPROFILEPUSHNAME (ZJID, ZPUSHNAME) VALUES (?, ?)", {jid, name});
  }
  /// @param date seconds from 2001-01-01.
  qint64 AddMessage(qint64 session, const QVariant& date, const QString& text, bool fromMe = false,
                    int type = 0) {
    return insert(
        "INSERT INTO ZWAMESSAGE (ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZTEXT, ZMESSAGETYPE) "
        "VALUES (?, ?, ?, ?, ?)",
        {session, fromMe ? 1 : 0, date, text, type});
  }
  qint64 AddMemberMessage(qint64 session, qint64 member, const QVariant& date, const QString& text) {
    const qint64 message = AddMessage(session, date, text);
    run("UPDATE ZWAMESSAGE SET ZGROUPMEMBER = ? WHERE Z_PK = ?", {member, message});
    return message;
  }
  void AddMedia(qint64 message, const QString& path, const QString& title = {}, const QString& card = {}) {
    insert("INSERT INTO ZWAMEDIAITEM (ZMESSAGE, ZMEDIALOCALPATH, ZTITLE, ZVCARDSTRING) VALUES (?, ?, ?, ?)",
           {message, path, title, card});
  }
};

}  // namespace orvandel
