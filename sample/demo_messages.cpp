// The messages of the demo backup: one conversation with each of many people, and a group with a name.
#include <algorithm>

#include "sample/demo_parts.h"
#include "sample/message_schema.h"
#include "sample/people.h"
#include "sample/texts.h"
#include "sample/typed_stream_writer.h"

namespace orvandel {

namespace {

constexpr qint64 kNanoseconds = 1000000000;
constexpr int kFewestHandles = 30;
constexpr int kMostHandles = 2000;
constexpr int kMessagesPerHandle = 250;

qint64 storedDate(const DemoOptions& options, qint64 seconds) {
  return options.system().major >= message_columns::kNanoseconds ? seconds * kNanoseconds : seconds;
}

QString fileName(const SampleAttachment& attachment) {
  return "~/" + attachment.path;
}

/// Moves the text of a message to where the system keeps it.
void setBody(MessageStore::Message& message, const DemoOptions& options, int index,
             const QStringList& attachments) {
  if (options.ios < message_columns::kAttributedBody || message.text.isEmpty()) return;
  message.attributedBody = attributedBody(message.text, index % 2 == 0, attachments);
  const bool keepsText = options.ios < message_columns::kBodyOnly || index % 7 == 0;
  if (!keepsText) message.text = QString();
}

/// The other side of a conversation: a contact by full number, by partial number or by mail address, or
/// unknown.
QString handleName(int index, const People& people) {
  static const QString kShortCode = "72355";
  if (index == 7) return kShortCode;
  if (index >= static_cast<int>(people.size())) return unknownNumber(index);
  const ContactsStore::Person& person = people[size_t(index)];
  const QString phone = firstPhone(person);
  switch (index % 5) {
    case 1:
      return phone.isNull() ? unknownNumber(index) : phone.mid(3);  // without the country code
    case 2:
      return unknownNumber(index);
    case 3:
      return person.email.isEmpty() ? QString("friend%1@example.net").arg(index)
                                    : person.email.section('\n', 0, 0);
    default:
      return phone.isNull() ? unknownNumber(index) : phone;
  }
}

QString serviceOf(const QString& handle, int index) {
  if (handle.contains('@')) return "iMessage";
  return handle.size() < 7 || index % 3 == 2 ? "SMS" : "iMessage";
}

class Talks {
 public:
  Talks(MessageStore& store, const DemoOptions& options, const People& people)
      : m_store(store), m_random(static_cast<quint32>(options.seed) + 20), m_options(options) {
    m_count = qBound(kFewestHandles, options.messages / kMessagesPerHandle, kMostHandles);
    for (int i = 0; i < m_count; ++i) {
      const QString name = handleName(i, people);
      m_handles.push_back(store.addHandle(name, serviceOf(name, i)));
      m_chats.push_back(store.addChat(name));
    }
    m_group = store.addChat("chat831264790215");
  }

  int count() const { return m_count; }
  const std::vector<qint64>& handles() const { return m_handles; }

  void write(const std::vector<SampleAttachment>& attachments) {
    // Attachments are at regular intervals.
    const int distance = qMax(1, m_options.messages / qMax(1, static_cast<int>(attachments.size())));
    for (int i = 0; i < m_options.messages; ++i) {
      const bool carries = i % distance == distance / 2 && size_t(i / distance) < attachments.size();
      if (!carries) {
        writeMessage(i, plainText(i), {});
        continue;
      }
      const SampleAttachment& attachment = attachments[size_t(i / distance)];
      const qint64 message = writeMessage(i, attachmentText(i), fileName(attachment));
      m_store.addAttachment(message, fileName(attachment), attachment.mimeType, attachment.size);
    }
  }

 private:
  qint64 writeMessage(int index, const QString& text, const QString& attachment) {
    // First one message from everybody; later some people write more than others.
    const int who = index < m_count ? index : qMin(m_random.below(m_count), m_random.below(m_count));
    MessageStore::Message message;
    message.handle = m_handles[size_t(who)];
    message.chats = {m_chats[size_t(who)]};
    if (index % 97 == 5) message.chats.push_back(m_group);  // to one person and to the group
    if (index % 61 == 17) message.chats = {m_group};        // only to the group
    message.text = text;
    message.fromMe = m_random.chance(45);
    message.date = dateOf(index);
    if (m_options.ios && message.fromMe && message.chats.front() == m_group) message.handle = 0;
    QStringList attachments;
    if (!attachment.isNull()) attachments.append(MessageStore::attachmentGuid(attachment));
    setBody(message, m_options, index, attachments);
    return m_store.addMessage(message);
  }

  qint64 dateOf(int index) {
    const qint64 step = qMax<qint64>(1, kDateSpan / qMax(1, m_options.messages));
    const qint64 jitter = m_random.below(static_cast<int>(qMin<qint64>(step, 1000000)));
    const qint64 seconds = kFirstDate + kDateSpan * index / qMax(1, m_options.messages) + jitter;
    return storedDate(m_options, seconds);
  }

  QString plainText(int index) {
    if (index % 83 == 40) return QString("");  // an empty text
    if (index % 89 == 41) return QString();
    return messageText(m_random);
  }

  /// Pictures mostly have no text: either none at all, or only the replacement character.
  QString attachmentText(int index) {
    if (index % 3 == 0 && !m_options.ios) return QString();
    if (index % 3 == 0 || index % 3 == 1) return QString(QChar::ObjectReplacementCharacter);
    return QString(QChar::ObjectReplacementCharacter) + messageText(m_random);
  }

