#include "export/document_steps.h"

namespace orvandel {

namespace {

/// The functions of a category of conversations.
/// @tparam kMapOf gets its conversations from the records. @tparam kWrite writes one of them.
template <auto kMapOf, auto kWrite>
struct Conversations {
  static std::vector<unsigned int> Keys(const BackupRecords& records) {
    std::vector<unsigned int> keys;
    for (const auto& [nKey, messages] : kMapOf(records)) keys.push_back(nKey);
    return keys;
  }
  static void Write(CRecovery& recovery, const BackupRecords& records, unsigned int nKey) {
    const auto& conversations = kMapOf(records);
    const auto it = conversations.find(nKey);
    if (it != conversations.end() && !it->second.empty())
      (recovery.*kWrite)(&it->second.front(), conversations);
  }
};

const MessageMap& MessagesOf(const BackupRecords& records) {
  return records.m_mapMessage;
}

const WhatsAppMap& ChatsOf(const BackupRecords& records) {
  return records.m_mapWhatsApp;
}

/// The functions of a category with one page.
template <typename Record, std::vector<Record> BackupRecords::*kList, void (CRecovery::*kAdd)(const Record*)>
struct Rows {
  static void Add(CRecovery& recovery, const QVariant& variant) {
    const auto record = variant.value<Record>();
    (recovery.*kAdd)(&record);
  }
  static void AddAll(CRecovery& recovery, const BackupRecords& records) {
    for (const Record& record : records.*kList) (recovery.*kAdd)(&record);
  }
};

void SaveMessageStore(CRecovery& recovery) {
  recovery.SaveMessage();
}

void SaveContacts(CRecovery& recovery) {
  recovery.SaveContactsCsv();
  recovery.SaveContacts();
}

void SaveCalls(CRecovery& recovery) {
  recovery.SaveCallHistory();
}

void SaveNotes(CRecovery& recovery) {
  recovery.SaveNotes();
}

using Messages = Conversations<MessagesOf, &CRecovery::RecoveryMsg>;
using Chats = Conversations<ChatsOf, &CRecovery::RecoveryWhatsAppMsg>;
using People = Rows<__PERSON_CONTENT__, &BackupRecords::m_vecContact, &CRecovery::RecoveryContacts>;
using Calls = Rows<__CALLHISTORY__, &BackupRecords::m_vecCall, &CRecovery::RecoveryCallHistory>;
using Notes = Rows<__NOTES__, &BackupRecords::m_vecNote, &CRecovery::RecoveryNotes>;

// Reported regardless of what was written. There is no file with the first path: the real names contain a
// time stamp.
constexpr std::array<DocumentStep, 6> kDocumentSteps = {{
    {kMessages, {Messages::Keys, Messages::Write}, {}, nullptr, 9100, "/Message/sms.csv"},
    {kMessages, {}, {}, SaveMessageStore, 0, nullptr},
    {kContacts, {}, {People::Add, People::AddAll}, SaveContacts, 9200, "/Contacts/Contacts.html"},
    {kCallHistory, {}, {Calls::Add, Calls::AddAll}, SaveCalls, 9300, "/CallHistory/CallHistory.html"},
    {kNotes, {}, {Notes::Add, Notes::AddAll}, SaveNotes, 9500, "/Notes/Notes.html"},
    {kWhatsApp, {Chats::Keys, Chats::Write}, {}, nullptr, 0, nullptr},
}};

}  // namespace

const std::array<DocumentStep, 6>& DocumentSteps() {
  return kDocumentSteps;
}

}  // namespace orvandel
