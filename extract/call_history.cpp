#include "extract/call_history.h"

#include <strings.h>

#include <algorithm>

#include "common/status.h"
#include "common/store.h"
#include "extract/name_matching.h"
#include "extract/sorting.h"

using namespace orvandel;

namespace {

// 978307200 in the statements: seconds from 1970-01-01 to 2001-01-01, the epoch of the stores.
constexpr char kCalls[] =
    "SELECT ZANSWERED, ZDURATION, ZADDRESS,datetime(ZDATE + 978307200, 'unixepoch') AS DateString "
    "FROM ZCALLRECORD ORDER BY ZDATE DESC";

// Always the newer columns, so calls of an old backup have no names.
constexpr char kPhoneOwners[] =
    "select c0First, c1Last,c6Organization,c16Phone,c17Email,c18Address,c20URL "
    "from ABPersonFullTextSearch_content";

constexpr size_t kShortestNamedNumber = 5;  // short codes get no name

}  // namespace

bool VectorCmp(const __CALLHISTORY__& first, const __CALLHISTORY__& second) {
  return strcasecmp(first.strDate.c_str(), second.strDate.c_str()) > 0;
}

int CIPhoneHistoryCall::GetHistoryCallInfo(const std::string& strCallPath, const std::string& strContactsPath,
                                           std::vector<__CALLHISTORY__>& calls) {
  {
    StoreQuery query(strCallPath, kCalls);
    while (query.Next()) {
      __CALLHISTORY__ call;
      call.nAnswered = query.Integer(0);
      call.nDuration = query.Integer(1);
      call.strAddress = query.Narrow(2);
      call.strDate = query.Narrow(3);
      if (!call.strAddress.empty()) calls.push_back(std::move(call));
    }
  }
  std::vector<__PERSON_CONTENT__> people;
  {
    StoreQuery query(strContactsPath, kPhoneOwners, StoreQuery::Failure::Expected);
    people = ReadPhoneOwners(query);
  }
  if (!people.empty()) {
    NameMatcher matcher(people, kShortestNamedNumber);
    for (__CALLHISTORY__& call : calls) call.strName = matcher.NameOf(call.strAddress);
  }
  SortRecords(calls, [](const __CALLHISTORY__& a, const __CALLHISTORY__& b) { return VectorCmp(a, b); });
  return kStatusOk;
}
