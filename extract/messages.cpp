#include "extract/messages.h"

#include <strings.h>

#include <algorithm>

#include "common/file.h"
#include "common/status.h"
#include "common/store.h"
#include "common/text.h"
#include "extract/name_matching.h"
#include "extract/number_index.h"
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
std::string ReadText(const StoreQuery& query, bool bBodies) {
  std::string strText = query.Narrow(kText);
  if (!bBodies || !strText.empty()) return strText;
  const StoreQuery::Bytes body = query.Blob(kBody);
  return Utf8ToNarrow(AttributedText({static_cast<const char*>(body.pData), body.nSize}));
}

/// A message on its way from the store to the map, without what all messages of its sender have in common.
struct FoundMessage {
  std::string strText;
  std::string strDate;
  int32_t nRowId = 0;
  int32_t nIsFromMe = 0;
  uint32_t nSender = 0;  // index in its conversation
};

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

bool IsNewer(const std::string& strFirst, const std::string& strSecond) {
  return strcasecmp(strFirst.c_str(), strSecond.c_str()) > 0;
}

/// Collects messages on their way from the store to the map. Grouped by conversation from the start, and
/// moved one conversation at a time, so that few are in memory twice.
class FoundMessages {
 public:
  /// Adds the message of the current row. @param strText not empty.
  void Add(const StoreQuery& query, std::string&& strText) {
    const uint32_t nConversation = ConversationOf(static_cast<uint32_t>(query.Integer(kHandleId)));
    Conversation& conversation = m_conversations[nConversation];
    Place place{0, nConversation, static_cast<uint32_t>(conversation.messages.size())};
    FoundMessage& message = conversation.messages.emplace_back();
    message.strText = std::move(strText);
    const bool bSeconds = query.TextSize(kRawDate) < kNanosecondDigits;
    message.strDate = query.Narrow(bSeconds ? kDateInSeconds : kDate);
    message.nRowId = query.Integer(kRowId);
    message.nIsFromMe = query.Integer(kFromMe);
    message.nSender = conversation.SenderOf(query.Narrow(kSender));
    m_bDateNumbers = m_bDateNumbers && DateNumber(message.strDate, place.nDate);
    m_places.push_back(place);
  }

  void MatchNames(NameMatcher& matcher) {
    for (Conversation& conversation : m_conversations) {
      for (Sender& sender : conversation.senders) sender.strName = matcher.NameOf(sender.strSender);
    }
  }

  /// Appends the messages to their conversations in the map, newest first.
  void MoveTo(MessageMap& map) {
    SortPlaces();
    std::vector<std::vector<uint32_t>> orders(m_conversations.size());
    for (const Place& place : m_places) orders[place.nConversation].push_back(place.nMessage);
    for (size_t i = 0; i < m_conversations.size(); ++i) {
      m_conversations[i].MoveTo(map[m_conversations[i].nHandleId], orders[i]);
      m_conversations[i] = Conversation();
    }
  }

 private:
  struct Sender {
    std::string strSender;
    std::string strName;
  };

  /// The messages of one handle. They have one sender, unless the handle has more than 32 bits.
  struct Conversation {
    uint32_t nHandleId = 0;
    std::vector<FoundMessage> messages;  // in store order
    std::vector<Sender> senders;

    uint32_t SenderOf(const std::string& strSender) {
      if (senders.empty() || senders.back().strSender != strSender) senders.push_back({strSender, {}});
      return static_cast<uint32_t>(senders.size() - 1);
    }

    void MoveTo(std::vector<__MESSAGE_INFO__>& target, const std::vector<uint32_t>& order) {
      target.reserve(target.size() + order.size());
      for (const uint32_t nMessage : order) {
        FoundMessage& found = messages[nMessage];
        __MESSAGE_INFO__& message = target.emplace_back();
        message.nIsFromMe = found.nIsFromMe;
        message.nRowId = found.nRowId;
        message.nHandleId = nHandleId;
        message.strDate = std::move(found.strDate);
        message.strSender = senders[found.nSender].strSender;
        message.strContactName = senders[found.nSender].strName;
        message.strText = std::move(found.strText);
      }
    }
  };

  uint32_t ConversationOf(uint32_t nHandleId) {
    const uint32_t nFound = m_numbers.Find(nHandleId);
    if (nFound != NumberIndex::kNone) return nFound;
    const auto nNew = static_cast<uint32_t>(m_conversations.size());
    m_numbers.Add(nHandleId, nNew);
    m_conversations.emplace_back().nHandleId = nHandleId;
    return nNew;
  }

  const std::string& DateAt(const Place& place) const {
    return m_conversations[place.nConversation].messages[place.nMessage].strDate;
  }

  /// Sorts the places by date. Sorting places instead of messages moves each message only once, and comparing
  /// numbers is faster than comparing strings scattered in memory.
  void SortPlaces() {
    const auto isNewer = [](const Place& a, const Place& b) { return a.nDate > b.nDate; };
    const auto isNotOlder = [](const Place& a, const Place& b) { return a.nDate >= b.nDate; };
    if (!m_bDateNumbers)
      std::sort(m_places.begin(), m_places.end(),
                [this](const Place& a, const Place& b) { return IsNewer(DateAt(a), DateAt(b)); });
    else if (std::adjacent_find(m_places.begin(), m_places.end(), isNotOlder) == m_places.end())
      std::reverse(m_places.begin(), m_places.end());  // in ascending order
    else
      std::sort(m_places.begin(), m_places.end(), isNewer);
  }

  std::vector<Place> m_places;  // of all messages, in store order
  std::vector<Conversation> m_conversations;
  NumberIndex m_numbers;       // index of each conversation, by handle
  bool m_bDateNumbers = true;  // all dates could be converted to numbers
};

void ReadMessages(const std::string& strPath, FoundMessages& found, uint64_t& nMaxId) {
  const bool bBodies = StoreTable(strPath, "message").Has("attributedBody");
  StoreQuery query(strPath, (std::string(kColumns) + (bBodies ? kBodyColumn : "") + kTables).c_str());
  while (query.Next()) {
    // Skipped messages count too; a negative id counts as a very large one.
    nMaxId = std::max(nMaxId, static_cast<uint64_t>(static_cast<int64_t>(query.Integer(kRowId))));
    std::string strText = ReadText(query, bBodies);
    if (!strText.empty()) found.Add(query, std::move(strText));
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
  return IsNewer(first.strDate, second.strDate);
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
