#include "extract/whatsapp_chats.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "common/file.h"
#include "common/format.h"
#include "common/store.h"
#include "common/text.h"
#include "extract/number_index.h"
#include "extract/sorting.h"
#include "extract/text_arena.h"
#include "extract/whatsapp_people.h"
#include "extract/whatsapp_text.h"

namespace orvandel {

namespace {

using Number = WhatsAppPeople::Number;

constexpr double kAppleEpoch = 978307200;  // seconds from 1970-01-01 to 2001-01-01
constexpr char kStatusUpdates[] = "status@broadcast";

// The places of the store, in order of preference: that of current versions, that of early ones, and that of
// the app for businesses.
constexpr const char* kStoreNames[] = {
    "AppDomainGroup-group.net.whatsapp.WhatsApp.shared-ChatStorage.sqlite",
    "AppDomain-net.whatsapp.WhatsApp-Documents/ChatStorage.sqlite",
    "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared-ChatStorage.sqlite",
};

constexpr size_t kAhead = 16;      // messages
constexpr size_t kCacheLine = 64;  // bytes

/// A row of ZWACHATSESSION.
struct Session {
  std::string strSubject;  // partner's name, or subject of a group
  bool bGroup = false;
  bool bLeftOut = false;
  bool bUnknown = false;                      // only messages refer to it
  Number nPartner = WhatsAppPeople::kNobody;  // of a chat with one person
};

/// A row of ZWAMESSAGE.
struct MessageRow {
  double dDate;  // seconds from 2001-01-01
  int64_t nRow;
  std::string_view text;  // in the arena
  Number nWriter;         // kNobody for the owner
  int32_t nFromMe;
};

struct Chat {
  int64_t nSession = 0;
  Session session;
  std::vector<MessageRow> rows;
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

  void AddTo(WhatsAppMap& map) {
    for (Chat& chat : m_chats) {
      if (chat.rows.empty()) continue;
      SortRows(chat.rows);
      const unsigned int nKey = KeyFor(map, chat.nSession);
      std::vector<__WHATSAPP_MESSAGE__>& messages = map[nKey];
      messages = Messages(chat, nKey);
      DescribeChat(chat, messages.front());
      std::vector<MessageRow>().swap(chat.rows);
    }
  }

 private:
  enum SessionColumn { kSession, kAddress, kPartnerName, kGroupInfo };
  enum Column { kRow, kChat, kFromMe, kSeconds, kText, kType, kEvent, kMember, kSender, kPushName };

  void ReadSessions() {
    const StoreTable table(m_strPath, "ZWACHATSESSION");
    if (!table.Has("Z_PK")) return;
    const std::string strStatement = "SELECT Z_PK, " + table.Column("ZCONTACTJID") + ", " +
                                     table.Column("ZPARTNERNAME") + ", " + table.Column("ZGROUPINFO") +
                                     " FROM ZWACHATSESSION";
    StoreQuery query(m_strPath, strStatement.c_str());
    while (query.Next()) {
      Session session;
      const std::string strAddress = query.Narrow(kAddress);
      session.strSubject = ShortenedName(query.Narrow(kPartnerName));
      session.bGroup = !query.IsNull(kGroupInfo) || IsGroupAddress(strAddress);
      session.bLeftOut = strAddress == kStatusUpdates;
      if (!session.bGroup) session.nPartner = m_people.Add(strAddress, session.strSubject);
      AddChat(query.Integer64(kSession), std::move(session));
    }
  }

  Chat& AddChat(int64_t nSession, Session session) {
    if (m_numbers.Add(nSession, static_cast<uint32_t>(m_chats.size()))) {
      m_chats.emplace_back();
      m_chats.back().nSession = nSession;
      m_chats.back().session = std::move(session);
    }
    return m_chats[m_numbers.Find(nSession)];
  }

  std::string MessageStatement() const {
    const StoreTable table(m_strPath, "ZWAMESSAGE");
    std::string strStatement = "SELECT " + table.Column("Z_PK");
    for (const char* pszColumn : {"ZCHATSESSION", "ZISFROMME", "ZMESSAGEDATE", "ZTEXT", "ZMESSAGETYPE",
                                  "ZGROUPEVENTTYPE", "ZGROUPMEMBER", "ZFROMJID", "ZPUSHNAME"})
      strStatement += ", " + table.Column(pszColumn);
    return strStatement + " FROM ZWAMESSAGE";
  }

  void ReadMessages() {
    StoreQuery query(m_strPath, MessageStatement().c_str());
    while (query.Next()) {
      const int64_t nSession = query.Integer64(kChat);
      const uint32_t nChat = m_numbers.Find(nSession);
      Chat& chat = nChat == NumberIndex::kNone ? AddChat(nSession, UnknownSession()) : m_chats[nChat];
      if (!IsLeftOut(query, chat.session)) AddMessage(query, chat);
    }
    m_people.SpreadPushNames();
  }

