// The stores of the demo backup: contacts, messages, calls, notes.

#include "sample/demo_parts.h"
#include "sample/people.h"
#include "sample/texts.h"

namespace orvandel {

namespace {

using Layout = BackupBuilder::Layout;
using People = std::vector<ContactsStore::Person>;

constexpr qint64 kFirstDate = 410227200;  // 2014-01-01T00:00:00Z, in seconds from 2001-01-01
constexpr qint64 kDateSpan = 94348800;    // 1092 days, to 2016-12-28
constexpr qint64 kNanoseconds = 1000000000;
constexpr int kFewestHandles = 30;
constexpr int kMostHandles = 2000;
constexpr int kMessagesPerHandle = 250;
constexpr int kCalls = 60;

QString reserve(BackupBuilder& backup, const StorePlace& place) {
  return backup.reserveFile(place.domain, place.relativePath);
}

QString unknownNumber(int index) {
  return QString("+1202555%1").arg(index, 4, 10, QChar('0'));
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

  void write(const std::vector<SampleAttachment>& attachments) {
    // Attachments are at regular intervals.
    const int distance = qMax(1, m_options.messages / qMax(1, static_cast<int>(attachments.size())));
    for (int i = 0; i < m_options.messages; ++i) {
      const bool carries = i % distance == distance / 2 && size_t(i / distance) < attachments.size();
      const qint64 message = writeMessage(i, carries ? attachmentText(i) : plainText(i));
      if (!carries) continue;
      const SampleAttachment& attachment = attachments[size_t(i / distance)];
      m_store.addAttachment(message, "~/" + attachment.path, attachment.mimeType, attachment.size);
    }
  }

 private:
  qint64 writeMessage(int index, const QString& text) {
    // First one message from everybody; later some people write more than others.
    const int who = index < m_count ? index : qMin(m_random.below(m_count), m_random.below(m_count));
    std::vector<qint64> chats{m_chats[size_t(who)]};
    if (index % 97 == 5) chats.push_back(m_group);  // to one person and to the group
    if (index % 61 == 17) chats = {m_group};        // only to the group
    return m_store.addMessage(m_handles[size_t(who)], text, dateOf(index), m_random.chance(45), chats);
  }

  qint64 dateOf(int index) {
    const qint64 step = qMax<qint64>(1, kDateSpan / qMax(1, m_options.messages));
    const qint64 jitter = m_random.below(static_cast<int>(qMin<qint64>(step, 1000000)));
    const qint64 seconds = kFirstDate + kDateSpan * index / qMax(1, m_options.messages) + jitter;
    return m_options.systemAge() == Encryption::Age::From102 ? seconds * kNanoseconds : seconds;
  }

  QString plainText(int index) {
    if (index % 83 == 40) return QString("");  // an empty text
    if (index % 89 == 41) return QString();
    return messageText(m_random);
  }

  /// Pictures mostly have no text: either none at all, or only the replacement character.
  QString attachmentText(int index) {
    if (index % 3 == 0) return QString();
    if (index % 3 == 1) return QString(QChar::ObjectReplacementCharacter);
    return QString(QChar::ObjectReplacementCharacter) + messageText(m_random);
  }

  MessageStore& m_store;
  SeededRandom m_random;
  const DemoOptions& m_options;
  int m_count = 0;
  std::vector<qint64> m_handles, m_chats;
  qint64 m_group = 0;
};

void addContacts(BackupBuilder& backup, const DemoOptions& options, const People& people) {
  const bool isNew = options.layout == Layout::Db;
  ContactsStore store(reserve(backup, store_places::contacts()), isNew, isNew);
  for (const ContactsStore::Person& person : people) store.add(person);
  store.close();
}

int addMessages(BackupBuilder& backup, const DemoOptions& options, const People& people,
                const std::vector<SampleAttachment>& attachments) {
  MessageStore store(reserve(backup, store_places::messages()), options.layout == Layout::Db);
  Talks talks(store, options, people);
  talks.write(attachments);
  store.close();
  return talks.count();
}

QString callAddress(int index, const People& people, SeededRandom& random) {
  if (index % 11 == 3) return QString();  // withheld
  if (index % 13 == 5) return "2255";
  if (index % 13 == 8) return "90182";  // part of a longer number in the address book
  if (people.empty() || index % 7 == 6) return unknownNumber(index);
  const QString phone = firstPhone(random.pick(people));
  if (phone.isNull()) return unknownNumber(index);
  return random.chance(25) ? phone.mid(3) : phone;
}

int addCalls(BackupBuilder& backup, const DemoOptions& options, const People& people) {
  struct Outcome {
    int answered, originated;
    bool hasDuration;
  };
  static const Outcome kOutcomes[] = {
      {1, 0, true},   // incoming
      {0, 1, true},   // outgoing
      {0, 0, false},  // missed
      {0, 1, false},  // cancelled
      {1, 0, true},  {0, 1, true}, {1, 0, false},
  };
  const bool isNew = options.layout == Layout::Db;
  const StorePlace place = isNew ? store_places::calls() : store_places::callsFallback();
  CallStore store(reserve(backup, place), isNew);
  SeededRandom random(static_cast<quint32>(options.seed) + 30);
  for (int i = 0; i < kCalls; ++i) {
    const Outcome& outcome = kOutcomes[size_t(i) % std::size(kOutcomes)];
    const double duration = outcome.hasDuration ? random.between(1, 40000) / 8.0 : 0.0;
    const double date = double(kFirstDate + kDateSpan / kCalls * i) + random.below(86400 * 4) / 4.0;
    const QString address = callAddress(i, people, random);
    store.add(outcome.answered, duration, address, date, outcome.originated);
  }
  store.close();
  return kCalls;
}

/// Dates of notes: integer and fractional seconds, and one note without a date.
QVariant noteDate(int index, SeededRandom& random) {
  if (index == 9) return {};
  return double(kFirstDate) + random.below(static_cast<int>(kDateSpan)) + (index % 2) * 0.625;
}

int addNotes(BackupBuilder& backup, const DemoOptions& options) {
  const std::vector<NoteText> notes = sampleNotes();
  SeededRandom random(static_cast<quint32>(options.seed) + 40);
  if (options.layout == Layout::Mbdb) {
    NotesStore store(reserve(backup, store_places::notes()));
    for (size_t i = 0; i < notes.size(); ++i) {
      store.add(noteDate(static_cast<int>(i), random), notes[i].title, notes[i].body);
    }
    store.close();
  } else {
    NotesCloudStore store(reserve(backup, store_places::notesCloud()), true);
    store.addFolder("Notes");
    for (size_t i = 0; i < notes.size(); ++i) {
      store.add(noteDate(static_cast<int>(i), random), notes[i].title, notes[i].snippet);
    }
    store.close();
  }
  return static_cast<int>(notes.size());
}

}  // namespace

void addStores(BackupBuilder& backup, const DemoOptions& options,
               const std::vector<SampleAttachment>& attachments, DemoSummary& summary) {
  SeededRandom random(static_cast<quint32>(options.seed) + 10);
  const People people = samplePeople(options.contacts, random);
  addContacts(backup, options, people);
  summary.conversations = addMessages(backup, options, people, attachments);
  summary.calls = addCalls(backup, options, people);
  summary.notes = addNotes(backup, options);
}

}  // namespace orvandel