  MessageStore& m_store;
  SeededRandom m_random;
  const DemoOptions& m_options;
  int m_count = 0;
  std::vector<qint64> m_handles, m_chats;
  qint64 m_group = 0;
};

/// A group with a name: own messages, long texts, two files in one message, answers, edits and tapbacks.
class GroupTalk {
 public:
  GroupTalk(MessageStore& store, const DemoOptions& options, const std::vector<qint64>& handles)
      : m_store(store), m_options(options), m_handles(handles) {
    m_chat = store.addChat("chat552710938461", QString::fromUtf8("Wanderfreunde 🏔"));
    for (size_t i = 0; i < kMembers; ++i) store.addMember(m_chat, m_handles[i]);
  }

  void write(const std::vector<SampleAttachment>& attachments) {
    const int first = say(1, QString::fromUtf8("Samstag um acht am Bahnhof? 🚉"));
    say(0, QString::fromUtf8("Ja! 🎒 𝔊ut, ich bringe die Karte mit"));
    const int bread = say(2, "Bringt jemand Brot mit?");
    say(0, "Ich", [&](Message& m) { m.dateEdited = dateOf(m_count + 1); });
    say(3, QString::fromUtf8("Packliste: Größe prüfen! ").repeated(12));
    const int story = say(1, QString::fromUtf8("Der Weg führt über den Grat, immer weiter. ").repeated(900));
    sendFiles(attachments);
    say(2, {}, [&](Message& m) { m.dateRetracted = dateOf(m_count + 1); });
    if (m_options.ios >= message_columns::kThreads) {
      say(0, "Welches Gleis?", [&](Message& m) { m.threadGuid = MessageStore::messageGuid(first); });
      say(1, "Gleis 7", [&](Message& m) { m.threadGuid = MessageStore::messageGuid(first); });
    }
    if (m_options.ios < message_columns::kAssociated) return;
    static const char* const kVerbs[] = {"Loved",      "Liked",      "Disliked",
                                         "Laughed at", "Emphasized", "Questioned"};
    int type = kFirstTapback;
    for (const char* verb : kVerbs) {
      react(type % 4, type, verb, type % 2 ? bread : first, type % 2 ? 23 : 29);
      ++type;
    }
    react(2, kFirstTapback + kTakenBack, "Removed a heart from", first, 29);
    say(3, "Bis Samstag!");
    react(0, kFirstTapback + 1, "Liked", story, 38700);
  }

 private:
  using Message = MessageStore::Message;
  static constexpr size_t kMembers = 3;
  static constexpr int kFirstTapback = 2000;
  static constexpr int kTakenBack = 1000;

  qint64 dateOf(int index) const {
    return storedDate(m_options, kFirstDate + kDateSpan + 60 * qint64{index});
  }

  Message messageOf(int who, const QString& text) {
    Message message;
    message.fromMe = who == 0;
    message.handle = who == 0 ? 0 : m_handles[size_t(who) - 1];
    message.text = text;
    message.date = dateOf(++m_count);
    message.chats = {m_chat};
    return message;
  }

  qint64 add(Message& message, const QStringList& attachments = {}) {
    setBody(message, m_options, m_count, attachments);
    return m_store.addMessage(message);
  }

  /// Adds a message. @param who 0 for the owner, else a member from 1 on. @return its count in the store.
  template <typename Change>
  int say(int who, const QString& text, const Change& change) {
    Message message = messageOf(who, text);
    change(message);
    add(message);
    return m_store.messageCount();
  }
  int say(int who, const QString& text) {
    return say(who, text, [](Message&) {});
  }

  void sendFiles(const std::vector<SampleAttachment>& attachments) {
    const QChar file(QChar::ObjectReplacementCharacter);
    Message message = messageOf(3, QString(file) + QString(file) + "Vom Gipfel");
    QStringList guids;
    for (const SampleAttachment& attachment : attachments)
      guids.append(MessageStore::attachmentGuid(fileName(attachment)));
    const qint64 row = add(message, guids);
    for (const SampleAttachment& attachment : attachments)
      m_store.addAttachment(row, fileName(attachment), attachment.mimeType, attachment.size);
  }

  void react(int who, int type, const QString& verb, int count, int length) {
    Message message = messageOf(who, verb + QString::fromUtf8(" “…”"));
    message.associatedGuid = "p:0/" + MessageStore::messageGuid(count);
    message.associatedType = type;
    message.associatedLength = length;
    add(message);
  }

  MessageStore& m_store;
  const DemoOptions& m_options;
  const std::vector<qint64>& m_handles;
  qint64 m_chat = 0;
  int m_count = 0;
};

}  // namespace

void addMessages(BackupBuilder& backup, const DemoOptions& options, const People& people,
                 const std::vector<SampleAttachment>& attachments, DemoSummary& summary) {
  const bool isNew = options.layout == BackupBuilder::Layout::Db;
  MessageStore store(reserve(backup, store_places::messages()), isNew, options.ios);
  Talks talks(store, options, people);
  const auto ofGroup = attachments.end() - (options.ios ? kGroupAttachments : 0);
  talks.write({attachments.begin(), ofGroup});
  if (options.ios) GroupTalk(store, options, talks.handles()).write({ofGroup, attachments.end()});
  store.close();
  summary.conversations = talks.count();
  summary.messages = store.messageCount();
}

}  // namespace orvandel
