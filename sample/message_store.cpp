#include "sample/store_guid.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

const QString kOwnAccount = "P:+4930901820";

}  // namespace

MessageStore::MessageStore(const QString& path, bool wal) : SampleStore(path, wal) {
  create(
      {"CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key))",
       "INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '9013')",
       "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, text TEXT, "
       "replace INTEGER DEFAULT 0, service_center TEXT, handle_id INTEGER DEFAULT 0, subject TEXT, country "
       "TEXT, "
       "attributedBody BLOB, version INTEGER DEFAULT 0, type INTEGER DEFAULT 0, service TEXT, account TEXT, "
       "account_guid TEXT, error INTEGER DEFAULT 0, date INTEGER, date_read INTEGER, date_delivered INTEGER, "
       "is_delivered INTEGER DEFAULT 0, is_finished INTEGER DEFAULT 0, is_emote INTEGER DEFAULT 0, "
       "is_from_me INTEGER DEFAULT 0, is_empty INTEGER DEFAULT 0, is_delayed INTEGER DEFAULT 0, "
       "is_auto_reply INTEGER DEFAULT 0, is_prepared INTEGER DEFAULT 0, is_read INTEGER DEFAULT 0, "
       "is_system_message INTEGER DEFAULT 0, is_sent INTEGER DEFAULT 0, has_dd_results INTEGER DEFAULT 0, "
       "is_service_message INTEGER DEFAULT 0, is_forward INTEGER DEFAULT 0, was_downgraded INTEGER DEFAULT "
       "0, "
       "is_archive INTEGER DEFAULT 0, cache_has_attachments INTEGER DEFAULT 0, cache_roomnames TEXT, "
       "was_data_detected INTEGER DEFAULT 0, was_deduplicated INTEGER DEFAULT 0, "
       "is_audio_message INTEGER DEFAULT 0, is_played INTEGER DEFAULT 0, date_played INTEGER, "
       "item_type INTEGER DEFAULT 0, other_handle INTEGER DEFAULT -1, group_title TEXT, "
       "group_action_type INTEGER DEFAULT 0, share_status INTEGER, share_direction INTEGER, "
       "is_expirable INTEGER DEFAULT 0, expire_state INTEGER DEFAULT 0, message_action_type INTEGER DEFAULT "
       "0, "
       "message_source INTEGER DEFAULT 0)",
       "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT, country TEXT, service TEXT, "
       "uncanonicalized_id TEXT)",
       "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, style INTEGER, state INTEGER, "
       "account_id TEXT, properties BLOB, chat_identifier TEXT, service_name TEXT, room_name TEXT, "
       "account_login TEXT, is_archived INTEGER DEFAULT 0, last_addressed_handle TEXT, display_name TEXT, "
       "group_id TEXT, is_filtered INTEGER, successful_query INTEGER)",
       "CREATE TABLE chat_message_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
       "message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, PRIMARY KEY (chat_id, message_id))",
       "CREATE TABLE chat_handle_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
       "handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE, UNIQUE(chat_id, handle_id))",
       "CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, "
       "created_date INTEGER DEFAULT 0, start_date INTEGER DEFAULT 0, filename TEXT, uti TEXT, mime_type "
       "TEXT, "
       "transfer_state INTEGER DEFAULT 0, is_outgoing INTEGER DEFAULT 0, user_info BLOB, transfer_name TEXT, "
       "total_bytes INTEGER DEFAULT 0)",
       "CREATE TABLE message_attachment_join (message_id INTEGER REFERENCES message (ROWID) ON DELETE "
       "CASCADE, "
       "attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE, "
       "UNIQUE(message_id, attachment_id))",
       "CREATE TABLE deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT)",
       "CREATE INDEX message_idx_handle ON message(handle_id, date)",
       "CREATE INDEX chat_idx_identifier ON chat(chat_identifier)"});
}

qint64 MessageStore::addHandle(const QString& id, const QString& service) {
  const qint64 row =
      insert("INSERT INTO handle (id, country, service, uncanonicalized_id) VALUES (?, 'de', ?, ?)",
             {id, service, id});
  m_services[row] = service;
  return row;
}

qint64 MessageStore::addChat(const QString& identifier) {
  static const QString kInsert =
      "INSERT INTO chat (guid, style, state, account_id, chat_identifier, service_name, room_name, "
      "account_login, "
      "group_id) VALUES (?, ?, 3, ?, ?, 'iMessage', ?, ?, ?)";
  // Style and guid differ between chats of two (45, "-") and group chats (43, "+"), whose identifiers are
  // generated.
  const bool isGroup = identifier.startsWith("chat");
  return insert(kInsert, {QString(isGroup ? "iMessage;+;" : "iMessage;-;") + identifier, isGroup ? 43 : 45,
                          storeGuid("account"), identifier, isGroup ? identifier : QString(), kOwnAccount,
                          storeGuid("group " + identifier)});
}

qint64 MessageStore::addMessage(qint64 handle, const QString& text, qint64 date, bool fromMe,
                                const std::vector<qint64>& chats) {
  static const QString kInsert =
      "INSERT INTO message (guid, text, handle_id, version, service, account, account_guid, date, date_read, "
      "date_delivered, is_delivered, is_finished, is_from_me, is_prepared, is_read, is_sent, "
      "was_data_detected) "
      "VALUES (?, ?, ?, 10, ?, ?, ?, ?, ?, 0, ?, 1, ?, ?, ?, ?, 1)";
  static const QString kJoinMessage = "INSERT INTO chat_message_join (chat_id, message_id) VALUES (?, ?)";
  static const QString kJoinHandle = "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (?, ?)";
  static const QString kAccountGuid = storeGuid("account");
  const auto service = m_services.find(handle);
  const int me = fromMe ? 1 : 0;
  const qint64 message =
      insert(kInsert, {storeGuid(QString("message %1").arg(++m_messages)), text, handle,
                       service == m_services.end() ? QString("iMessage") : service->second, kOwnAccount,
                       kAccountGuid, date, fromMe ? qint64{0} : date, me, me, me, 1 - me, me});
  for (const qint64 chat : chats) {
    insert(kJoinMessage, {chat, message});
    if (m_chatHandles.insert({chat, handle}).second) insert(kJoinHandle, {chat, handle});
  }
  return message;
}

void MessageStore::addAttachment(qint64 message, const QString& path, const QString& mimeType, qint64 size) {
  const qint64 attachment = insert(
      "INSERT INTO attachment (guid, filename, mime_type, transfer_state, transfer_name, total_bytes) "
      "VALUES (?, ?, ?, 5, ?, ?)",
      {storeGuid("attachment " + path), path, mimeType, path.mid(path.lastIndexOf('/') + 1), size});
  insert("INSERT INTO message_attachment_join (message_id, attachment_id) VALUES (?, ?)",
         {message, attachment});
  run("UPDATE message SET cache_has_attachments = 1 WHERE ROWID = ?", {message});
}

}  // namespace orvandel
