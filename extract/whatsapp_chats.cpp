#include "extract/whatsapp_chats.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

#include "common/file.h"
#include "common/store.h"
#include "common/text.h"
#include "extract/sorting.h"
#include "extract/whatsapp_people.h"
#include "extract/whatsapp_text.h"

namespace orvandel {

namespace {

using Number = WhatsAppPeople::Number;

constexpr char kStatusUpdates[] = "status@broadcast";

// The places of the store, the most recent first: today's, that of early versions, and that of the app for
// businesses.
constexpr const char* kStoreNames[] = {
    "AppDomainGroup-group.net.whatsapp.WhatsApp.shared-ChatStorage.sqlite",
    "AppDomain-net.whatsapp.WhatsApp-Documents/ChatStorage.sqlite",
    "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared-ChatStorage.sqlite",
};

/// Expression for a column that only some versions have.
std::string OptionalColumn(const StoreTable& table, const char* pszName) {
  return table.Has(pszName) ? pszName : "NULL";
}

/// A row of ZWACHATSESSION.
struct Session {
  std::string strAddress;
  std::string strSubject;  // partner's name, or subject of a group
  bool bGroup = false;
  bool bLeftOut = false;
  Number nPartner = WhatsAppPeople::kNobody;  // of a chat with one person
};

/// The messages of one chat, in store order.
struct Chat {
  struct Key {
    double dDate;  // seconds from 2001-01-01
    int64_t nRow;
    uint32_t nMessage;
  };
  int64_t nSession = 0;
  Session session;
  std::vector<__WHATSAPP_MESSAGE__> messages;
  std::vector<Key> keys;
  std::vector<Number> writers;  // of each message
};

/// Reads one store into chats.
class StoreReading {
 public:
  explicit StoreReading(const std::string& strPath)
      : m_strPath(strPath), m_people(strPath), m_media(strPath) {}

  void Read() {
    ReadSessions();
    ReadMessages();
  }

  void MoveTo(WhatsAppMap& map) {
    for (Chat& chat : m_chats) {
      if (chat.messages.empty()) continue;
      NameMessages(chat);
      SortMessages(chat);
      DescribeChat(chat);
      const unsigned int nKey = KeyFor(map, chat.nSession);
      for (__WHATSAPP_MESSAGE__& message : chat.messages) message.nChatId = nKey;
      map[nKey] = std::move(chat.messages);
      chat = Chat();
    }
  }

 private:
  enum SessionColumn { kSession, kAddress, kPartnerName, kGroupInfo };
  enum Column { kRow, kChat, kFromMe, kSeconds, kText, kType, kEvent, kMember, kSender, kPushName, kDate };

  void ReadSessions() {
    const StoreTable table(m_strPath, "ZWACHATSESSION");
    if (!table.Has("Z_PK")) return;
    const std::string strStatement = "SELECT Z_PK, " + OptionalColumn(table, "ZCONTACTJID") + ", " +
                                     OptionalColumn(table, "ZPARTNERNAME") + ", " +
                                     OptionalColumn(table, "ZGROUPINFO") + " FROM ZWACHATSESSION";
    StoreQuery query(m_strPath, strStatement.c_str());
    while (query.Next()) {
      Session session;
      session.strAddress = query.Narrow(kAddress);
      session.strSubject = query.Narrow(kPartnerName);
      session.bGroup = !query.IsNull(kGroupInfo) || IsGroupAddress(session.strAddress);
      session.bLeftOut = session.strAddress == kStatusUpdates;
      if (!session.bGroup) session.nPartner = m_people.Add(session.strAddress, session.strSubject);
      AddChat(query.Integer64(kSession), std::move(session));
    }
  }

  Chat& AddChat(int64_t nSession, Session session) {
    const auto [it, bNew] = m_numbers.emplace(nSession, m_chats.size());
    if (bNew) {
      m_chats.emplace_back();
      m_chats.back().nSession = nSession;
      m_chats.back().session = std::move(session);
    }
    return m_chats[it->second];
  }

  std::string MessageStatement() const {
    const StoreTable table(m_strPath, "ZWAMESSAGE");
    std::string strStatement = "SELECT " + OptionalColumn(table, "Z_PK");
    for (const char* pszColumn : {"ZCHATSESSION", "ZISFROMME", "ZMESSAGEDATE", "ZTEXT", "ZMESSAGETYPE",
                                  "ZGROUPEVENTTYPE", "ZGROUPMEMBER", "ZFROMJID", "ZPUSHNAME"})
      strStatement += ", " + OptionalColumn(table, pszColumn);
    // 978307200: seconds from 1970-01-01 to 2001-01-01.
    return strStatement + ", datetime(" + OptionalColumn(table, "ZMESSAGEDATE") +
           " + 978307200, 'unixepoch') FROM ZWAMESSAGE";
  }

  void ReadMessages() {
    StoreQuery query(m_strPath, MessageStatement().c_str());
    while (query.Next()) {
      const int64_t nSession = query.Integer64(kChat);
      const auto it = m_numbers.find(nSession);
      Chat& chat = it == m_numbers.end() ? AddChat(nSession, UnknownSession(query)) : m_chats[it->second];
      if (!chat.session.bLeftOut) AddMessage(query, chat);
    }
  }

  /// A session that its message refers to, but that the store doesn't have.
  Session UnknownSession(const StoreQuery& query) {
    Session session;
    const std::string strSender = query.Narrow(kSender);
    session.bGroup = IsGroupAddress(strSender);
    session.bLeftOut = strSender == kStatusUpdates;
    session.nPartner = m_people.OfAddress(strSender);
    return session;
  }

