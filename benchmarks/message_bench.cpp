#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "benchmarks/data.h"
#include "extract/messages.h"

namespace orvandel {

namespace {

// The statement of the message reader.
constexpr char kStatement[] =
    "SELECT  message.text, message.is_from_me, datetime(message.date/1000000000 + 978307200, 'unixepoch') AS "
    "DateStr, "
    "message.RowID,message.handle_id, handle.id as sender_name,message.date, datetime(message.date + "
    "978307200, "
    "'unixepoch') AS DateStrOld FROM chat_message_join INNER JOIN message  ON message.rowid = "
    "chat_message_join.message_id INNER JOIN handle  ON handle.rowid = message.handle_id";

void PlainMessageQuery(benchmark::State& state) {
  const std::string path = MessageStorePath();
  for (auto _ : state) {
    sqlite3* pStore = nullptr;
    sqlite3_stmt* pStatement = nullptr;
    sqlite3_open_v2(path.c_str(), &pStore, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(pStore, kStatement, -1, &pStatement, nullptr);
    int nRows = 0;
    while (sqlite3_step(pStatement) == SQLITE_ROW) {
      for (int nColumn : {0, 2, 5, 6, 7}) benchmark::DoNotOptimize(sqlite3_column_text(pStatement, nColumn));
      for (int nColumn : {1, 3, 4}) benchmark::DoNotOptimize(sqlite3_column_int(pStatement, nColumn));
      ++nRows;
    }
    sqlite3_finalize(pStatement);
    sqlite3_close(pStore);
    if (nRows != kMessageCount) state.SkipWithError("messages are missing");
  }
}
BENCHMARK(PlainMessageQuery)->Unit(benchmark::kMillisecond);

void ReadMessageStore(benchmark::State& state) {
  const std::string messagePath = MessageStorePath();
  const std::string contactsPath = ContactsStorePath();
  for (auto _ : state) {
    MessageMap messages;
    uint64_t nMaxId = 0;
    CIPhoneMessage reader;
    reader.bNewContactsLayout = true;
    reader.GetSMSInfo(messagePath, contactsPath, messages, nMaxId);
    state.PauseTiming();
    if (messages.size() != static_cast<size_t>(kSenders)) state.SkipWithError("conversations are missing");
    messages.clear();
    state.ResumeTiming();
  }
}
BENCHMARK(ReadMessageStore)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
