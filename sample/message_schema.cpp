#include "sample/message_schema.h"

#include <vector>

namespace orvandel {

namespace {

using message_columns::kAttributedBody;

/// A column of a table, from a version of the system on. The constraints follow the columns.
struct Column {
  const char* definition;
  int since = 0;
  bool isPlain = false;  // in stores without a version as well
};

struct Table {
  const char* name;
  int since;
  std::vector<Column> columns;
  const char* constraints = nullptr;
};

// clang-format off
const std::vector<Table>& tables() {
  static const std::vector<Table> kTables = {
      {"_SqliteDatabaseProperties", 0, {
          {"key TEXT"}, {"value TEXT"}},
       "UNIQUE(key)"},
      {"message", 0, {
          {"ROWID INTEGER PRIMARY KEY AUTOINCREMENT"}, {"guid TEXT"}, {"text TEXT"},
          {"replace INTEGER DEFAULT 0"}, {"service_center TEXT"}, {"handle_id INTEGER DEFAULT 0"},
          {"subject TEXT"}, {"country TEXT"}, {"attributedBody BLOB", kAttributedBody, true},
          {"version INTEGER DEFAULT 0"}, {"type INTEGER DEFAULT 0"}, {"service TEXT"}, {"account TEXT"},
          {"account_guid TEXT"}, {"error INTEGER DEFAULT 0"}, {"date INTEGER"}, {"date_read INTEGER"},
          {"date_delivered INTEGER"}, {"is_delivered INTEGER DEFAULT 0"},
          {"is_finished INTEGER DEFAULT 0"}, {"is_emote INTEGER DEFAULT 0"},
          {"is_from_me INTEGER DEFAULT 0"}, {"is_empty INTEGER DEFAULT 0"},
          {"is_delayed INTEGER DEFAULT 0"}, {"is_auto_reply INTEGER DEFAULT 0"},
          {"is_prepared INTEGER DEFAULT 0"}, {"is_read INTEGER DEFAULT 0"},
          {"is_system_message INTEGER DEFAULT 0"}, {"is_sent INTEGER DEFAULT 0"},
          {"has_dd_results INTEGER DEFAULT 0"}, {"is_service_message INTEGER DEFAULT 0"},
          {"is_forward INTEGER DEFAULT 0"}, {"was_downgraded INTEGER DEFAULT 0"},
          {"is_archive INTEGER DEFAULT 0"}, {"cache_has_attachments INTEGER DEFAULT 0"},
          {"cache_roomnames TEXT"}, {"was_data_detected INTEGER DEFAULT 0"},
          {"was_deduplicated INTEGER DEFAULT 0"}, {"is_audio_message INTEGER DEFAULT 0"},
          {"is_played INTEGER DEFAULT 0"}, {"date_played INTEGER"}, {"item_type INTEGER DEFAULT 0"},
          {"other_handle INTEGER DEFAULT -1"}, {"group_title TEXT"},
          {"group_action_type INTEGER DEFAULT 0"}, {"share_status INTEGER"}, {"share_direction INTEGER"},
          {"is_expirable INTEGER DEFAULT 0"}, {"expire_state INTEGER DEFAULT 0"},
          {"message_action_type INTEGER DEFAULT 0"}, {"message_source INTEGER DEFAULT 0"},
          {"associated_message_guid TEXT", 10}, {"associated_message_type INTEGER DEFAULT 0", 10},
          {"balloon_bundle_id TEXT", 10}, {"payload_data BLOB", 10}, {"expressive_send_style_id TEXT", 10},
          {"associated_message_range_location INTEGER DEFAULT 0", 10},
          {"associated_message_range_length INTEGER DEFAULT 0", 10},
          {"time_expressive_send_played INTEGER", 10}, {"message_summary_info BLOB", 10},
          {"ck_sync_state INTEGER DEFAULT 0", 11}, {"ck_record_id TEXT", 11},
          {"ck_record_change_tag TEXT", 11}, {"destination_caller_id TEXT", 11},
          {"sr_ck_sync_state INTEGER DEFAULT 0", 12}, {"sr_ck_record_id TEXT", 12},
          {"sr_ck_record_change_tag TEXT", 12}, {"is_corrupt INTEGER DEFAULT 0", 12},
          {"reply_to_guid TEXT", 12}, {"sort_id INTEGER DEFAULT 0", 12}, {"is_spam INTEGER DEFAULT 0", 12},
          {"has_unseen_mention INTEGER DEFAULT 0", 13}, {"thread_originator_guid TEXT", 14},
          {"thread_originator_part TEXT", 14}, {"syndication_ranges TEXT", 15},
          {"was_delivered_quietly INTEGER DEFAULT 0", 15}, {"did_notify_recipient INTEGER DEFAULT 0", 15},
          {"synced_syndication_ranges TEXT", 16}, {"date_retracted INTEGER DEFAULT 0", 16},
          {"date_edited INTEGER DEFAULT 0", 16}, {"was_detonated INTEGER DEFAULT 0", 16},
          {"part_count INTEGER", 16}, {"is_stewie INTEGER DEFAULT 0", 16},
          {"is_sos INTEGER DEFAULT 0", 17}, {"is_critical INTEGER DEFAULT 0", 17},
          {"bia_reference_id TEXT", 17}, {"is_kt_verified INTEGER DEFAULT 0", 17},
          {"fallback_hash TEXT", 17}, {"associated_message_emoji TEXT", 18},
          {"is_pending_satellite_send INTEGER DEFAULT 0", 18}, {"needs_relay INTEGER DEFAULT 0", 18},
          {"schedule_type INTEGER DEFAULT 0", 18}, {"schedule_state INTEGER DEFAULT 0", 18},
          {"sent_or_received_off_grid INTEGER DEFAULT 0", 18}}},
      {"handle", 0, {
          {"ROWID INTEGER PRIMARY KEY AUTOINCREMENT"}, {"id TEXT"}, {"country TEXT"}, {"service TEXT"},
          {"uncanonicalized_id TEXT"}, {"person_centric_id TEXT", 12}}},
      {"chat", 0, {
          {"ROWID INTEGER PRIMARY KEY AUTOINCREMENT"}, {"guid TEXT"}, {"style INTEGER"}, {"state INTEGER"},
          {"account_id TEXT"}, {"properties BLOB"}, {"chat_identifier TEXT"}, {"service_name TEXT"},
          {"room_name TEXT"}, {"account_login TEXT"}, {"is_archived INTEGER DEFAULT 0"},
          {"last_addressed_handle TEXT"}, {"display_name TEXT"}, {"group_id TEXT"},
          {"is_filtered INTEGER"}, {"successful_query INTEGER"}, {"engram_id TEXT", 11},
          {"server_change_token TEXT", 11}, {"ck_sync_state INTEGER DEFAULT 0", 11},
          {"last_read_message_timestamp INTEGER DEFAULT 0", 11}, {"original_group_id TEXT", 11},
          {"sr_server_change_token TEXT", 12}, {"sr_ck_sync_state INTEGER DEFAULT 0", 12},
          {"cloudkit_record_id TEXT", 12}, {"sr_cloudkit_record_id TEXT", 12},
          {"last_addressed_sim_id TEXT", 12}, {"is_blackholed INTEGER DEFAULT 0", 13},
          {"syndication_date INTEGER DEFAULT 0", 15}, {"syndication_type INTEGER DEFAULT 0", 15},
          {"is_recovered INTEGER DEFAULT 0", 16}, {"is_deleting_incoming_messages INTEGER DEFAULT 0", 16}}},
      {"chat_message_join", 0, {
          {"chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE"},
          {"message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE"},
          {"message_date INTEGER DEFAULT 0", 11}},
       "PRIMARY KEY (chat_id, message_id)"},
      {"chat_handle_join", 0, {
          {"chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE"},
          {"handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE"}},
       "UNIQUE(chat_id, handle_id)"},
      {"attachment", 0, {
          {"ROWID INTEGER PRIMARY KEY AUTOINCREMENT"}, {"guid TEXT"}, {"created_date INTEGER DEFAULT 0"},
          {"start_date INTEGER DEFAULT 0"}, {"filename TEXT"}, {"uti TEXT"}, {"mime_type TEXT"},
          {"transfer_state INTEGER DEFAULT 0"}, {"is_outgoing INTEGER DEFAULT 0"}, {"user_info BLOB"},
          {"transfer_name TEXT"}, {"total_bytes INTEGER DEFAULT 0"}, {"is_sticker INTEGER DEFAULT 0", 10},
          {"sticker_user_info BLOB", 10}, {"attribution_info BLOB", 10},
          {"hide_attachment INTEGER DEFAULT 0", 10}, {"ck_sync_state INTEGER DEFAULT 0", 11},
          {"ck_server_change_token_blob BLOB", 11}, {"ck_record_id TEXT", 11}, {"original_guid TEXT", 11},
          {"sr_ck_sync_state INTEGER DEFAULT 0", 12}, {"sr_ck_server_change_token_blob BLOB", 12},
          {"sr_ck_record_id TEXT", 12}, {"is_commsafety_sensitive INTEGER DEFAULT 0", 15},
          {"emoji_image_content_identifier TEXT", 17}, {"emoji_image_short_description TEXT", 17},
          {"preview_generation_state INTEGER DEFAULT 0", 17}}},
      {"message_attachment_join", 0, {
          {"message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE"},
          {"attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE"}},
       "UNIQUE(message_id, attachment_id)"},
      {"deleted_messages", 0, {
          {"ROWID INTEGER PRIMARY KEY AUTOINCREMENT"}, {"guid TEXT"}}},
      {"chat_recoverable_message_join", 16, {
          {"chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE"},
          {"message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE"}, {"delete_date INTEGER"},
          {"ck_sync_state INTEGER DEFAULT 0"}},
       "PRIMARY KEY (chat_id, message_id)"},
  };
  return kTables;
}
// clang-format on

QString createStatement(const Table& table, int ios) {
  QStringList parts;
  for (const Column& column : table.columns) {
    if (ios >= column.since || (ios == 0 && column.isPlain)) parts.append(column.definition);
  }
  if (table.constraints) parts.append(table.constraints);
  return QString("CREATE TABLE %1 (%2)").arg(table.name, parts.join(", "));
}

}  // namespace

QStringList messageSchema(int ios) {
  QStringList statements;
  for (const Table& table : tables()) {
    if (ios >= table.since) statements.append(createStatement(table, ios));
  }
  statements.append("INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '9013')");
  statements.append("CREATE INDEX message_idx_handle ON message(handle_id, date)");
  statements.append("CREATE INDEX chat_idx_identifier ON chat(chat_identifier)");
  return statements;
}

}  // namespace orvandel
