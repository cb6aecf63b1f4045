#include "extract/contacts.h"

#include <strings.h>

#include <algorithm>

#include "common/file.h"
#include "common/status.h"
#include "common/store.h"
#include "extract/sorting.h"

using namespace orvandel;

namespace {

constexpr char kNewLayout[] =
    "select c0First, c1Last,c6Organization,c16Phone,c17Email,c20URL,docid "
    "from ABPersonFullTextSearch_content";
constexpr char kOldLayout[] =
    "select c0First, c1Last,c6Organization,c15Phone,c16Email,c19URL,docid "
    "from ABPersonFullTextSearch_content";

}  // namespace

bool VectorCmp(const __PERSON_CONTENT__& first, const __PERSON_CONTENT__& second) {
  return strcasecmp(first.strName.c_str(), second.strName.c_str()) < 0;
}

int CIPhoneContacts::GetContactsInfo(const std::string& strPath, std::vector<__PERSON_CONTENT__>& people,
                                     uint64_t& nMaxId) {
  nMaxId = 0;
  {
    StoreQuery query(strPath, bNewContactsLayout ? kNewLayout : kOldLayout);
    while (query.Next()) {
      __PERSON_CONTENT__ person;
      person.strName = query.Narrow(0) + query.Narrow(1);  // joined without a blank, as shown in all lists
      person.strCompany = query.Narrow(2);
      person.strPhone = query.Narrow(3);
      person.strEmail = query.Narrow(4);
      person.strUrl = query.Narrow(5);
      // Skipped people count too; a negative id counts as a very large one.
      nMaxId = std::max(nMaxId, static_cast<uint64_t>(static_cast<int64_t>(query.Integer(6))));
      if (person.strPhone.empty()) continue;  // people without a phone number aren't listed
      if (person.strName.empty()) person.strName = "No Name";
      people.push_back(std::move(person));
    }
  }
  SortRecords(people,
              [](const __PERSON_CONTENT__& a, const __PERSON_CONTENT__& b) { return VectorCmp(a, b); });
  return kStatusOk;
}

int CIPhoneContacts::SaveContactsCsvFile(const std::string& strSource, const std::string& strDestination,
                                         uint64_t) {
  CopyBackupFile(strSource, strDestination, kRecoveredFileRights);
  return kStatusOk;
}
