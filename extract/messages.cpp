#include "extract/messages.h"

#include <strings.h>

#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "common/file.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"
#include "extract/name_matching.h"
#include "extract/sorting.h"
#include "extract/typed_stream.h"

using namespace orvandel;

namespace {

// message.date is in nanoseconds in newer stores and in seconds in older ones; both conversions are made for
// each row. 978307200: seconds from 1970-01-01 to 2001-01-01, the epoch of the store.
constexpr char kColumns[] =
    "SELECT  message.text, message.is_from_me, "
    "datetime(message.date/1000000000 + 978307200, 'unixepoch') AS DateStr, "
    "message.RowID,message.handle_id, handle.id as sender_name,message.date, "
    "datetime(message.date + 978307200, 'unixepoch') AS DateStrOld";
// Stores from iOS 14 on keep most texts in this column and leave message.text empty.
constexpr char kBodyColumn[] = ", message.attributedBody";
constexpr char kTables[] =
    " FROM chat_message_join "
    "INNER JOIN message  ON message.rowid = chat_message_join.message_id "
    "INNER JOIN handle  ON handle.rowid = message.handle_id";

enum Column { kText, kFromMe, kDate, kRowId, kHandleId, kSender, kRawDate, kDateInSeconds, kBody };

constexpr int kNanosecondDigits = 15;  // a raw date with fewer characters is in seconds

constexpr char kNewPhoneOwners[] =
    "select c0First, c1Last,c6Organization,c16Phone,c17Email,c18Address,c20URL "
    "from ABPersonFullTextSearch_content";
constexpr char kOldPhoneOwners[] =
    "select c0First, c1Last,c6Organization,c15Phone,c16Email,c17Address,c19URL "
    "from ABPersonFullTextSearch_content";

constexpr size_t kShortestNamedSender = 1;  // an empty sender never gets a name

/// @param bBodies the query has the column kBody.
__MESSAGE_INFO__ ReadMessage(const StoreQuery& query, bool bBodies) {
  __MESSAGE_INFO__ message;
  message.strText = query.Narrow(kText);
  if (bBodies && message.strText.empty()) {
    const StoreQuery::Bytes body = query.Blob(kBody);
    message.strText = Utf8ToNarrow(AttributedText({static_cast<const char*>(body.pData), body.nSize}));
  }
  message.nIsFromMe = query.Integer(kFromMe);
  message.nRowId = query.Integer(kRowId);
  message.nHandleId = static_cast<uint32_t>(query.Integer(kHandleId));
  message.strSender = query.Narrow(kSender);
  const bool bSeconds = query.TextSize(kRawDate) < kNanosecondDigits;
  message.strDate = query.Narrow(bSeconds ? kDateInSeconds : kDate);
  return message;
}

/// Position and sort key of a message.
struct Place {
  uint64_t nDate = 0;  ///< see DateNumber
  uint32_t nConversation = 0;
  uint32_t nMessage = 0;
};

/// Converts a date as given by SQLite's datetime to a number with the same order.
/// @return false for text in another format.
bool DateNumber(const std::string& strDate, uint64_t& nNumber) {
  static constexpr char kForm[] = "dddd-dd-dd dd:dd:dd";
  if (strDate.size() != sizeof kForm - 1) return false;
  nNumber = 0;
  for (size_t i = 0; i < strDate.size(); ++i) {
    const bool bDigit = strDate[i] >= '0' && strDate[i] <= '9';
    if (kForm[i] == 'd' ? !bDigit : strDate[i] != kForm[i]) return false;
    if (bDigit) nNumber = nNumber * 10 + static_cast<uint64_t>(strDate[i] - '0');
  }
  return true;
}

/// Collects messages on their way from the store to the map. Grouped by conversation from the start, so that
/// none is in memory twice.
class FoundMessages {
 public:
  void Add(__MESSAGE_INFO__&& message) {
    const auto nNew = static_cast<uint32_t>(m_conversations.size());
    const auto [it, bNew] = m_numbers.try_emplace(message.nHandleId, nNew);
    if (bNew) m_conversations.push_back({message.nHandleId, {}});
    std::vector<__MESSAGE_INFO__>& messages = m_conversations[it->second].messages;
    Place place{0, it->second, static_cast<uint32_t>(messages.size())};
    m_bDateNumbers = m_bDateNumbers && DateNumber(message.strDate, place.nDate);
    messages.push_back(std::move(message));
    m_places.push_back(place);
  }

  void MatchNames(NameMatcher& matcher) {
    for (Conversation& conversation : m_conversations) {
      const std::string* pSender = nullptr;  // of the previous message, and its name
      const std::string* pName = nullptr;
      for (__MESSAGE_INFO__& message : conversation.messages) {
        if (!pSender || *pSender != message.strSender) pName = &matcher.NameOf(message.strSender);
        pSender = &message.strSender;
        message.strContactName = *pName;
      }
    }
  }

