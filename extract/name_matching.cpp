#include "extract/name_matching.h"

#include <cstring>

namespace orvandel {

std::vector<__PERSON_CONTENT__> ReadPhoneOwners(StoreQuery& query) {
  std::vector<__PERSON_CONTENT__> people;
  while (query.Next()) {
    __PERSON_CONTENT__ person;
    person.strName = query.Narrow(0) + query.Narrow(1);
    person.strPhone = query.Narrow(3);
    if (!person.strPhone.empty()) people.push_back(std::move(person));
  }
  return people;
}

NameMatcher::NameMatcher(const std::vector<__PERSON_CONTENT__>& people, size_t nMinimumLength)
    : m_people(people), m_nMinimumLength(nMinimumLength) {}

const std::string& NameMatcher::NameOf(const std::string& strNumber) {
  const auto [it, bNew] = m_known.try_emplace(strNumber, nullptr);
  if (bNew) it->second = &LookUp(strNumber);
  return *it->second;
}

const std::string& NameMatcher::LookUp(const std::string& strNumber) const {
  if (strNumber.size() < m_nMinimumLength) return m_strNobody;
  for (const __PERSON_CONTENT__& person : m_people) {
    if (strstr(person.strPhone.c_str(), strNumber.c_str())) return person.strName;
  }
  return m_strNobody;
}

}  // namespace orvandel
