#pragma once
#include <QMetaType>
#include <string>

/// Description of a backup, as shown on the first screen.
struct __BACK_FILE_INFO__ {
  bool bEncrypted = false;
  bool bProductVersionAbove11 = false;  ///< "Product Version" begins with a number above 11
  std::string strLastBackupDate;        ///< YYYY-MM-DD HH:MM:SS, as in the backup
  std::string strPhoneNumber;
  std::string strSerialNumber;
  std::string strBackupPath;  ///< the folder, as given by the caller
  std::string strDisplayName;
};
Q_DECLARE_METATYPE(__BACK_FILE_INFO__)
