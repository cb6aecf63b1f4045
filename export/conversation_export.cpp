// Messages and WhatsApp chats: a folder of documents for each conversation. The two categories differ only in
// their records.

#include <QFile>
#include <QFileInfo>

#include "common/text.h"
#include "export/document_file.h"
#include "export/recovery.h"

using namespace orvandel;

namespace {

constexpr char kUnknownName[] = "Unknown";

/// The fields of a message that documents show, common to both stores.
struct Line {
  const std::string& strDate;
  const std::string& strName;
  const std::string& strPhone;
  const std::string& strText;
  bool bReceived;
  bool bDeleted;
};

Line LineOf(const __MESSAGE_INFO__& message) {
  return {message.strDate, message.strContactName, message.strSender,
          message.strText, message.nIsFromMe == 0, message.nDeleted != 0};
}

Line LineOf(const __WHATSAPP_MESSAGE__& message) {
  return {message.strDate,    message.strName,        message.strPhone,
          message.strContent, message.nIsFromMe == 0, message.nDeleted != 0};
}

bool HasName(const Line& line) {
  return !line.strName.empty() && line.strName != kUnknownName;
}

/// Calls visit for each message of a conversation, if the map contains it.
template <typename Map, typename Visit>
void VisitConversation(const Map& conversations, unsigned int nKey, Visit visit) {
  const auto it = conversations.find(nKey);
  if (it == conversations.end()) return;
  for (const auto& message : it->second) visit(LineOf(message));
}

template <typename Map>
int SaveText(const Map& conversations, unsigned int nKey, const char16_t* pPath) {
  TextFile file(pPath);
  if (!file.IsOpen()) return file.Close().nCode;
  std::string strRecord;
  VisitConversation(conversations, nKey, [&](const Line& line) {
    const bool bNamed = HasName(line);
    // The labels are right-aligned in ten columns. "Data" is required for output compatibility.
    strRecord = line.bReceived ? "      From: " : "        To: ";
    // Each field ends at its first zero byte.
    if (bNamed) strRecord.append(line.strName.c_str()) += '(';
    strRecord += line.strPhone.c_str();
    if (bNamed) strRecord += ')';
    strRecord.append("\n      Data: ").append(line.strDate.c_str()).append("\n   Content: ");
    strRecord.append(line.strText.c_str()).append("\n\n");
    file.Write(strRecord);
    file.Flush();
  });
  return file.Close().nCode;
}

template <typename Map>
std::string Bubbles(const Map& conversations, unsigned int nKey) {
  static constexpr size_t kMarkup = 80;  // approximate size of the markup around a message
  size_t nLength = 0;
  VisitConversation(conversations, nKey, [&](const Line& line) {
    nLength +=
        kMarkup + line.strDate.size() + line.strName.size() + line.strPhone.size() + line.strText.size();
  });
  std::string strBody;
  strBody.reserve(nLength);
  VisitConversation(conversations, nKey, [&](const Line& line) {
    strBody.append("<div class=\"date\">Date: ").append(line.strDate);
    if (line.bReceived)
      strBody.append(" ").append(HasName(line) ? line.strName : line.strPhone);
    else
      strBody.append(" Me");
    strBody.append(":</div>\r\n<div class=\"");
    strBody.append(line.bDeleted ? "del_" : "")
        .append(line.bReceived ? "recv_msg" : "send_msg")
        .append("\">");
    strBody.append(line.strText).append("</div>\r\n");
  });
  return strBody;
}

}  // namespace

void CRecovery::RecoveryMsg(const __MESSAGE_INFO__* pMessage, const MessageMap& messages) {
  const std::string strLabel = pMessage->strContactName.empty() ? kUnknownName : pMessage->strContactName;
  const std::string& strSender = pMessage->strSender;
  m_bMessageSaved = true;
  const std::string strStem = strSender.empty() ? strLabel : strLabel + "(" + strSender + ")";
  const auto place = MakePlace("/Message/", strLabel, strStem, {".txt", ".html"});
  if (!place) return;
  const std::u16string wstrText = FreePath(*place, ".txt");
  Tell(FromWide(wstrText), SaveSMSMessageTxt(pMessage->nHandleId, wstrText.c_str(), messages),
       place->strOriginalStem);
  m_strSmsPageHead = HeadFor(m_strSmsHead, strLabel, strSender);
  const std::u16string wstrPage = FreePath(*place, ".html");
  Tell(FromWide(wstrPage), SaveSMSMessage(pMessage->nHandleId, wstrPage.c_str(), messages),
       place->strOriginalStem);
}

