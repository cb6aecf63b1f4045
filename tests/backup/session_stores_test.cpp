#include <sys/stat.h>

#include <gmock/gmock.h>

#include "backup/session.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

/// A kind of backup. The folder with the stores of an encrypted one is always flat.
struct BackupKind {
  const char* pszName;
  Layout manifest;
  bool bEncrypted;
};

void PrintTo(const BackupKind& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class SessionStores : public testing::TestWithParam<BackupKind> {
 protected:
  SessionStores()
      : m_manifest(FromNarrow(m_folder.Path("backup")), GetParam().manifest),
        m_files(FromNarrow(m_folder.Path(GetParam().bEncrypted ? "decrypted" : "backup")),
                GetParam().bEncrypted ? Layout::Mbdb : GetParam().manifest) {
    m_manifest.addEntry("HomeDomain", "Library/nothing");
    m_manifest.finish();
  }

  /// The path under which the reader expects a store.
  QString PlaceOf(const StorePlace& place) { return Reserve(m_files, place); }

  bool HasNewContacts() const { return GetParam().manifest == Layout::Db; }

  void AddContact(const QString& qstrName, const QString& qstrPhone) {
    ContactsStore store(PlaceOf(store_places::contacts()), HasNewContacts());
    store.add({qstrName, {}, {}, qstrPhone, {}, {}, {}});
    store.close();
  }

  void AddCall(const StorePlace& place, const QString& qstrNumber) {
    CallStore store(PlaceOf(place));
    store.add(1, 60, qstrNumber, double(kNewYear2014));
    store.close();
  }

  void AddNote(const QString& qstrTitle) {
    NotesStore store(PlaceOf(store_places::notes()));
    store.add(kNewYear2014, qstrTitle, QString());
    store.close();
  }

  void AddCloudNote(const QString& qstrTitle) {
    NotesCloudStore store(PlaceOf(store_places::notesCloud()));
    store.add(kNewYear2014, qstrTitle, QString());
    store.close();
  }

  void AddMessage(const QString& qstrSender, const QString& qstrText) {
    MessageStore store(PlaceOf(store_places::messages()));
    store.addMessage(store.addHandle(qstrSender), qstrText, kNewYear2014, false, {store.addChat(qstrSender)});
    store.close();
  }

  void Open() {
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"), GetParam().bEncrypted);
    m_session.Init(&info);
    m_session.Scan(GetParam().bEncrypted ? m_files.folder() : QString());
  }

  std::vector<std::string> CallNumbers() {
    std::vector<__CALLHISTORY__> calls;
    m_session.GetBackupFileHistoryCallInfo(calls);
    return Column(calls, &__CALLHISTORY__::strAddress);
  }

  std::vector<std::string> NoteTitles() {
    std::vector<__NOTES__> notes;
    m_session.GetBackupFileNotes(notes);
    return Column(notes, &__NOTES__::strTitle);
  }

  TemporaryFolder m_folder;
  BackupBuilder m_manifest;
  BackupBuilder m_files;
  CIphoneBackupFile m_session;
};

}  // namespace

TEST_P(SessionStores, ContactsComeInTheColumnsOfTheBackup) {
  AddContact("Ann", "+49301");
  Open();
  std::vector<__PERSON_CONTENT__> people;

  const int nStatus = m_session.GetBackupFilePersonContent(people);

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(people, SizeIs(1));
  EXPECT_EQ("Ann", people[0].strName);
  EXPECT_EQ("+49301", people[0].strPhone);
  EXPECT_EQ(1u, m_session.GetMaxContactId());
}

TEST_P(SessionStores, ContactsInTheColumnsOfTheOtherKindAreNotRead) {
  ContactsStore store(PlaceOf(store_places::contacts()), !HasNewContacts());
  store.add({"Ann", {}, {}, "+49301", {}, {}, {}});
  store.close();
  Open();
  std::vector<__PERSON_CONTENT__> people;

  const int nStatus = m_session.GetBackupFilePersonContent(people);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(people, IsEmpty());
  EXPECT_EQ(0u, m_session.GetMaxContactId());
}

TEST_P(SessionStores, MessagesComeWithTheirNames) {
  AddMessage("+49301", "hello");
  AddContact("Ann", "+49301");
  Open();
  MessageMap messages;

  const int nStatus = m_session.GetBackupFileMessageInfo(messages);

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(messages[1], SizeIs(1));
  EXPECT_EQ("hello", messages[1][0].strText);
  EXPECT_EQ("Ann", messages[1][0].strContactName);
  EXPECT_EQ(1u, m_session.GetMaxMessageId());
}

