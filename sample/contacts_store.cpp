#include "sample/store_guid.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

// Property numbers in ABMultiValue.
constexpr int kPhone = 3;
constexpr int kEmail = 4;
constexpr int kAddress = 5;
constexpr int kUrl = 22;

const char* const kTextColumnsBefore =
    "docid INTEGER PRIMARY KEY, c0First, c1Last, c2Middle, c3FirstPhonetic, c4MiddlePhonetic, "
    "c5LastPhonetic, "
    "c6Organization, c7Department, c8Note, c9Birthday, c10JobTitle, c11Nickname, c12Prefix, c13Suffix, "
    "c14DisplayName, ";
const char* const kOldTextColumns =
    "c15Phone, c16Email, c17Address, c18SocialProfile, c19URL, c20RelatedNames, c21IM, c22Date";
const char* const kNewTextColumns =
    "c15OrganizationPhonetic, c16Phone, c17Email, c18Address, c19SocialProfile, c20URL, c21RelatedNames, "
    "c22IM, "
    "c23Date";

}  // namespace

ContactsStore::ContactsStore(const QString& path, bool newLayout, bool wal) : SampleStore(path, wal) {
  create(
      {"CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT, "
       "FirstPhonetic TEXT, MiddlePhonetic TEXT, LastPhonetic TEXT, Organization TEXT, Department TEXT, "
       "Note TEXT, Kind INTEGER, Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT, "
       "FirstSort TEXT, LastSort TEXT, CreationDate INTEGER, ModificationDate INTEGER, "
       "CompositeNameFallback TEXT, ExternalIdentifier TEXT, ExternalModificationTag TEXT, ExternalUUID "
       "TEXT, "
       "StoreID INTEGER, DisplayName TEXT, ExternalRepresentation BLOB, FirstSortSection TEXT, "
       "LastSortSection TEXT, FirstSortLanguageIndex INTEGER DEFAULT 2147483647, "
       "LastSortLanguageIndex INTEGER DEFAULT 2147483647, PersonLink INTEGER DEFAULT -1, ImageURI TEXT, "
       "IsPreferredName INTEGER DEFAULT 1, guid TEXT)",
       "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, "
       "identifier INTEGER, label INTEGER, value TEXT, guid TEXT)",
       "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT)",
       "CREATE TABLE ABMultiValueEntryKey (value TEXT)", "CREATE TABLE ABMultiValueLabel (value TEXT)",
       "CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, "
       "Type INTEGER)",
       "CREATE TABLE ABGroup (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, "
       "StoreID INTEGER)",
       "CREATE INDEX ABMultiValueEntryIndexRecordProperty ON ABMultiValue(record_id, property)",
       "INSERT INTO ABStore (ROWID, Name, Type) VALUES (0, 'Default', 0)",
       "INSERT INTO ABMultiValueEntryKey VALUES ('Street')",
       "INSERT INTO ABMultiValueLabel VALUES ('_$!<Mobile>!$_')"});
  run(QString("CREATE TABLE ABPersonFullTextSearch_content (%1%2)")
          .arg(kTextColumnsBefore, newLayout ? kNewTextColumns : kOldTextColumns));
  m_insertText = QString(
                     "INSERT INTO ABPersonFullTextSearch_content (c0First, c1Last, c6Organization, %1) "
                     "VALUES (?, ?, ?, ?, ?, ?, ?)")
                     .arg(newLayout ? "c16Phone, c17Email, c18Address, c20URL"
                                    : "c15Phone, c16Email, c17Address, c19URL");
}

qint64 ContactsStore::add(const Person& person) {
  static const QString kInsertPerson =
      "INSERT INTO ABPerson (First, Last, Organization, Kind, FirstSort, LastSort, CreationDate, "
      "ModificationDate, "
      "StoreID, guid) VALUES (?, ?, ?, ?, ?, ?, 410000000, 470000000, 0, ?)";
  const qint64 document = insert(m_insertText, {person.first, person.last, person.company, person.phone,
                                                person.email, person.address, person.url});
  const bool isCompany = person.first.isEmpty() && person.last.isEmpty() && !person.company.isEmpty();
  const qint64 row = insert(
      kInsertPerson, {person.first, person.last, person.company, isCompany ? 1 : 0, person.first.toUpper(),
                      person.last.toUpper(), storeGuid(QString("person %1").arg(document))});
  addValues(row, kPhone, person.phone);
  addValues(row, kEmail, person.email);
  addValues(row, kUrl, person.url);
  if (!person.address.isEmpty()) {
    // The value itself is empty; the text is in child rows.
    const qint64 parent =
        insert("INSERT INTO ABMultiValue (record_id, property, identifier, label) VALUES (?, ?, 0, 1)",
               {row, kAddress});
    insert("INSERT INTO ABMultiValueEntry (parent_id, key, value) VALUES (?, 1, ?)",
           {parent, person.address});
  }
  return document;
}

/// Adds a row for each line of a text.
void ContactsStore::addValues(qint64 person, int property, const QString& lines) {
  static const QString kInsert =
      "INSERT INTO ABMultiValue (record_id, property, identifier, label, value) VALUES (?, ?, ?, 1, ?)";
  int identifier = 0;
  for (const QString& value : lines.split('\n', Qt::SkipEmptyParts)) {
    insert(kInsert, {person, property, identifier++, value});
  }
}

}  // namespace orvandel
