#include "extract/chats.h"

#include "common/status.h"
#include "common/store.h"

using namespace orvandel;

uint32_t g_u32WhatsappColNumber = 0;

int select_result(void*, int nColumns, char**, char**) {
  g_u32WhatsappColNumber = static_cast<uint32_t>(nColumns);
  return kStatusOk;
}

int CIPhoneWhatsApp::GetWhatsAppMessageInfo(const std::string& strPath, const std::string&, WhatsAppMap&) {
  const StoreQuery query(strPath, "select * from ZWAMESSAGE");
  const auto nColumns = static_cast<uint32_t>(query.ColumnCount());
  if (g_u32WhatsappColNumber < nColumns) g_u32WhatsappColNumber = nColumns;
  return kStatusOk;
}

int CIPhoneQQ::GetQQInfo(const std::string&, QQChats&) {
  return kStatusOk;
}
