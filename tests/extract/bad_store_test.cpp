// All readers of stores, each over all kinds of bad stores: a reader succeeds, delivers nothing, and reports
// the store. Other cases of a single reader are in its own file.
#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

#include "backup/manifest.h"
#include "extract/call_history.h"
#include "extract/chats.h"
#include "extract/contacts.h"
#include "extract/messages.h"
#include "extract/notes.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Each;
using testing::Field;
using testing::IsEmpty;

namespace {

using Store = std::unique_ptr<SampleStore>;

/// Result of a reading that began with one record in the caller's list.
struct Reading {
  int nStatus = 0;
  size_t nRecords = 0;               ///< afterwards, including the one that was there
  std::optional<uint64_t> nHighest;  ///< the highest row id, of readers that return it
};

bool operator==(const Reading& a, const Reading& b) {
  return a.nStatus == b.nStatus && a.nRecords == b.nRecords && a.nHighest == b.nHighest;
}

void PrintTo(const Reading& reading, std::ostream* pStream) {
  *pStream << "status " << reading.nStatus << ", " << reading.nRecords << " records";
  if (reading.nHighest) *pStream << ", highest id " << *reading.nHighest;
}

/// A reader and the store that it reads.
struct Reader {
  const char* pszName;
  /// Writes a store with one record, not yet closed.
  Store (*pfnWrite)(const QString& qstrPath);
  const char* pszTable;   ///< one that it needs
  const char* pszColumn;  ///< one that it needs, of that table; null if any columns do
  Reading (*pfnRead)(const std::string& strPath);
  Reading good;  ///< of the store with one record
  Reading bad;   ///< of each bad store
};

void PrintTo(const Reader& reader, std::ostream* pStream) {
  *pStream << reader.pszName;
}

// Writers: a store with one record.

Store WriteMessages(const QString& qstrPath) {
  auto pStore = std::make_unique<MessageStore>(qstrPath);
  pStore->addMessage(pStore->addHandle("ann"), "hello", kNewYear2014, false, {pStore->addChat("ann")});
  return pStore;
}

template <bool bNewLayout>
Store WriteContacts(const QString& qstrPath) {
  auto pStore = std::make_unique<ContactsStore>(qstrPath, bNewLayout);
  pStore->add({"Ann", {}, {}, "+49301", {}, {}, {}});
  return pStore;
}

Store WriteCalls(const QString& qstrPath) {
  auto pStore = std::make_unique<CallStore>(qstrPath);
  pStore->add(1, 60, "+49301", double(kNewYear2014));
  return pStore;
}

template <typename NoteStore>
Store WriteNotes(const QString& qstrPath) {
  auto pStore = std::make_unique<NoteStore>(qstrPath);
  pStore->add(kNewYear2014, "Shopping", "Milk");
  return pStore;
}

Store WriteManifest(const QString& qstrPath) {
  auto pStore = std::make_unique<SampleStore>(qstrPath, false);
  pStore->run("create table Files (fileID TEXT, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB)");
  pStore->run("insert into Files values ('id', 'HomeDomain', 'a', 1, x'62706c69')");
  return pStore;
}

Store WriteChats(const QString& qstrPath) {
  auto pStore = std::make_unique<SampleStore>(qstrPath, false);
  pStore->run("create table ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZTEXT, ZDATE)");
  pStore->run("insert into ZWAMESSAGE values (1, 'hello', 0)");
  return pStore;
}

// Readings, which begin with one record.

Reading ReadMessages(const std::string& strPath) {
  MessageMap messages = {{5, std::vector<__MESSAGE_INFO__>(1)}};
  uint64_t nHighest = 20000;
  CIPhoneMessage reader;
  const int nStatus = reader.GetSMSInfo(strPath, strPath + "-no-contacts", messages, nHighest);
  return {nStatus, messages.size(), nHighest};
}

template <bool bNewLayout>
Reading ReadContacts(const std::string& strPath) {
  std::vector<__PERSON_CONTENT__> people(1);
  uint64_t nHighest = 20000;
  CIPhoneContacts reader;
  reader.bNewContactsLayout = bNewLayout;
  const int nStatus = reader.GetContactsInfo(strPath, people, nHighest);
  return {nStatus, people.size(), nHighest};
}

Reading ReadCalls(const std::string& strPath) {
  std::vector<__CALLHISTORY__> calls(1);
  const int nStatus = CIPhoneHistoryCall().GetHistoryCallInfo(strPath, strPath + "-no-contacts", calls);
  return {nStatus, calls.size(), {}};
}

template <int (CIPhoneNotes::*pfnRead)(const std::string&, std::vector<__NOTES__>&)>
Reading ReadNotes(const std::string& strPath) {
  std::vector<__NOTES__> notes(1);
  const int nStatus = (CIPhoneNotes().*pfnRead)(strPath, notes);
  return {nStatus, notes.size(), {}};
}

Reading ReadManifest(const std::string& strPath) {
  Catalogue entries = {{"CameraRollDomain-old", "id"}};
  const int nStatus = process_db_file(FromNarrow(strPath).toStdU16String().c_str(), entries);
  return {nStatus, entries.size(), {}};
}

/// The chat reader only counts columns, and keeps the largest count.
Reading ReadChats(const std::string& strPath) {
  WhatsAppMap chats = {{7, {}}};
  g_u32WhatsappColNumber = 2;
  const int nStatus = CIPhoneWhatsApp().GetWhatsAppMessageInfo(strPath, "", chats);
  const uint32_t nColumns = g_u32WhatsappColNumber;
  g_u32WhatsappColNumber = 0;
  return {nStatus, chats.size(), nColumns};
}

constexpr char kContactsTable[] = "ABPersonFullTextSearch_content";

const Reader kReaders[] = {
    {"Messages", WriteMessages, "handle", "id", ReadMessages, {0, 2, 1}, {0, 1, 0}},
    {"OldContacts",
     WriteContacts<false>,
     kContactsTable,
     "c15Phone",
     ReadContacts<false>,
     {0, 2, 1},
     {0, 1, 0}},
    {"NewContacts",
     WriteContacts<true>,
     kContactsTable,
     "c16Phone",
     ReadContacts<true>,
     {0, 2, 1},
     {0, 1, 0}},
    {"Calls", WriteCalls, "ZCALLRECORD", "ZADDRESS", ReadCalls, {0, 2, {}}, {0, 1, {}}},
    {"Notes",
     WriteNotes<NotesStore>,
     "ZNOTE",
     "ZTITLE",
     ReadNotes<&CIPhoneNotes::GetNotesInfo>,
     {0, 2, {}},
     {0, 1, {}}},
    {"CloudNotes",
     WriteNotes<NotesCloudStore>,
     "ZICCLOUDSYNCINGOBJECT",
     "ZSNIPPET",
     ReadNotes<&CIPhoneNotes::GetNotesStoreInfo>,
     {0, 2, {}},
     {0, 1, {}}},
    // It clears the list first.
    {"Manifest", WriteManifest, "Files", "fileID", ReadManifest, {0, 1, {}}, {0, 0, {}}},
    {"Chats", WriteChats, "ZWAMESSAGE", nullptr, ReadChats, {0, 1, 3}, {0, 1, 2}},
};

/// Writes the reader's store after running a statement on it, in which %1 is the table and %2 the column.
void WriteChanged(const Reader& reader, const std::string& strPath, const char* pszStatement) {
  const Store pStore = reader.pfnWrite(FromNarrow(strPath));
  for (const QString& qstrStatement : QString(pszStatement).split(';'))
    pStore->run(QString(qstrStatement)
                    .replace("%1", QLatin1String(reader.pszTable))
                    .replace("%2", QLatin1String(reader.pszColumn)));
  pStore->close();
}

/// Writes the reader's store and cuts the file.
void WriteCut(const Reader& reader, const std::string& strPath, uintmax_t nSize) {
  const Store pStore = reader.pfnWrite(FromNarrow(strPath));
  pStore->close();
  std::filesystem::resize_file(strPath, nSize);
}

/// A store that no record can be read from.
struct BadStore {
  const char* pszName;
  void (*pfnMake)(const Reader& reader, const std::string& strPath);
  bool bReported = true;
  bool bNeedsColumn = false;  ///< for readers that need a certain column only
};

const BadStore kBadStores[] = {
    {"missing file", [](const Reader&, const std::string&) {}, false},
    {"empty file", [](const Reader&, const std::string& strPath) { WriteFile(strPath, ""); }},
    {"short text", [](const Reader&, const std::string& strPath) { WriteFile(strPath, "hello"); }},
    {"text of a page",
     [](const Reader&, const std::string& strPath) { WriteFile(strPath, std::string(4096, 'x')); }},
    {"folder", [](const Reader&, const std::string& strPath) { std::filesystem::create_directory(strPath); }},
    {"cut in its header",
     [](const Reader& reader, const std::string& strPath) { WriteCut(reader, strPath, 50); }},
    {"cut in its schema",
     [](const Reader& reader, const std::string& strPath) { WriteCut(reader, strPath, 2048); }},
    {"missing table", [](const Reader& reader,
                         const std::string& strPath) { WriteChanged(reader, strPath, "drop table %1"); }},
    {"missing column",
     [](const Reader& reader, const std::string& strPath) {
       WriteChanged(reader, strPath, "alter table %1 rename column %2 to other");
     },
     true, true},
    {"view in place of the table",
     [](const Reader& reader, const std::string& strPath) {
       WriteChanged(reader, strPath, "alter table %1 rename to moved;create view %1 as select * from moved");
     }},
};

class StoreReader : public testing::TestWithParam<Reader> {
 protected:
  std::string Path() const { return m_folder.Path("store.db"); }

