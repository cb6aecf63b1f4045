#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "benchmarks/data.h"
#include "extract/messages.h"
#include "extract/whatsapp_chats.h"

namespace orvandel {

namespace {

// The statement of the message reader.
constexpr char kColumns[] =
    "SELECT  message.text, message.is_from_me, datetime(message.date/1000000000 + 978307200, 'unixepoch') AS "
    "DateStr, message.RowID,message.handle_id, handle.id as sender_name,message.date, "
    "datetime(message.date + 978307200, 'unixepoch') AS DateStrOld";
constexpr char kTables[] =
    " FROM chat_message_join INNER JOIN message  ON message.rowid = chat_message_join.message_id "
    "INNER JOIN handle  ON handle.rowid = message.handle_id";

// The columns of the reader of WhatsApp's chats.
constexpr char kWhatsAppStatement[] =
    "SELECT Z_PK, ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZTEXT, ZMESSAGETYPE, ZGROUPEVENTTYPE, ZGROUPMEMBER, "
    "ZFROMJID, ZPUSHNAME, datetime(ZMESSAGEDATE + 978307200, 'unixepoch') FROM ZWAMESSAGE";

/// Runs a statement by SQLite's API alone, and gets its columns as the readers do.
void RunPlainQuery(benchmark::State& state, const std::string& path, const std::string& statement,
                   const std::vector<int>& texts, const std::vector<int>& numbers, int nBlob = -1) {
  for (auto _ : state) {
    sqlite3* pStore = nullptr;
    sqlite3_stmt* pStatement = nullptr;
    sqlite3_open_v2(path.c_str(), &pStore, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(pStore, statement.c_str(), -1, &pStatement, nullptr);
    int nRows = 0;
    while (sqlite3_step(pStatement) == SQLITE_ROW) {
      for (const int nColumn : texts) benchmark::DoNotOptimize(sqlite3_column_text(pStatement, nColumn));
      for (const int nColumn : numbers) benchmark::DoNotOptimize(sqlite3_column_int64(pStatement, nColumn));
      if (nBlob >= 0) benchmark::DoNotOptimize(sqlite3_column_blob(pStatement, nBlob));
      ++nRows;
    }
    sqlite3_finalize(pStatement);
    sqlite3_close(pStore);
    if (nRows != kMessageCount) state.SkipWithError("messages are missing");
  }
}

void RunMessageReader(benchmark::State& state, const std::string& messagePath) {
  const std::string contactsPath = ContactsStorePath();
  for (auto _ : state) {
    MessageMap messages;
    uint64_t nMaxId = 0;
    CIPhoneMessage reader;
    reader.bNewContactsLayout = true;
    reader.GetSMSInfo(messagePath, contactsPath, messages, nMaxId);
    state.PauseTiming();
    size_t nMessages = 0;
    for (const auto& [nHandle, conversation] : messages) nMessages += conversation.size();
    if (nMessages != kMessageCount) state.SkipWithError("messages are missing");
    messages.clear();
    state.ResumeTiming();
  }
}

void PlainMessageQuery(benchmark::State& state) {
  RunPlainQuery(state, MessageStorePath(), std::string(kColumns) + kTables, {0, 2, 5, 6, 7}, {1, 3, 4});
}
BENCHMARK(PlainMessageQuery)->Unit(benchmark::kMillisecond);

void ReadMessageStore(benchmark::State& state) {
  RunMessageReader(state, MessageStorePath());
}
BENCHMARK(ReadMessageStore)->Unit(benchmark::kMillisecond);

void PlainBodyQuery(benchmark::State& state) {
  RunPlainQuery(state, BodyStorePath(), std::string(kColumns) + ", message.attributedBody" + kTables,
                {0, 2, 5, 6, 7}, {1, 3, 4}, 8);
}
BENCHMARK(PlainBodyQuery)->Unit(benchmark::kMillisecond);

void ReadBodyStore(benchmark::State& state) {
  RunMessageReader(state, BodyStorePath());
}
BENCHMARK(ReadBodyStore)->Unit(benchmark::kMillisecond);

void PlainWhatsAppQuery(benchmark::State& state) {
  RunPlainQuery(state, WhatsAppStorePath(), kWhatsAppStatement, {4, 8, 9, 10}, {0, 1, 2, 3, 5, 6, 7});
}
BENCHMARK(PlainWhatsAppQuery)->Unit(benchmark::kMillisecond);

void ReadWhatsAppStore(benchmark::State& state) {
  for (auto _ : state) {
    WhatsAppMap chats;
    WhatsAppChatReader().Read(WhatsAppStorePath(), chats);
    state.PauseTiming();
    if (chats.size() != static_cast<size_t>(kSenders)) state.SkipWithError("chats are missing");
    chats.clear();
    state.ResumeTiming();
  }
}
BENCHMARK(ReadWhatsAppStore)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
