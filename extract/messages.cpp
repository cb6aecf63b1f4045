#include "extract/messages.h"

#include <strings.h>

#include <algorithm>
#include <numeric>

#include "common/file.h"
#include "common/status.h"
#include "common/store.h"
#include "extract/name_matching.h"

namespace {

// Newer stores keep message.date in nanoseconds, older ones in seconds; both readings are made for each row.
// 978307200: seconds from 1970-01-01 to 2001-01-01, from which the store counts.
constexpr char kMessages[] =
    "SELECT  message.text, message.is_from_me, "
    "datetime(message.date/1000000000 + 978307200, 'unixepoch') AS DateStr, "
    "message.RowID,message.handle_id, handle.id as sender_name,message.date, "
    "datetime(message.date + 978307200, 'unixepoch') AS DateStrOld "
    "FROM chat_message_join "
    "INNER JOIN message  ON message.rowid = chat_message_join.message_id "
    "INNER JOIN handle  ON handle.rowid = message.handle_id";

enum Column { kText, kFromMe, kDate, kRowId, kHandleId, kSender, kRawDate, kDateInSeconds };

constexpr int kNanosecondDigits = 15;  // a raw date with fewer characters is a count of seconds

constexpr char kNewPhoneOwners[] =
    "select c0First, c1Last,c6Organization,c16Phone,c17Email,c18Address,c20URL "
    "from ABPersonFullTextSearch_content";
constexpr char kOldPhoneOwners[] =
    "select c0First, c1Last,c6Organization,c15Phone,c16Email,c17Address,c19URL "
    "from ABPersonFullTextSearch_content";

constexpr size_t kShortestNamedSender = 1;  // an empty sender never gets a name

__MESSAGE_INFO__ ReadMessage(const StoreQuery& query) {
  __MESSAGE_INFO__ message;
  message.strText = query.Narrow(kText);
  message.nIsFromMe = query.Integer(kFromMe);
  message.nRowId = query.Integer(kRowId);
  message.nHandleId = static_cast<uint32_t>(query.Integer(kHandleId));
  message.strSender = query.Narrow(kSender);
  const bool bSeconds = query.Text(kRawDate).size() < kNanosecondDigits;
  message.strDate = query.Narrow(bSeconds ? kDateInSeconds : kDate);
  return message;
}

struct Place {
  uint64_t nDate;
  uint32_t nMessage;
};

/// The digits of a date in the form that the store's datetime gives, as one number in the same order.
/// @return false for a text of another form.
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

/// The places of the messages, newest first. Sorting places instead of messages moves each message only once,
/// and numbers are compared faster than a million texts that lie all over the memory.
std::vector<uint32_t> NewestFirst(const std::vector<__MESSAGE_INFO__>& messages) {
  std::vector<uint32_t> order(messages.size());
  std::iota(order.begin(), order.end(), 0);
  std::vector<Place> places(messages.size());
  for (uint32_t i = 0; i < places.size(); ++i) {
    places[i].nMessage = i;
    if (DateNumber(messages[i].strDate, places[i].nDate)) continue;
    std::sort(order.begin(), order.end(), [&](uint32_t nFirst, uint32_t nSecond) {
      return VectorCmp(messages[nFirst], messages[nSecond]);
    });
    return order;
  }
  std::sort(places.begin(), places.end(),
            [](const Place& first, const Place& second) { return first.nDate > second.nDate; });
  std::transform(places.begin(), places.end(), order.begin(),
                 [](const Place& place) { return place.nMessage; });
  return order;
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
  std::vector<__MESSAGE_INFO__> found = ReadMessages(strMessagePath, nMaxId);
  if (Report(m_nProgressSpan / 5) == 0) {
    MatchNames(strContactsPath, found);
    for (uint32_t nPlace : NewestFirst(found)) {
      __MESSAGE_INFO__& message = found[nPlace];
      messages[message.nHandleId].push_back(std::move(message));
    }
    Report(m_nProgressSpan / 4);
  }
  return Report(m_nProgressSpan);  // the last answer is the result, also when the first one ended the reading
}

std::vector<__MESSAGE_INFO__> CIPhoneMessage::ReadMessages(const std::string& strPath,
                                                           uint64_t& nMaxId) const {
  std::vector<__MESSAGE_INFO__> messages;
  StoreQuery query(strPath, kMessages);
  while (query.Next()) {
    __MESSAGE_INFO__ message = ReadMessage(query);
    // Dropped messages count here too; a negative number counts as a very large one.
    nMaxId = std::max(nMaxId, static_cast<uint64_t>(static_cast<int64_t>(message.nRowId)));
    if (!message.strText.empty()) messages.push_back(std::move(message));
  }
  return messages;
}

void CIPhoneMessage::MatchNames(const std::string& strContactsPath,
                                std::vector<__MESSAGE_INFO__>& messages) const {
  StoreQuery query(strContactsPath, bNewContactsLayout ? kNewPhoneOwners : kOldPhoneOwners);
  const std::vector<__PERSON_CONTENT__> people = ReadPhoneOwners(query);
  NameMatcher matcher(people, kShortestNamedSender);
  for (__MESSAGE_INFO__& message : messages) message.strContactName = matcher.NameOf(message.strSender);
}

int CIPhoneMessage::SaveSMSCsvFile(const std::string& strSource, const std::string& strDestination,
                                   uint64_t) {
  CopyBackupFile(strSource, strDestination, kRecoveredFileRights);
  return kStatusOk;
}
