#pragma once
#include <QMetaType>
#include <cstdint>
#include <string>

/// One person of the address book. All texts are narrow; several values of a kind are in one text, as stored.
struct __PERSON_CONTENT__ {
  int32_t nDeleted = 0;
  std::string strEmail;
  std::string strAddress;  ///< not read by anything yet
  std::string strSocial;   ///< not read by anything yet
  std::string strUrl;
  std::string strPhone;
  std::string strCompany;
  std::string strName;  ///< first and last name, joined without a blank
};
Q_DECLARE_METATYPE(__PERSON_CONTENT__)
