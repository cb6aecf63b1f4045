// WhatsApp's chats in the demo backup: people, groups, every kind of message, and the files of their media.
#include <functional>
#include <iterator>

#include "sample/chat_store.h"
#include "sample/demo_parts.h"
#include "sample/pictures.h"
#include "sample/store_guid.h"
#include "sample/texts.h"

namespace orvandel {

namespace {

using Type = ChatStore::Type;
using Maker = std::function<QByteArray(int seed)>;

constexpr int kFirstIosOfAppGroups = 8;  // before, apps share no folder
constexpr int kFirstIosOfEncodedNames = 16;
constexpr int kPlainMessages = 24;  // in each chat, before those of all kinds
constexpr qint64 kStep = 5400;      // seconds between messages

/// Where the app keeps its files.
struct AppPlaces {
  StorePlace store;
  QString mediaParent;  ///< folder that holds "Media"
};

AppPlaces placesOf(int ios) {
  if (ios < kFirstIosOfAppGroups) return {store_places::earlyChats(), "Library/"};
  return {store_places::chats(), "Message/"};
}

struct Partner {
  const char *jid, *name, *pushName;
};

// The numbers are of people in the address book, except for the last two.
const Partner kPartners[] = {
    {"4917139200011@s.whatsapp.net", "Anna Berger", "Anna 🌻"},
    {"447700900123@s.whatsapp.net", "Zoë O'Neill", "zoe"},
    {"8613800138000@s.whatsapp.net", "王 伟", nullptr},
    {"12025550143@s.whatsapp.net", nullptr, "Sam <3"},
    {"12025550144@s.whatsapp.net", nullptr, nullptr},
};

struct Member {
  const char *jid, *contactName, *firstName;
};

const Member kFamily[] = {
    {"4917139200001@s.whatsapp.net", "Mum 💛", "Mum"},
    {"4917139200011@s.whatsapp.net", "Anna Berger", nullptr},
    {"447700900123@s.whatsapp.net", nullptr, "Zoë"},
};
const Member kClub[] = {
    {"12025550107@s.whatsapp.net", "Prince", nullptr},
    {"12025550143@s.whatsapp.net", nullptr, nullptr},  // has a push name
    {"12025550145@s.whatsapp.net", nullptr, nullptr},  // only a number
};

/// One message of each kind.
struct Kind {
  int type;
  const char* text;
  const char *extension, *title;  ///< of a file; null for none
  Maker make;
};

const Kind kKinds[] = {
    {Type::Picture, nullptr, "jpg", nullptr, [](int seed) { return sample_media::jpeg(seed, 320, 240); }},
    {Type::Picture, nullptr, "jpg", "Aussicht vom Turm 🗼 <schön>",
     [](int seed) { return sample_media::exifJpeg(seed); }},
    {Type::Video, nullptr, "mp4", "Kurzer Film", [](int seed) { return sample_media::mp4(seed); }},
    {Type::Voice, nullptr, "opus", nullptr, [](int seed) { return sample_media::unknown(seed, 900); }},
    {Type::Contact, nullptr, nullptr, nullptr, nullptr},
    {Type::Place, nullptr, nullptr, nullptr, nullptr},
    {Type::Link, "https://www.example.com/a?b=1&c=2 sieh mal", nullptr, "Ein Artikel", nullptr},
    {Type::Document, nullptr, "pdf", "Fahrplan 2016.pdf",
     [](int seed) { return "%PDF-1.4\n" + sample_media::unknown(seed, 800); }},
    {Type::Sticker, nullptr, "webp", nullptr,
     [](int seed) { return QByteArray("RIFF\x70\x02\0\0WEBPVP8 ", 16) + sample_media::unknown(seed, 616); }},
    {Type::Deleted, nullptr, nullptr, nullptr, nullptr},
    {59, nullptr, nullptr, nullptr, nullptr},  // a type of later versions
};

QString text(const char* value) {
  return value ? QString::fromUtf8(value) : QString();
}

class ChatWriter {
 public:
  ChatWriter(BackupBuilder& backup, const DemoOptions& options, const AppPlaces& places, ChatStore& store)
      : m_backup(backup),
        m_options(options),
        m_places(places),
        m_store(store),
        m_random(static_cast<quint32>(options.seed) + 50) {}

  void write() {
    for (const Partner& partner : kPartners) {
      if (partner.pushName) m_store.addPushName(partner.jid, text(partner.pushName));
      fill(m_store.addSession(partner.jid, text(partner.name)), partner.jid, {}, text(partner.pushName));
    }
    writeGroup("4930901820-1398765432@g.us", "Familie 👨‍👩‍👧", kFamily);
    writeGroup("120363021034567890@g.us", "Ruderclub & Freunde", kClub);
    const qint64 status = m_store.addSession("status@broadcast", {});
    ChatStore::Message message = messageOf(status, 0, false);
    message.text = "Bin im Urlaub";
    m_store.addMessage(message);
  }