TEST_P(SessionStores, MessagesStayInTheSessionForTheExport) {
  AddMessage("+49301", "hello");
  Open();
  MessageMap messages = {{99, std::vector<__MESSAGE_INFO__>(1)}};

  m_session.GetBackupFileMessageInfo(messages);

  ASSERT_THAT(m_session.GetMessageMap(), SizeIs(1));
  EXPECT_EQ("hello", m_session.GetMessageMap()[1][0].strText);
  ASSERT_THAT(messages, SizeIs(1)) << "the caller's map is replaced, not added to";
  EXPECT_EQ("hello", messages[1][0].strText);
}

TEST_P(SessionStores, MessagesMayGoIntoTheSessionsOwnMap) {
  AddMessage("+49301", "hello");
  Open();

  m_session.GetBackupFileMessageInfo(m_session.GetMessageMap());

  ASSERT_THAT(m_session.GetMessageMap(), SizeIs(1));
  EXPECT_THAT(m_session.GetMessageMap()[1], SizeIs(1));
}

TEST_P(SessionStores, CallsComeFromTheFirstChoice) {
  AddCall(store_places::calls(), "first");
  AddCall(store_places::callsFallback(), "fallback");
  Open();

  const std::vector<std::string> numbers = CallNumbers();

  EXPECT_THAT(numbers, ElementsAre("first"));
}

TEST_P(SessionStores, CallsComeFromTheFallbackWhereTheFirstChoiceIsMissing) {
  AddCall(store_places::callsFallback(), "fallback");
  Open();

  const std::vector<std::string> numbers = CallNumbers();

  EXPECT_THAT(numbers, ElementsAre("fallback"));
}

TEST_P(SessionStores, FirstChoiceThatIsNoCallStoreStillKeepsTheFallbackOut) {
  WriteFile(ToNarrow(PlaceOf(store_places::calls())), "no store at all");
  AddCall(store_places::callsFallback(), "fallback");
  Open();

  const std::vector<std::string> numbers = CallNumbers();

  EXPECT_THAT(numbers, IsEmpty());
}

TEST_P(SessionStores, FallbackOfOlderDevicesWithoutTheTableGivesNoCalls) {
  SampleStore store(PlaceOf(store_places::callsFallback()), false);
  store.run("create table call (ROWID integer primary key, address text, date integer, duration integer)");
  store.run("insert into call values (1, '+49301', 1388534400, 60)");
  store.close();
  Open();

  const std::vector<std::string> numbers = CallNumbers();

  EXPECT_THAT(numbers, IsEmpty());
}

// The call reader always reads the columns of newer contacts stores.
TEST_P(SessionStores, CallsHaveNamesOnlyInABackupWithManifestDb) {
  AddCall(store_places::calls(), "+493012345");
  AddContact("Ann", "+493012345");
  Open();
  std::vector<__CALLHISTORY__> calls;

  m_session.GetBackupFileHistoryCallInfo(calls);

  ASSERT_THAT(calls, SizeIs(1));
  EXPECT_EQ(HasNewContacts() ? "Ann" : "", calls[0].strName);
}

TEST_P(SessionStores, NotesOfTheFirstStoreKeepTheSecondOut) {
  AddNote("first");
  AddCloudNote("second");
  Open();

  const std::vector<std::string> titles = NoteTitles();

  EXPECT_THAT(titles, ElementsAre("first"));
}

// A second store that can't be read would be reported if it were opened.
TEST_P(SessionStores, SecondNotesStoreIsNotEvenOpenedBesideNotesOfTheFirst) {
  AddNote("first");
  AddCloudNote("second");
  Open();
  WriteFile(ToNarrow(m_session.GetLayout().PathOf(kNotesCloudStore)), "no store at all");
  ProblemRecorder recorder;

  const std::vector<std::string> titles = NoteTitles();

  EXPECT_THAT(titles, ElementsAre("first"));
  EXPECT_TRUE(recorder.Problems().empty());
}

TEST_P(SessionStores, NotesComeFromTheSecondStoreWhereTheFirstIsMissing) {
  AddCloudNote("second");
  Open();

  const std::vector<std::string> titles = NoteTitles();

  EXPECT_THAT(titles, ElementsAre("second"));
}

