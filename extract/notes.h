#pragma once
#include <QMetaType>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

/// One note, its HTML turned into plain text with line feeds.
struct __NOTES__ {
  int32_t nDeleted = 0;
  int32_t nReserved = 0;
  std::string
      strDate;  ///< creation, YYYY-MM-DD HH:MM:SS; local time from the first store, UTC from the second
  std::string strTitle;
  std::string strContent;  ///< body (first store) or snippet (second store)
};
Q_DECLARE_METATYPE(__NOTES__)

/// Newest first.
bool VectorCmp(const __NOTES__& first, const __NOTES__& second);

/// Decodes six HTML entities, in place.
void DecodeHtmlSpecialChars(QString& qstrText);

/// Reads the notes of a backup. Lives on the stack for one call, on the thread of the scan.
class CIPhoneNotes {
 public:
  /// Appends the notes of the store with the tables ZNOTE and ZNOTEBODY and sorts the whole vector. Notes
  /// without any text are skipped. @param strPath narrow. @return always 0; a store that can't be read adds
  /// nothing.
  int GetNotesInfo(const std::string& strPath, std::vector<__NOTES__>& notes);

  /// Same as above for the store with the table ZICCLOUDSYNCINGOBJECT.
  int GetNotesStoreInfo(const std::string& strPath, std::vector<__NOTES__>& notes);
};
