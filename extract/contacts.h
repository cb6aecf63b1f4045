#pragma once
#include <QString>
#include <string>
#include <vector>

#include "extract/person.h"

/// Ascending by name, ignoring case.
bool VectorCmp(const __PERSON_CONTENT__& first, const __PERSON_CONTENT__& second);

/// Reads the address book of a backup. Lives on the stack for one call, on the thread of the scan.
class CIPhoneContacts {
 public:
  int32_t nProductVersionAbove11 = 0;  ///< not used
  bool bNewContactsLayout = false;     ///< column layout of a backup with "Manifest.db"

  /// Appends the people who have a phone number, and sorts the whole vector.
  /// @param strPath narrow path of the contacts store.
  /// @param nMaxId  receives the highest "docid", including skipped rows.
  /// @return always 0; a store that can't be read adds nobody.
  int GetContactsInfo(const std::string& strPath, std::vector<__PERSON_CONTENT__>& people, uint64_t& nMaxId);

  /// Copies the store and makes the copy readable and writable by everybody. @param nMaxId not used.
  /// @return always 0.
  int SaveContactsCsvFile(const std::string& strSource, const std::string& strDestination, uint64_t nMaxId);
};