  /// Appends the messages to their conversations in the map, newest first.
  void MoveTo(MessageMap& map) {
    SortPlaces();
    std::vector<std::vector<uint32_t>> orders(m_conversations.size());
    for (const Place& place : m_places) orders[place.nConversation].push_back(place.nMessage);
    for (size_t i = 0; i < m_conversations.size(); ++i) {
      std::vector<__MESSAGE_INFO__>& messages = m_conversations[i].messages;
      std::vector<__MESSAGE_INFO__>& target = map[m_conversations[i].nHandleId];
      Reorder(messages, orders[i]);
      if (target.empty())
        target = std::move(messages);
      else
        std::move(messages.begin(), messages.end(), std::back_inserter(target));
    }
  }

 private:
  struct Conversation {
    uint32_t nHandleId = 0;
    std::vector<__MESSAGE_INFO__> messages;  // in store order
  };

  const __MESSAGE_INFO__& At(const Place& place) const {
    return m_conversations[place.nConversation].messages[place.nMessage];
  }

  /// Sorts the places by date. Sorting places instead of messages moves each message only once, and comparing
  /// numbers is faster than comparing strings scattered in memory.
  void SortPlaces() {
    const auto isNewer = [](const Place& a, const Place& b) { return a.nDate > b.nDate; };
    const auto isNotOlder = [](const Place& a, const Place& b) { return a.nDate >= b.nDate; };
    if (!m_bDateNumbers)
      std::sort(m_places.begin(), m_places.end(),
                [this](const Place& a, const Place& b) { return VectorCmp(At(a), At(b)); });
    else if (std::adjacent_find(m_places.begin(), m_places.end(), isNotOlder) == m_places.end())
      std::reverse(m_places.begin(), m_places.end());  // in ascending order
    else
      std::sort(m_places.begin(), m_places.end(), isNewer);
  }

  std::vector<Place> m_places;  // of all messages, in store order
  std::vector<Conversation> m_conversations;
  std::unordered_map<uint32_t, uint32_t> m_numbers;  // index of each conversation, by handle
  bool m_bDateNumbers = true;                        // all dates could be converted to numbers
};

void ReadMessages(const std::string& strPath, FoundMessages& found, uint64_t& nMaxId) {
  const bool bBodies = StoreTable(strPath, "message").Has("attributedBody");
  StoreQuery query(strPath, (std::string(kColumns) + (bBodies ? kBodyColumn : "") + kTables).c_str());
  while (query.Next()) {
    __MESSAGE_INFO__ message = ReadMessage(query, bBodies);
    // Skipped messages count too; a negative id counts as a very large one.
    nMaxId = std::max(nMaxId, static_cast<uint64_t>(static_cast<int64_t>(message.nRowId)));
    if (!message.strText.empty()) found.Add(std::move(message));
  }
}

void MatchNames(const std::string& strContactsPath, const char* pszStatement, FoundMessages& found) {
  StoreQuery query(strContactsPath, pszStatement);
  const std::vector<__PERSON_CONTENT__> people = ReadPhoneOwners(query);
  NameMatcher matcher(people, kShortestNamedSender);
  found.MatchNames(matcher);
}

}  // namespace

bool VectorCmp(const __MESSAGE_INFO__& first, const __MESSAGE_INFO__& second) {
  return strcasecmp(first.strDate.c_str(), second.strDate.c_str()) > 0;
}

int CIPhoneMessage::InitCallback(ProgressCallback pfnCallback, void* pContext, int nBase, int nSpan) {
  m_pfnCallback = pfnCallback;
  m_pCallbackContext = pContext;
  m_nProgressBase = nBase;
  m_nProgressSpan = nSpan;
  return kStatusOk;
}

int CIPhoneMessage::Report(int nShare) {
  return m_pfnCallback ? m_pfnCallback(m_pCallbackContext, m_nProgressBase + nShare) : 0;
}

int CIPhoneMessage::GetSMSInfo(const std::string& strMessagePath, const std::string& strContactsPath,
                               MessageMap& messages, uint64_t& nMaxId) {
  nMaxId = 0;
  FoundMessages found;
  ReadMessages(strMessagePath, found, nMaxId);
  if (Report(m_nProgressSpan / 5) == 0) {
    MatchNames(strContactsPath, bNewContactsLayout ? kNewPhoneOwners : kOldPhoneOwners, found);
    found.MoveTo(messages);
    Report(m_nProgressSpan / 4);
  }
  return Report(m_nProgressSpan);  // the last result counts, even when the first call ended the reading
}

int CIPhoneMessage::SaveSMSCsvFile(const std::string& strSource, const std::string& strDestination,
                                   uint64_t) {
  CopyBackupFile(strSource, strDestination, kRecoveredFileRights);
  return kStatusOk;
}