 private:
  ChatStore::Message messageOf(qint64 session, qint64 member, bool fromMe) {
    ChatStore::Message message;
    message.session = session;
    message.member = fromMe ? 0 : member;
    message.fromMe = fromMe;
    m_date += kStep;
    message.date = double(kFirstDate + m_date) + m_random.below(1000) / 1000.0;
    return message;
  }

  template <size_t kCount>
  void writeGroup(const char* jid, const char* subject, const Member (&members)[kCount]) {
    const QString owner = members[0].jid;
    const qint64 session = m_store.addGroup(jid, text(subject), owner, double(kFirstDate));
    std::vector<qint64> rows;
    for (const Member& member : members)
      rows.push_back(
          m_store.addMember(session, member.jid, text(member.contactName), text(member.firstName)));
    for (int event = 1; event <= 3; ++event) {
      ChatStore::Message message = messageOf(session, rows[0], false);
      message.type = Type::GroupEvent;
      message.groupEvent = event;
      if (event == 1) message.text = text(subject);  // the group got its subject
      m_store.addMessage(message);
    }
    fill(session, jid, rows, {});
  }

  /// Adds texts, then a message of each kind. @param members row ids; empty in a chat with one person.
  void fill(qint64 session, const QString& jid, const std::vector<qint64>& members, const QString& pushName) {
    const auto memberOf = [&](int index) {
      return members.empty() ? qint64{0} : members[size_t(index) % members.size()];
    };
    for (int i = 0; i < kPlainMessages; ++i) {
      ChatStore::Message message = messageOf(session, memberOf(i), i % 3 == 1);
      message.text = messageText(m_random);
      if (!message.fromMe) message.pushName = storedPushName(pushName);
      m_store.addMessage(message);
    }
    for (size_t i = 0; i < std::size(kKinds); ++i) {
      const Kind& kind = kKinds[i];
      ChatStore::Message message = messageOf(session, memberOf(int(i)), i % 2 == 1);
      message.type = kind.type;
      message.text = text(kind.text);
      const bool hasMedia = kind.title || kind.make || kind.type == Type::Contact || kind.type == Type::Place;
      const ChatStore::Media media = hasMedia ? mediaOf(kind, jid) : ChatStore::Media();
      m_store.addMessage(message, hasMedia ? &media : nullptr);
    }
  }

  /// The name that a message has from its sender: later versions store it encoded.
  QString storedPushName(const QString& name) const {
    if (name.isEmpty() || m_options.ios < kFirstIosOfEncodedNames) return name;
    const QByteArray utf8 = name.toUtf8();
    return QString::fromLatin1(("\x0A" + QByteArray(1, static_cast<char>(utf8.size())) + utf8).toBase64());
  }

  ChatStore::Media mediaOf(const Kind& kind, const QString& jid) {
    ChatStore::Media media;
    media.title = text(kind.title);
    if (kind.type == Type::Contact) {
      media.vcardName = "Pizza Vesuvio";
      media.vcardString =
          "BEGIN:VCARD\nVERSION:3.0\nN:;Pizza Vesuvio;;;\nFN:Pizza Vesuvio\n"
          "TEL;type=CELL;waid=493023125020:+49 30 23125020\nEND:VCARD";
    } else if (kind.type == Type::Place) {
      media.latitude = 52.5163;
      media.longitude = 13.3777;
    } else if (kind.type == Type::Document) {
      media.vcardString = "application/pdf";
    }
    if (kind.type == Type::Video || kind.type == Type::Voice) media.duration = 12;
    if (!kind.make) return media;
    const QString name = storeGuid(QString("chat medium %1").arg(++m_files)).toLower();
    media.localPath =
        QString("Media/%1/%2/%3/%4.%5").arg(jid, name.left(1), name.mid(1, 1), name, QString(kind.extension));
    media.url = "https://mmg.example.net/d/f/" + name + ".enc";
    const QByteArray content = kind.make(m_options.seed * 1000 + 800 + m_files);
    media.size = static_cast<int>(content.size());
    m_backup.addFile(m_places.store.domain, m_places.mediaParent + media.localPath, content);
    return media;
  }

  BackupBuilder& m_backup;
  const DemoOptions& m_options;
  const AppPlaces& m_places;
  ChatStore& m_store;
  SeededRandom m_random;
  qint64 m_date = 0;
  int m_files = 0;
};

}  // namespace

void addChats(BackupBuilder& backup, const DemoOptions& options) {
  const AppPlaces places = placesOf(options.ios);
  ChatStore store(reserve(backup, places.store), options.layout == BackupBuilder::Layout::Db);
  ChatWriter(backup, options, places, store).write();
  store.close();
}

}  // namespace orvandel
