#pragma once
#include <QString>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "common/callback.h"

/// One message.
struct __MESSAGE_INFO__ {
  int32_t nDeleted = 0;
  int32_t nIsFromMe = 0;  ///< 0 for a received message
  int32_t nRowId = 0;
  uint32_t nHandleId = 0;      ///< key of the conversation
  std::string strDate;         ///< YYYY-MM-DD HH:MM:SS, UTC
  std::string strSender;       ///< the other side's number or address, as stored
  std::string strContactName;  ///< of the matching contact, or empty
  std::string strText;
  std::string strReserved;
};

namespace orvandel {

/// Conversations by handle, each newest first.
using MessageMap = std::map<unsigned int, std::vector<__MESSAGE_INFO__>>;

}  // namespace orvandel

/// Newest first.
bool VectorCmp(const __MESSAGE_INFO__& first, const __MESSAGE_INFO__& second);

/// Reads the messages of a backup. Lives on the stack for one call, on the thread of the scan.
class CIPhoneMessage {
 public:
  int32_t nProductVersionAbove11 = 0;  ///< not used
  bool bNewContactsLayout = false;     ///< column layout of the contacts store of a backup with "Manifest.db"

  /// Sets the progress callback; it gets percentages from nBase to nBase + nSpan. @return 0.
  int InitCallback(orvandel::ProgressCallback pfnCallback, void* pContext, int nBase, int nSpan);

  /// Adds the messages with a text to the map, with the name of the first contact whose phone text contains
  /// the sender.
  /// @param strMessagePath, strContactsPath narrow paths of the two stores.
  /// @param nMaxId receives the highest message row id, including skipped rows.
  /// @return the callback's last result, 0 without a callback. If its first result isn't 0, the map is
  /// unchanged.
  int GetSMSInfo(const std::string& strMessagePath, const std::string& strContactsPath,
                 orvandel::MessageMap& messages, uint64_t& nMaxId);

  /// Copies the store and makes the copy readable and writable by everybody. @param nMaxId not used.
  /// @return always 0.
  int SaveSMSCsvFile(const std::string& strSource, const std::string& strDestination, uint64_t nMaxId);

 private:
  /// Reports the base plus nShare. @return the callback's result, 0 without a callback.
  int Report(int nShare);

  orvandel::ProgressCallback m_pfnCallback = nullptr;
  void* m_pCallbackContext = nullptr;
  int m_nProgressBase = 0;
  int m_nProgressSpan = 0;
};