int CRecovery::SaveSMSMessageTxt(unsigned int nHandleId, const char16_t* pPath, const MessageMap& messages) {
  return SaveText(messages, nHandleId, pPath);
}

int CRecovery::SaveSMSMessage(unsigned int nHandleId, const char16_t* pPath, const MessageMap& messages) {
  m_strSmsBody = Bubbles(messages, nHandleId);
  return WritePage(Unicode2Ansi(pPath), {&m_strSmsPageHead, &m_strSmsBody, &m_strSmsTail}).nCode;
}

void CRecovery::SaveMessage() {
  // The folder exists only when a conversation was written; without one the store isn't copied.
  if (QFileInfo(m_strSavePath + "/Message").exists())
    SaveStore(kMessageStore, "/Message/", "sms.db", &CIphoneBackupFile::RecoverySMSMessage, m_bMessageSaved);
}

void CRecovery::RecoveryWhatsAppMsg(const __WHATSAPP_MESSAGE__* pMessage, const WhatsAppMap& chats) {
  const std::string& strName = pMessage->strChatName;
  const std::string& strPhone = pMessage->strChatPhone;
  std::string strLabel = strName.empty() ? strPhone : strName + "(" + strPhone + ")";
  const bool bGroup = strName.find(',') != std::string::npos;  // a group's name is a list of its members
  if (bGroup) strLabel = pMessage->strChatTitle;
  if (strLabel.empty()) strLabel = kUnknownName;
  const auto place = MakePlace("/WhatsApp Message/", strLabel, strLabel, {".txt", ".csv", ".html"});
  if (!place) return;
  const unsigned int nChatId = pMessage->nChatId;
  const std::u16string wstrText = FreePath(*place, ".txt");
  Tell(FromWide(wstrText), SaveWhatsAppTxt(nChatId, wstrText.c_str(), chats), place->strOriginalStem);
  m_strWhatsAppPageHead = HeadFor(m_strWhatsAppHead, strName, strPhone);
  const std::u16string wstrCsv = FreePath(*place, ".csv");
  Tell(FromWide(wstrCsv), SaveWhatsAppCsv(nChatId, wstrCsv.c_str(), chats), place->strOriginalStem);
  const std::u16string wstrPage = FreePath(*place, ".html");
  Tell(FromWide(wstrPage), SaveWhatsApp(nChatId, wstrPage.c_str(), chats), place->strOriginalStem);
}

int CRecovery::SaveWhatsAppTxt(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats) {
  return SaveText(chats, nChatId, pPath);
}

int CRecovery::SaveWhatsAppCsv(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats) {
  TextFile file(pPath);
  if (!file.IsOpen()) return file.Close().nCode;
  file.Write("Chats,Name/Phone,Date,Type,Content\n");
  VisitConversation(chats, nChatId, [&](const Line& line) {
    // Fields aren't quoted: a comma or line feed in a message starts a new column or row. Each field ends at
    // its first zero byte.
    std::string strRecord = line.strName.c_str();
    strRecord.append(",").append(line.strPhone.c_str()).append(",").append(line.strDate.c_str());
    strRecord.append(line.bReceived ? ",Received," : ",Send,").append(line.strText.c_str()).append("\n");
    file.Write(strRecord);
    file.Flush();
  });
  return file.Close().nCode;
}

int CRecovery::SaveWhatsApp(unsigned int nChatId, const char16_t* pPath, const WhatsAppMap& chats) {
  m_strWhatsAppBody = Bubbles(chats, nChatId);
  return WritePage(Unicode2Ansi(pPath), {&m_strWhatsAppPageHead, &m_strWhatsAppBody, &m_strWhatsAppTail})
      .nCode;
}
