#include "extract/whatsapp_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/store.h"

namespace orvandel {

namespace {

/// A type of message, and what is shown for one without a text.
struct MessageKind {
  int nType;
  const char* pszMark;
  std::string WhatsAppMedia::*pName;  // shown behind the mark; null for none
};

// Values of ZMESSAGETYPE. Text messages (0) aren't listed: without a text they are as unknown as any other.
constexpr MessageKind kKinds[] = {
    {1, "[Photo]", &WhatsAppMedia::strFile},
    {2, "[Video]", &WhatsAppMedia::strFile},
    {3, "[Voice message]", nullptr},
    {4, "[Contact]", &WhatsAppMedia::strContact},
    {5, "[Location]", nullptr},
    {7, "[Link]", nullptr},
    {8, "[Document]", &WhatsAppMedia::strFile},
    {14, "[Deleted message]", nullptr},
    {15, "[Sticker]", nullptr},
};

MessageKind KindOf(int nType, std::string& strUnknownMark) {
  const auto* pKind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const MessageKind& kind) { return kind.nType == nType; });
  if (pKind != std::end(kKinds)) return *pKind;
  strUnknownMark = "[Message of type " + std::to_string(nType) + "]";
  return {nType, strUnknownMark.c_str(), &WhatsAppMedia::strFile};
}

/// The value of a line of a vCard, as "FN:Anna Berger" or "item1.FN;CHARSET=UTF-8:Anna Berger"; empty without
/// such a line.
std::string VCardValue(const std::string& strCard, const char* pszName) {
  for (size_t nStart = 0; nStart < strCard.size();) {
    const size_t nEnd = std::min(strCard.find_first_of("\r\n", nStart), strCard.size());
    const std::string strLine = strCard.substr(nStart, nEnd - nStart);
    const size_t nColon = strLine.find(':');
    if (nColon != std::string::npos) {
      std::string strName = strLine.substr(0, std::min(nColon, strLine.find(';')));
      strName.erase(0, strName.find('.') + 1);  // its group; nothing without one
      if (strName == pszName) return strLine.substr(nColon + 1);
    }
    nStart = nEnd + 1;
  }
  return {};
}

/// Removes the backslashes that a vCard has before commas, semicolons and backslashes.
std::string Unescaped(const std::string& strValue) {
  std::string strResult;
  for (size_t i = 0; i < strValue.size(); ++i) {
    if (strValue[i] == '\\' && i + 1 < strValue.size()) ++i;
    strResult += strValue[i];
  }
  return strResult;
}

std::string ContactName(const std::string& strCard) {
  if (strCard.find("BEGIN:VCARD") == std::string::npos)
    return strCard.substr(0, strCard.find_first_of("\r\n"));
  return Unescaped(VCardValue(strCard, "FN"));
}

}  // namespace

WhatsAppMediaItems::WhatsAppMediaItems(const std::string& strPath) {
  const StoreTable table(strPath, "ZWAMEDIAITEM");
  if (!table.Has("ZMESSAGE")) return;
  std::string strStatement = "SELECT ZMESSAGE";
  for (const char* pszColumn : {"ZMEDIALOCALPATH", "ZTITLE", "ZVCARDNAME", "ZVCARDSTRING"})
    strStatement += ", " + table.Column(pszColumn);
  StoreQuery query(strPath, (strStatement + " FROM ZWAMEDIAITEM").c_str());
  while (query.Next()) {
    if (query.IsNull(0)) continue;
    WhatsAppMedia media;
    const std::string strFile = query.Narrow(1);
    media.strFile = strFile.substr(strFile.rfind('/') + 1);
    media.strCaption = query.Narrow(2);
    media.strContact = query.Narrow(3);
    if (media.strContact.empty()) media.strContact = ContactName(query.Narrow(4));
    const bool bEmpty = media.strFile.empty() && media.strCaption.empty() && media.strContact.empty();
    if (!bEmpty) m_items.emplace(query.Integer64(0), std::move(media));
  }
}

WhatsAppMedia WhatsAppMediaItems::Take(int64_t nMessage) {
  const auto it = m_items.find(nMessage);
  if (it == m_items.end()) return {};
  WhatsAppMedia media = std::move(it->second);
  m_items.erase(it);
  return media;
}

std::string WhatsAppText(const std::string& strText, std::optional<int> type, std::optional<int> event,
                         const WhatsAppMedia& media) {
  if (type == kWhatsAppGroupEvent) {
    const std::string strEvent = event ? "event " + std::to_string(*event) : "event";
    return "[Group] " + (strText.empty() ? strEvent : strText);
  }
  if (!strText.empty()) return strText;
  std::string strUnknownMark = "[Message]";
  const MessageKind kind =
      type ? KindOf(*type, strUnknownMark) : MessageKind{0, strUnknownMark.c_str(), &WhatsAppMedia::strFile};
  std::string strResult = kind.pszMark;
  const std::string strName = kind.pName ? media.*kind.pName : std::string();
  if (!strName.empty()) strResult.append(" ").append(strName);
  if (!media.strCaption.empty() && media.strCaption != strName)
    strResult.append(" ").append(media.strCaption);
  return strResult;
}

}  // namespace orvandel
