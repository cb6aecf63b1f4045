#pragma once
#include <QMetaType>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

/// One call. nAnswered is the column ZANSWERED; 0 is treated as an outgoing call.
struct __CALLHISTORY__ {
  int32_t nDeleted = 0;
  int32_t nAnswered = 0;
  int32_t nDuration = 0;   ///< seconds
  std::string strDate;     ///< YYYY-MM-DD HH:MM:SS, UTC
  std::string strAddress;  ///< the number, as stored
  std::string strName;     ///< of the matching contact, or empty
};
Q_DECLARE_METATYPE(__CALLHISTORY__)

/// Newest first.
bool VectorCmp(const __CALLHISTORY__& first, const __CALLHISTORY__& second);

/// Reads the call log of a backup. Lives on the stack for one call, on the thread of the scan.
class CIPhoneHistoryCall {
 public:
  int32_t nProductVersionAbove11 = 0;  ///< not used

  /// Appends the calls with a number, with the name of the first contact whose phone text contains it, and
  /// sorts the whole vector.
  /// @param strCallPath, strContactsPath narrow paths of the two stores.
  /// @return always 0; a store that can't be read adds nothing.
  int GetHistoryCallInfo(const std::string& strCallPath, const std::string& strContactsPath,
                         std::vector<__CALLHISTORY__>& calls);
};
