#pragma once
#include <string>
#include <unordered_map>
#include <vector>

#include "common/store.h"
#include "extract/person.h"

namespace orvandel {

/// Reads names and phone texts from a contacts store, in row order, skipping people without a phone.
/// @param query its first columns are first name, last name, company and phone text.
std::vector<__PERSON_CONTENT__> ReadPhoneOwners(StoreQuery& query);

/// Finds the owner of a number or address: the first person whose phone text contains it, byte for byte.
/// Numbers aren't normalised. Results are cached, since a look-up searches all people.
class NameMatcher {
 public:
  /// @param people must outlive the matcher.
  /// @param nMinimumLength    a shorter number never gets a name.
  NameMatcher(const std::vector<__PERSON_CONTENT__>& people, size_t nMinimumLength);

  /// The owner's name; empty without a match, or for a person without a name.
  const std::string& NameOf(const std::string& strNumber);

 private:
  const std::string& LookUp(const std::string& strNumber) const;

  const std::vector<__PERSON_CONTENT__>& m_people;
  size_t m_nMinimumLength;
  std::unordered_map<std::string, const std::string*> m_known;
  std::string m_strNobody;
};

}  // namespace orvandel