TEST_P(SessionStores, FirstStoreOfEmptyNotesLetsTheSecondIn) {
  AddNote("");
  AddCloudNote("second");
  Open();

  const std::vector<std::string> titles = NoteTitles();

  EXPECT_THAT(titles, ElementsAre("second"));
}

// The decision depends on the vector that the caller passes.
TEST_P(SessionStores, NotesThatTheCallerHasAlreadyKeepTheSecondStoreOut) {
  AddCloudNote("second");
  Open();
  std::vector<__NOTES__> notes(1);

  m_session.GetBackupFileNotes(notes);

  EXPECT_THAT(notes, SizeIs(1));
}

TEST_P(SessionStores, BackupWithoutAnyStoreGivesNothingAndGetsNothing) {
  Open();
  const std::string strFiles = ToNarrow(m_files.folder());
  const std::vector<std::string> before = NamesIn(strFiles);
  MessageMap messages;
  std::vector<__PERSON_CONTENT__> people;

  const int nMessages = m_session.GetBackupFileMessageInfo(messages);
  const int nPeople = m_session.GetBackupFilePersonContent(people);

  EXPECT_EQ(0, nMessages);
  EXPECT_EQ(0, nPeople);
  EXPECT_THAT(messages, IsEmpty());
  EXPECT_THAT(people, IsEmpty());
  EXPECT_THAT(CallNumbers(), IsEmpty());
  EXPECT_THAT(NoteTitles(), IsEmpty());
  EXPECT_EQ(before, NamesIn(strFiles));
}

TEST_P(SessionStores, AreReadWithoutAManifestEntryOfTheirs) {
  AddContact("Ann", "+49301");
  Open();
  ASSERT_THAT(m_session.GetManifest(), SizeIs(1));
  std::vector<__PERSON_CONTENT__> people;

  m_session.GetBackupFilePersonContent(people);

  EXPECT_THAT(people, SizeIs(1));
}

TEST_P(SessionStores, CopyOfTheMessageStoreIsEqualAndOpenToAll) {
  AddMessage("+49301", "hello");
  Open();
  const std::string strCopy = m_folder.MakeFolder("out") + "/sms.db";

  const int nStatus = m_session.RecoverySMSMessage(strCopy.c_str());

  struct stat attributes;
  ASSERT_EQ(0, stat(strCopy.c_str(), &attributes));
  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0777u, attributes.st_mode & 07777);
  EXPECT_TRUE(ReadFile(ToNarrow(PlaceOf(store_places::messages()))) == ReadFile(strCopy));
}

TEST_P(SessionStores, CopyOfTheContactsStoreIsEqualAndOpenToAll) {
  AddContact("Ann", "+49301");
  Open();
  const std::string strCopy = m_folder.MakeFolder("out") + "/Contacts.db";

  const int nStatus = m_session.RecoveryPersonContacts(strCopy.c_str());

  struct stat attributes;
  ASSERT_EQ(0, stat(strCopy.c_str(), &attributes));
  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0777u, attributes.st_mode & 07777);
  EXPECT_TRUE(ReadFile(ToNarrow(PlaceOf(store_places::contacts()))) == ReadFile(strCopy));
}

TEST_P(SessionStores, CopyOfAMissingStoreCreatesNothingAndSucceeds) {
  Open();
  const std::string strOut = m_folder.MakeFolder("out");

  const int nMessages = m_session.RecoverySMSMessage((strOut + "/sms.db").c_str());
  const int nContacts = m_session.RecoveryPersonContacts((strOut + "/Contacts.db").c_str());

  EXPECT_EQ(0, nMessages);
  EXPECT_EQ(0, nContacts);
  EXPECT_THAT(NamesIn(strOut), IsEmpty());
}

TEST_P(SessionStores, CopyDoesNotReplaceAFileThatIsThere) {
  AddContact("Ann", "+49301");
  Open();
  const std::string strOther = m_folder.Write("out/Contacts.db", "somebody's");

  const int nStatus = m_session.RecoveryPersonContacts(strOther.c_str());

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("somebody's", ReadFile(strOther));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SessionStores,
                         testing::Values(BackupKind{"Flat", Layout::Mbdb, false},
                                         BackupKind{"TwoLevel", Layout::Db, false},
                                         BackupKind{"EncryptedFlat", Layout::Mbdb, true},
                                         BackupKind{"EncryptedTwoLevel", Layout::Db, true}),
                         [](const testing::TestParamInfo<BackupKind>& info) { return info.param.pszName; });