  static Session UnknownSession() {
    Session session;
    session.bUnknown = true;
    return session;
  }

  static bool IsLeftOut(const StoreQuery& query, const Session& session) {
    return session.bLeftOut || (session.bUnknown && query.Narrow(kSender) == kStatusUpdates);
  }

  void AddMessage(const StoreQuery& query, Chat& chat) {
    MessageRow row;
    row.nRow = query.Integer64(kRow);
    row.dDate = query.IsNull(kSeconds) ? -std::numeric_limits<double>::infinity() : query.Real(kSeconds);
    row.nFromMe = query.Integer(kFromMe);
    row.nWriter = row.nFromMe != 0 ? WhatsAppPeople::kNobody : WriterOf(query, chat.session);
    row.text = m_texts.Add(TextOf(query));
    chat.rows.push_back(row);
  }

  std::string TextOf(const StoreQuery& query) {
    const auto number = [&](int nColumn) {
      return query.IsNull(nColumn) ? std::nullopt : std::optional<int>(query.Integer(nColumn));
    };
    std::string strText = query.Narrow(kText);
    const std::optional<int> type = number(kType);
    if (!strText.empty() && type != kWhatsAppGroupEvent) return strText;
    const WhatsAppMedia media = query.IsNull(kRow) ? WhatsAppMedia() : m_media.Take(query.Integer64(kRow));
    return WhatsAppText(strText, type, number(kEvent), media);
  }

  Number WriterOf(const StoreQuery& query, Session& session) {
    const bool bPerson = !session.bGroup && !session.bUnknown;
    Number nWriter = bPerson ? session.nPartner : MemberWhoWrote(query);
    if (nWriter == WhatsAppPeople::kNobody) {
      nWriter = m_people.OfAddress(query.Narrow(kSender));
      // A session of which nothing is known is named by the first who wrote in it. Messages without any
      // session have nothing in common.
      const bool bNameless = session.bUnknown && session.nPartner == WhatsAppPeople::kNobody;
      if (bNameless && !query.IsNull(kChat)) session.nPartner = nWriter;
    }
    if (nWriter == WhatsAppPeople::kNobody) return m_people.OfPushName(query.Narrow(kPushName));
    if (m_people.IsNameless(nWriter)) m_people.AddPushName(nWriter, query.Narrow(kPushName));
    return nWriter;
  }

  Number MemberWhoWrote(const StoreQuery& query) const {
    return query.IsNull(kMember) ? WhatsAppPeople::kNobody : m_people.OfMember(query.Integer64(kMember));
  }

  std::string TitleOf(const Session& session) const {
    return session.bGroup ? session.strSubject : m_people.NameOf(session.nPartner);
  }

  static void SortRows(std::vector<MessageRow>& rows) {
    std::reverse(rows.begin(), rows.end());  // in most stores that sorts them
    SortRecords(rows, [](const MessageRow& a, const MessageRow& b) {
      return a.dDate != b.dDate ? a.dDate > b.dDate : a.nRow > b.nRow;
    });
  }

  /// Asks for the beginning of a text to be loaded into the cache.
  static void Prefetch(std::string_view text) {
#if defined(__GNUC__)
    __builtin_prefetch(text.data());
    __builtin_prefetch(text.data() + std::min<size_t>(text.size(), kCacheLine));
#endif
  }

  std::vector<__WHATSAPP_MESSAGE__> Messages(const Chat& chat, unsigned int nKey) const {
    const std::string strTitle = TitleOf(chat.session);
    std::vector<__WHATSAPP_MESSAGE__> messages;
    messages.reserve(chat.rows.size());
    for (size_t i = 0; i < chat.rows.size(); ++i) {
      const MessageRow& row = chat.rows[i];
      // The texts of a chat are scattered over the arena: each would be a cache miss.
      if (i + kAhead < chat.rows.size()) Prefetch(chat.rows[i + kAhead].text);
      const bool bFromMe = row.nFromMe != 0;
      const Number nParty = bFromMe ? chat.session.nPartner : row.nWriter;
      __WHATSAPP_MESSAGE__& message = messages.emplace_back();
      message.nIsFromMe = row.nFromMe;
      message.nChatId = nKey;
      message.strDate = UtcDateText(row.dDate + kAppleEpoch);
      message.strName = bFromMe ? strTitle : m_people.NameOf(nParty);
      message.strPhone = m_people.PhoneOf(nParty);
      message.strContent = row.text;
    }
    return messages;
  }

  void DescribeChat(const Chat& chat, __WHATSAPP_MESSAGE__& first) const {
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
  TextArena m_texts;
  std::vector<Chat> m_chats;
  NumberIndex m_numbers;  // index of each chat, by Z_PK of its session
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
  reading.AddTo(chats);
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
