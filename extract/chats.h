#pragma once
#include <QString>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// One message of a WhatsApp chat. Name, number and title of the chat are set at least in its first record.
struct __WHATSAPP_MESSAGE__ {
  int32_t nDeleted = 0;
  int32_t nIsFromMe = 0;  ///< 0 for a received message
  int32_t nReserved1 = 0;
  uint32_t nChatId = 0;  ///< key of the chat
  int32_t nReserved2 = 0;
  int32_t nReserved3 = 0;
  std::string strDate;
  std::string strName;  ///< of the writer of this message; see WhatsAppChatReader for the owner's
  std::string strContent;
  std::string strPhone;     ///< of the writer of this message
  std::string strChatName;  ///< of the partner, or a comma-separated list for a group
  std::string strChatPhone;
  std::string strChatTitle;
  std::string strReserved;
};

namespace orvandel {

/// Chats by key.
using WhatsAppMap = std::map<unsigned int, std::vector<__WHATSAPP_MESSAGE__>>;

}  // namespace orvandel

/// Records of the interface that nothing fills.
struct __WHATSAPP_CONTENT__ {
  int32_t nFirst = 0, nSecond = 0, nThird = 0;
  std::string strFirst, strSecond, strThird;
};
struct __WHATSAPP_GROUP_MEMBER__ {
  uint64_t nId = 0;
  std::string strFirst, strSecond;
};
struct __WHATSAPP_MEDIA_TITLE__ {
  int32_t nId = 0;
  std::string strTitle;
};

/// One message of a QQ or WeiXin chat; not filled by anything yet.
struct __QQ_MESSAGE__ {
  int32_t nFirst = 0, nSecond = 0, nThird = 0;
  std::string strFirst, strSecond, strThird, strFourth;
};
struct __WEIXIN_MESSAGE__ {
  int32_t nFirst = 0, nSecond = 0, nThird = 0;
  std::string strFirst, strSecond, strThird, strFourth;
};

namespace orvandel {

/// By chat, and by account and chat.
using QQChats = std::map<std::string, std::vector<__QQ_MESSAGE__>>;
using QQMap = std::map<std::string, QQChats>;
using WeiXinMap = std::map<std::u16string, std::map<std::u16string, std::vector<__WEIXIN_MESSAGE__>>>;

}  // namespace orvandel

/// The largest column count of the table ZWAMESSAGE so far.
extern uint32_t g_u32WhatsappColNumber;

/// Row callback for sqlite3_exec: stores the column count in g_u32WhatsappColNumber. @return 0.
int select_result(void* pContext, int nColumns, char** ppValues, char** ppNames);

/// Examines WhatsApp's message store. Lives on the stack for one call.
class CIPhoneWhatsApp {
 public:
  /// Counts the columns of the message table and keeps the largest count in g_u32WhatsappColNumber.
  /// @param strPath narrow path of the store. @param strSecondPath not used. @param chats unchanged.
  /// @return 0.
  int GetWhatsAppMessageInfo(const std::string& strPath, const std::string& strSecondPath,
                             orvandel::WhatsAppMap& chats);
};

/// Reader of a QQ store; reads nothing yet.
class CIPhoneQQ {
 public:
  /// @return 0, with chats unchanged.
  int GetQQInfo(const std::string& strPath, orvandel::QQChats& chats);
};
