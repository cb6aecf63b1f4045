#pragma once
#include <QMetaType>
#include <string>

/// What the first screen shows of a backup.
struct __BACK_FILE_INFO__ {
  bool bEncrypted = false;
  bool bProductVersionAbove11 = false;  ///< "Product Version" begins with a number above 11
  std::string strLastBackupDate;        ///< YYYY-MM-DD HH:MM:SS, as the backup tells it
  std::string strPhoneNumber;
  std::string strSerialNumber;
  std::string strBackupPath;  ///< the folder, as it was given
  std::string strDisplayName;
};
Q_DECLARE_METATYPE(__BACK_FILE_INFO__)
