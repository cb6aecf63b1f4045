#include "sample/message_schema.h"
#include "sample/store_guid.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

const QString kOwnAccount = "P:+4930901820";

/// A column of messages that isn't in all stores.
struct LaterColumn {
  const char* name;
  int since;
  bool (*isSet)(const MessageStore::Message& message);
  QVariant (*value)(const MessageStore::Message& message);
};

using Message = MessageStore::Message;

// clang-format off
const LaterColumn kLaterColumns[] = {
    {"attributedBody", message_columns::kAttributedBody,
     [](const Message& m) { return !m.attributedBody.isEmpty(); }, [](const Message& m) { return QVariant(m.attributedBody); }},
    {"associated_message_guid", message_columns::kAssociated,
     [](const Message& m) { return !m.associatedGuid.isNull(); }, [](const Message& m) { return QVariant(m.associatedGuid); }},
    {"associated_message_type", message_columns::kAssociated,
     [](const Message& m) { return m.associatedType != 0; }, [](const Message& m) { return QVariant(m.associatedType); }},
    {"associated_message_range_length", message_columns::kAssociated,
     [](const Message& m) { return m.associatedLength != 0; }, [](const Message& m) { return QVariant(m.associatedLength); }},
    {"thread_originator_guid", message_columns::kThreads,
     [](const Message& m) { return !m.threadGuid.isNull(); }, [](const Message& m) { return QVariant(m.threadGuid); }},
    {"thread_originator_part", message_columns::kThreads,
     [](const Message& m) { return !m.threadGuid.isNull(); }, [](const Message&) { return QVariant("0:0:5"); }},
    {"date_edited", message_columns::kEdits,
     [](const Message& m) { return m.dateEdited != 0; }, [](const Message& m) { return QVariant(m.dateEdited); }},
    {"date_retracted", message_columns::kEdits,
     [](const Message& m) { return m.dateRetracted != 0; }, [](const Message& m) { return QVariant(m.dateRetracted); }},
    {"part_count", message_columns::kEdits,
     [](const Message&) { return true; }, [](const Message&) { return QVariant(1); }},
};
// clang-format on

}  // namespace

MessageStore::MessageStore(const QString& path, bool wal, int ios) : SampleStore(path, wal), m_ios(ios) {
  for (const QString& statement : messageSchema(ios)) run(statement);
}

QString MessageStore::messageGuid(int count) {
  return storeGuid(QString("message %1").arg(count));
}

QString MessageStore::attachmentGuid(const QString& path) {
  return storeGuid("attachment " + path);
}

qint64 MessageStore::addHandle(const QString& id, const QString& service) {
  const qint64 row =
      insert("INSERT INTO handle (id, country, service, uncanonicalized_id) VALUES (?, 'de', ?, ?)",
             {id, service, id});
  m_services[row] = service;
  if (m_ios >= message_columns::kPersons)
    run("UPDATE handle SET person_centric_id = ? WHERE ROWID = ?", {storeGuid("person " + id), row});
  return row;
}

qint64 MessageStore::addChat(const QString& identifier, const QString& displayName) {
  static const QString kInsert =
      "INSERT INTO chat (guid, style, state, account_id, chat_identifier, service_name, room_name, "
      "account_login, "
      "group_id, display_name) VALUES (?, ?, 3, ?, ?, 'iMessage', ?, ?, ?, ?)";
  // Style and guid differ between chats of two (45, "-") and group chats (43, "+"), whose identifiers are
  // generated.
  const bool isGroup = identifier.startsWith("chat");
  return insert(kInsert, {QString(isGroup ? "iMessage;+;" : "iMessage;-;") + identifier, isGroup ? 43 : 45,
                          storeGuid("account"), identifier, isGroup ? identifier : QString(), kOwnAccount,
                          storeGuid("group " + identifier), displayName});
}

void MessageStore::addMember(qint64 chat, qint64 handle) {
  static const QString kInsert = "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (?, ?)";
  if (m_chatHandles.insert({chat, handle}).second) insert(kInsert, {chat, handle});
}

qint64 MessageStore::addMessage(qint64 handle, const QString& text, qint64 date, bool fromMe,
                                const std::vector<qint64>& chats) {
  Message message;
  message.handle = handle;
  message.text = text;
  message.date = date;
  message.fromMe = fromMe;
  message.chats = chats;
  return addMessage(message);
}

qint64 MessageStore::addMessage(const Message& message) {
  static const QString kInsert =
      "INSERT INTO message (guid, text, handle_id, version, service, account, account_guid, date, date_read, "
      "date_delivered, is_delivered, is_finished, is_from_me, is_prepared, is_read, is_sent, "
      "was_data_detected) "
      "VALUES (?, ?, ?, 10, ?, ?, ?, ?, ?, 0, ?, 1, ?, ?, ?, ?, 1)";
  static const QString kJoin = "INSERT INTO chat_message_join (chat_id, message_id) VALUES (?, ?)";
  static const QString kDatedJoin =
      "INSERT INTO chat_message_join (chat_id, message_id, message_date) VALUES (?, ?, ?)";
  static const QString kAccountGuid = storeGuid("account");
  const auto service = m_services.find(message.handle);
  const int me = message.fromMe ? 1 : 0;
  const qint64 row = insert(kInsert, {messageGuid(++m_messages), message.text, message.handle,
                                      service == m_services.end() ? QString("iMessage") : service->second,
                                      kOwnAccount, kAccountGuid, message.date,
                                      message.fromMe ? qint64{0} : message.date, me, me, me, 1 - me, me});
  for (const LaterColumn& column : kLaterColumns) {
    if (m_ios < column.since || !column.isSet(message)) continue;
    run(QString("UPDATE message SET %1 = ? WHERE ROWID = ?").arg(column.name), {column.value(message), row});
  }
  for (const qint64 chat : message.chats) {
    m_ios < message_columns::kDatedJoins ? insert(kJoin, {chat, row})
                                         : insert(kDatedJoin, {chat, row, message.date});
    if (message.handle) addMember(chat, message.handle);
  }
  return row;
}

void MessageStore::addAttachment(qint64 message, const QString& path, const QString& mimeType, qint64 size) {
  const qint64 attachment = insert(
      "INSERT INTO attachment (guid, filename, mime_type, transfer_state, transfer_name, total_bytes) "
      "VALUES (?, ?, ?, 5, ?, ?)",
      {attachmentGuid(path), path, mimeType, path.mid(path.lastIndexOf('/') + 1), size});
  insert("INSERT INTO message_attachment_join (message_id, attachment_id) VALUES (?, ?)",
         {message, attachment});
  run("UPDATE message SET cache_has_attachments = 1 WHERE ROWID = ?", {message});
}

}  // namespace orvandel
