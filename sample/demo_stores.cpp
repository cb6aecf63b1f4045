// The stores of the demo backup: contacts, messages, calls, notes.

#include "sample/demo_parts.h"
#include "sample/people.h"
#include "sample/texts.h"

namespace orvandel {

namespace {

using Layout = BackupBuilder::Layout;

constexpr int kCalls = 60;
constexpr qint64 kDistance = kDateSpan / kCalls;  // between calls, in seconds

void addContacts(BackupBuilder& backup, const DemoOptions& options, const People& people) {
  const bool isNew = options.layout == Layout::Db;
  ContactsStore store(reserve(backup, store_places::contacts()), isNew, isNew);
  for (const ContactsStore::Person& person : people) store.add(person);
  store.close();
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
  constexpr int kFirstIosOfCallStore = 8;
  const bool isNew = options.layout == Layout::Db;
  const bool hasCallStore = options.ios ? options.ios >= kFirstIosOfCallStore : isNew;
  const StorePlace place = hasCallStore ? store_places::calls() : store_places::callsFallback();
  CallStore store(reserve(backup, place), isNew, options.ios && !hasCallStore);
  SeededRandom random(static_cast<quint32>(options.seed) + 30);
  for (int i = 0; i < kCalls; ++i) {
    const Outcome& outcome = kOutcomes[size_t(i) % std::size(kOutcomes)];
    const double duration = outcome.hasDuration ? random.between(1, 40000) / 8.0 : 0.0;
    const double date = double(kFirstDate + kDistance * i) + random.below(86400 * 4) / 4.0;
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

bool hasCloudNotes(const DemoOptions& options) {
  constexpr int kFirstIos = 9;
  return options.ios ? options.ios >= kFirstIos : options.layout == Layout::Db;
}

/// The text of a note: title, beginning, and for some what the snippet doesn't show.
QString wholeText(const NoteText& note) {
  QString text = note.title + '\n' + note.snippet;
  if (note.title.size() % 2 == 0)
    text += QString::fromUtf8("\n– weiter unten: Größe 42, 京都, 😀\n").repeated(8);
  return text;
}

int addNotes(BackupBuilder& backup, const DemoOptions& options) {
  const std::vector<NoteText> notes = sampleNotes();
  SeededRandom random(static_cast<quint32>(options.seed) + 40);
  if (!hasCloudNotes(options)) {
    NotesStore store(reserve(backup, store_places::notes()));
    for (size_t i = 0; i < notes.size(); ++i) {
      store.add(noteDate(static_cast<int>(i), random), notes[i].title, notes[i].body);
    }
    store.close();
  } else {
    NotesCloudStore store(reserve(backup, store_places::notesCloud()), options.layout == Layout::Db,
                          options.ios);
    store.addFolder("Notes");
    for (size_t i = 0; i < notes.size(); ++i) {
      const QString text = options.ios ? wholeText(notes[i]) : QString();
      store.add(noteDate(static_cast<int>(i), random), notes[i].title, notes[i].snippet, text);
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
  addMessages(backup, options, people, attachments, summary);
  summary.calls = addCalls(backup, options, people);
  summary.notes = addNotes(backup, options);
  if (options.ios) addChats(backup, options);
}

}  // namespace orvandel