  TemporaryFolder m_folder;
  ProblemRecorder m_problems;
};

}  // namespace

TEST_P(StoreReader, ReadsTheRecordOfAGoodStore) {
  GetParam().pfnWrite(FromNarrow(Path()))->close();

  const Reading reading = GetParam().pfnRead(Path());

  EXPECT_EQ(GetParam().good, reading);
  EXPECT_THAT(m_problems.Problems(), IsEmpty());
}

TEST_P(StoreReader, DeliversNothingOfABadStoreAndReportsIt) {
  for (const BadStore& store : kBadStores) {
    if (store.bNeedsColumn && !GetParam().pszColumn) continue;
    SCOPED_TRACE(store.pszName);
    std::filesystem::remove_all(Path());
    store.pfnMake(GetParam(), Path());
    const std::vector<std::string> before = NamesIn(m_folder.Path());
    const size_t nReported = m_problems.Problems().size();

    const Reading reading = GetParam().pfnRead(Path());

    EXPECT_EQ(GetParam().bad, reading);
    EXPECT_EQ(before, NamesIn(m_folder.Path())) << "a reader creates nothing";
    EXPECT_EQ(store.bReported, m_problems.Problems().size() > nReported) << "a missing store is no problem";
  }
  EXPECT_THAT(m_problems.Problems(), Each(Field(&ProblemRecorder::Problem::strFile, Path())));
}

INSTANTIATE_TEST_SUITE_P(Of, StoreReader, testing::ValuesIn(kReaders),
                         [](const testing::TestParamInfo<Reader>& info) { return info.param.pszName; });