  void AddMessage(const StoreQuery& query, Chat& chat) {
    const int64_t nRow = query.Integer64(kRow);
    const auto number = [&](int nColumn) {
      return query.IsNull(nColumn) ? std::nullopt : std::optional<int>(query.Integer(nColumn));
    };
    __WHATSAPP_MESSAGE__ message;
    message.nIsFromMe = query.Integer(kFromMe);
    message.strDate = query.Narrow(kDate);
    message.strContent = WhatsAppText(query.Narrow(kText), number(kType), number(kEvent), m_media.Of(nRow));
    const double dDate =
        query.IsNull(kSeconds) ? -std::numeric_limits<double>::infinity() : query.Real(kSeconds);
    chat.keys.push_back({dDate, nRow, static_cast<uint32_t>(chat.messages.size())});
    chat.writers.push_back(message.nIsFromMe != 0 ? WhatsAppPeople::kNobody : WriterOf(query, chat.session));
    chat.messages.push_back(std::move(message));
  }

  Number WriterOf(const StoreQuery& query, const Session& session) {
    Number nWriter = session.nPartner;
    if (session.bGroup && !query.IsNull(kMember)) nWriter = m_people.OfMember(query.Integer64(kMember));
    if (nWriter == WhatsAppPeople::kNobody) nWriter = m_people.OfAddress(query.Narrow(kSender));
    if (nWriter != WhatsAppPeople::kNobody && m_people.IsNameless(nWriter))
      m_people.AddPushName(nWriter, query.Narrow(kPushName));
    return nWriter;
  }

  std::string TitleOf(const Session& session) const {
    return session.bGroup ? session.strSubject : m_people.NameOf(session.nPartner);
  }

  void NameMessages(Chat& chat) const {
    const std::string strTitle = TitleOf(chat.session);
    for (size_t i = 0; i < chat.messages.size(); ++i) {
      __WHATSAPP_MESSAGE__& message = chat.messages[i];
      const bool bFromMe = message.nIsFromMe != 0;
      const Number nParty = bFromMe ? chat.session.nPartner : chat.writers[i];
      message.strName = bFromMe ? strTitle : m_people.NameOf(nParty);
      message.strPhone = m_people.PhoneOf(nParty);
    }
  }

  static void SortMessages(Chat& chat) {
    std::sort(chat.keys.begin(), chat.keys.end(), [](const Chat::Key& a, const Chat::Key& b) {
      return a.dDate != b.dDate ? a.dDate > b.dDate : a.nRow > b.nRow;
    });
    std::vector<uint32_t> order;
    order.reserve(chat.keys.size());
    for (const Chat::Key& key : chat.keys) order.push_back(key.nMessage);
    Reorder(chat.messages, order);
  }

  void DescribeChat(Chat& chat) const {
    __WHATSAPP_MESSAGE__& first = chat.messages.front();
    first.strChatTitle = TitleOf(chat.session);
    first.strChatPhone = m_people.PhoneOf(chat.session.nPartner);
    first.strChatName = first.strChatTitle;
    if (!chat.session.bGroup) return;
    const std::string strMembers = MemberList(chat.nSession);
    if (!strMembers.empty()) first.strChatName = strMembers;
  }

  std::string MemberList(int64_t nSession) const {
    std::string strList;
    for (const Number nMember : m_people.Members(nSession)) {
      const std::string& strName = m_people.NameOf(nMember);
      if (strName.empty()) continue;
      if (!strList.empty()) strList += ", ";
      strList += strName;
    }
    return strList;
  }

  /// The session's number, or the highest free one if that has more than 32 bits or is taken.
  unsigned int KeyFor(const WhatsAppMap& map, int64_t nSession) {
    const auto nKey = static_cast<unsigned int>(nSession);
    if (nKey == nSession && map.count(nKey) == 0) return nKey;
    while (map.count(m_nHighestKey) != 0) --m_nHighestKey;
    return m_nHighestKey;
  }

  std::string m_strPath;
  WhatsAppPeople m_people;
  WhatsAppMediaItems m_media;
  std::vector<Chat> m_chats;
  std::unordered_map<int64_t, size_t> m_numbers;  // index of each chat, by Z_PK of its session
  unsigned int m_nHighestKey = std::numeric_limits<unsigned int>::max();  // that may be free
};

}  // namespace

void WhatsAppChatReader::Read(const std::string& strPath, WhatsAppMap& chats) {
  if (!StoreTable(strPath, "ZWAMESSAGE").Exists()) {
    // Reports why, if it is there.
    const StoreQuery query(strPath, "SELECT 1 FROM ZWAMESSAGE");
    return;
  }
  StoreReading reading(strPath);
  reading.Read();
  reading.MoveTo(chats);
}

std::string FindWhatsAppStore(const Catalogue& catalogue, const BackupLayout& layout) {
  const __MBDB_FILE__* found[std::size(kStoreNames)] = {};
  for (const __MBDB_FILE__& entry : catalogue) {
    for (size_t i = 0; i < std::size(kStoreNames); ++i) {
      if (!found[i] && entry.strFileName == kStoreNames[i]) found[i] = &entry;
    }
  }
  for (const __MBDB_FILE__* pEntry : found) {
    if (!pEntry) continue;
    const std::string strPath = ToNarrow(layout.PathOf(pEntry->strFileId));
    if (!strPath.empty() && EntryExists(strPath)) return strPath;
  }
  return {};
}

}  // namespace orvandel
