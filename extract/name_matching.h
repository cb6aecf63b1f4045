#pragma once
#include <string>
#include <unordered_map>
#include <vector>

#include "common/store.h"
#include "extract/person.h"

/// Names and phone texts of a contacts store, in its row order, without the people who have no phone.
/// @param query a running query with the first name, the last name, the company and the phone text in front.
std::vector<__PERSON_CONTENT__> ReadPhoneOwners(StoreQuery& query);

/// Finds who a number or address belongs to: the first person whose phone text holds it, byte for byte.
/// Numbers aren't normalised. Every distinct number is looked up once, since each look-up goes over all
/// people.
class NameMatcher {
 public:
  /// @param people            outlives the matcher.
  /// @param nMinimumLength    a shorter number never gets a name.
  NameMatcher(const std::vector<__PERSON_CONTENT__>& people, size_t nMinimumLength);

  /// The person's name; empty without a match, or for a person without a name.
  const std::string& NameOf(const std::string& strNumber);

 private:
  const std::string& LookUp(const std::string& strNumber) const;

  const std::vector<__PERSON_CONTENT__>& m_people;
  size_t m_nMinimumLength;
  std::unordered_map<std::string, const std::string*> m_known;
  std::string m_strNobody;
};
