#include "sample/note_document.h"
#include "sample/store_guid.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

/// A column of later versions, and the column with the same value; null for none.
struct LaterColumn {
  const char *name, *type;
  int since;
  const char* copyOf;
};

const LaterColumn kLaterColumns[] = {
    {"ZCRYPTOSALT", "BLOB", 9, nullptr},
    {"ZCRYPTOVERIFIER", "BLOB", 9, nullptr},
    {"ZCRYPTOWRAPPEDKEY", "BLOB", 9, nullptr},
    {"ZSERVERRECORDDATA", "BLOB", 9, nullptr},
    {"ZISPINNED", "INTEGER", 11, nullptr},
    {"ZMERGEABLEDATA1", "BLOB", 13, nullptr},
    {"ZACCOUNT3", "INTEGER", 13, "ZACCOUNT2"},
    {"ZACCOUNT4", "INTEGER", 15, "ZACCOUNT2"},
    {"ZCREATIONDATE3", "TIMESTAMP", 15, "ZCREATIONDATE1"},
    {"ZACCOUNT7", "INTEGER", 17, "ZACCOUNT2"},
};

}  // namespace

// The entity numbers (Z_ENT) are defined by Z_PRIMARYKEY of the same store.

NotesCloudStore::NotesCloudStore(const QString& path, bool wal, int ios)
    : SampleStore(path, wal), m_ios(ios) {
  create(
      {"CREATE TABLE ZICCLOUDSYNCINGOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
       "ZCLOUDSTATE INTEGER, ZCRYPTOITERATIONCOUNT INTEGER, ZISPASSWORDPROTECTED INTEGER, "
       "ZMARKEDFORDELETION INTEGER, ZMINIMUMSUPPORTEDNOTESVERSION INTEGER, ZNEEDSINITIALFETCHFROMCLOUD "
       "INTEGER, "
       "ZFILESIZE INTEGER, ZORIENTATION INTEGER, ZSECTION INTEGER, ZLOCATION INTEGER, ZMEDIA INTEGER, ZNOTE "
       "INTEGER, "
       "ZPARENTATTACHMENT INTEGER, ZHASCHECKLIST INTEGER, ZLEGACYCONTENTHASHATIMPORT INTEGER, ZNOTEDATA "
       "INTEGER, "
       "ZACCOUNT INTEGER, ZFOLDER INTEGER, ZACCOUNTTYPE INTEGER, ZFOLDERTYPE INTEGER, ZPARENT INTEGER, "
       "ZOWNER INTEGER, ZACCOUNT1 INTEGER, ZACCOUNT2 INTEGER, ZCREATIONDATE TIMESTAMP, ZMODIFICATIONDATE "
       "TIMESTAMP, "
       "ZCREATIONDATE1 TIMESTAMP, ZMODIFICATIONDATE1 TIMESTAMP, ZLEGACYMODIFICATIONDATEATIMPORT TIMESTAMP, "
       "ZDATEFORLASTTITLEMODIFICATION TIMESTAMP, ZIDENTIFIER VARCHAR, ZPASSWORDHINT VARCHAR, ZZONEOWNERNAME "
       "VARCHAR, "
       "ZSUMMARY VARCHAR, ZTITLE VARCHAR, ZTYPEUTI VARCHAR, ZURLSTRING VARCHAR, ZFILENAME VARCHAR, ZSNIPPET "
       "VARCHAR, "
       "ZTHUMBNAILATTACHMENTIDENTIFIER VARCHAR, ZTITLE1 VARCHAR, ZNAME VARCHAR, ZUSERRECORDNAME VARCHAR, "
       "ZNESTEDTITLEFORSORTING VARCHAR, ZTITLE2 VARCHAR, ZCRYPTOINITIALIZATIONVECTOR BLOB, ZCRYPTOTAG BLOB)",
       "CREATE TABLE ZICNOTEDATA (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZNOTE INTEGER, "
       "ZCRYPTOINITIALIZATIONVECTOR BLOB, ZCRYPTOTAG BLOB, ZDATA BLOB)",
       "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB)",
       "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX "
       "INTEGER)",
       "CREATE INDEX ZICCLOUDSYNCINGOBJECT_ZFOLDER_INDEX ON ZICCLOUDSYNCINGOBJECT (ZFOLDER)",
       "INSERT INTO Z_PRIMARYKEY VALUES (2, 'ICCloudSyncingObject', 0, 0)",
       "INSERT INTO Z_PRIMARYKEY VALUES (8, 'ICNote', 2, 0)",
       "INSERT INTO Z_PRIMARYKEY VALUES (11, 'ICAccount', 2, 0)",
       "INSERT INTO Z_PRIMARYKEY VALUES (12, 'ICFolder', 2, 0)",
       "INSERT INTO Z_PRIMARYKEY VALUES (16, 'ICNoteData', 0, 0)"});
  run("INSERT INTO Z_METADATA (Z_VERSION, Z_UUID) VALUES (1, ?)", {storeGuid("cloud notes")});
  for (const LaterColumn& column : kLaterColumns) {
    if (ios >= column.since)
      run(QString("ALTER TABLE ZICCLOUDSYNCINGOBJECT ADD COLUMN %1 %2").arg(column.name, column.type));
  }
}

void NotesCloudStore::addFolder(const QString& name) {
  const qint64 account = insert(
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_ENT, Z_OPT, ZACCOUNTTYPE, ZIDENTIFIER, ZNAME, "
      "ZMARKEDFORDELETION) "
      "VALUES (11, 1, 3, 'LocalAccount', ?, 0)",
      {QString("On My iPhone")});
  m_folder = insert(
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_ENT, Z_OPT, ZFOLDERTYPE, ZOWNER, ZIDENTIFIER, ZTITLE2, "
      "ZMARKEDFORDELETION) VALUES (12, 1, 0, ?, 'DefaultFolder-LocalAccount', ?, 0)",
      {account, name});
  m_account = account;
}

void NotesCloudStore::add(const QVariant& date1, const QString& title, const QString& snippet,
                          const QString& text) {
  static const QString kInsert =
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_ENT, Z_OPT, ZMARKEDFORDELETION, ZISPASSWORDPROTECTED, ZFOLDER, "
      "ZACCOUNT2, "
      "ZCREATIONDATE1, ZMODIFICATIONDATE1, ZTITLE1, ZSNIPPET) VALUES (8, 1, 0, 0, ?, ?, ?, ?, ?, ?)";
  const qint64 note = insert(kInsert, {m_folder, m_account, date1, date1, title, snippet});
  const qint64 data = insert("INSERT INTO ZICNOTEDATA (Z_ENT, Z_OPT, ZNOTE, ZDATA) VALUES (16, 1, ?, ?)",
                             {note, text.isNull() ? QVariant() : QVariant(noteDocument(text))});
  run("UPDATE ZICCLOUDSYNCINGOBJECT SET ZNOTEDATA = ?, ZIDENTIFIER = ? WHERE Z_PK = ?",
      {data, storeGuid(QString("cloud note %1").arg(note)), note});
  for (const LaterColumn& column : kLaterColumns) {
    if (m_ios >= column.since && column.copyOf)
      run(QString("UPDATE ZICCLOUDSYNCINGOBJECT SET %1 = %2 WHERE Z_PK = ?").arg(column.name, column.copyOf),
          {note});
  }
  run("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_ENT = 2", {note});
  run("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_ENT = 16", {data});
}

}  // namespace orvandel
