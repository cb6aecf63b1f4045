#include "extract/notes.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <optional>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Sets the time zone of the process during the object's lifetime.
class TimeZone {
 public:
  explicit TimeZone(const char* pszZone) {
    if (const char* pszOld = getenv("TZ")) m_strOld = pszOld;
    setenv("TZ", pszZone, 1);
    tzset();
  }
  ~TimeZone() {
    if (m_strOld)
      setenv("TZ", m_strOld->c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }

 private:
  std::optional<std::string> m_strOld;
};

struct Note {
  QVariant date;
  QString qstrTitle, qstrText;
};

/// One of the two stores with its reader.
struct StoreKind {
  const char* pszName;
  void (*pfnWrite)(const QString& qstrPath, const std::vector<Note>& notes);
  int (CIPhoneNotes::*pfnRead)(const std::string& strPath, std::vector<__NOTES__>& notes);
};

void PrintTo(const StoreKind& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

template <typename NoteStore>
void WriteNotes(const QString& qstrPath, const std::vector<Note>& notes) {
  NoteStore store(qstrPath);
  for (const Note& note : notes) store.add(note.date, note.qstrTitle, note.qstrText);
  store.close();
}

const StoreKind kFirst = {"First", WriteNotes<NotesStore>, &CIPhoneNotes::GetNotesInfo};
const StoreKind kSecond = {"Second", WriteNotes<NotesCloudStore>, &CIPhoneNotes::GetNotesStoreInfo};

class Notes : public testing::TestWithParam<StoreKind> {
 protected:
  void Write(const std::vector<Note>& notes) { GetParam().pfnWrite(FromNarrow(Path()), notes); }

  int Read() {
    TimeZone zone("UTC0");
    return (CIPhoneNotes().*GetParam().pfnRead)(Path(), m_notes);
  }

  std::vector<std::string> Titles() const { return Column(m_notes, &__NOTES__::strTitle); }
  std::string Path() const { return m_folder.Path("notes.db"); }

  TemporaryFolder m_folder;
  std::vector<__NOTES__> m_notes;
};

struct DateCase {
  const char* pszName;
  const char* pszZone;
  QVariant date;
  const char* pszFirst;   // as the first store has it
  const char* pszSecond;  // as the second store has it
};

void PrintTo(const DateCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class NoteDate : public testing::TestWithParam<DateCase> {
 protected:
  std::string DateOf(const StoreKind& kind) {
    kind.pfnWrite(FromNarrow(m_folder.Path("notes.db")), {{GetParam().date, "title", "text"}});
    TimeZone zone(GetParam().pszZone);
    std::vector<__NOTES__> notes;
    (CIPhoneNotes().*kind.pfnRead)(m_folder.Path("notes.db"), notes);
    return notes.size() == 1 ? notes[0].strDate : "not one note";
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(Notes, NoteHasTitleAndText) {
  Write({{kNewYear2014, "Shopping", "Milk"}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(m_notes, SizeIs(1));
  EXPECT_EQ(0, m_notes[0].nDeleted);
  EXPECT_EQ(kNewYear2014Text, m_notes[0].strDate);
  EXPECT_EQ("Shopping", m_notes[0].strTitle);
  EXPECT_EQ("Milk", m_notes[0].strContent);
}

TEST_P(Notes, TitleAndTextAreDecodedAndCleaned) {
  Write({{kNewYear2014, "Fish &amp; Chips<br>", "<div>one</div><div>two &lt;br&gt;</div>"}});

  Read();

  ASSERT_THAT(m_notes, SizeIs(1));
  EXPECT_EQ("Fish & Chips\n", m_notes[0].strTitle);
  EXPECT_EQ("\none\ntwo \n", m_notes[0].strContent);
}

TEST_P(Notes, NoteWithOneOfItsTextsIsKept) {
  Write({{3, "title", QString()}, {2, QString(), "text"}, {1, "", "more"}});

  Read();

  EXPECT_THAT(Titles(), ElementsAre("title", "", ""));
  EXPECT_THAT(Column(m_notes, &__NOTES__::strContent), ElementsAre("", "text", "more"));
}

TEST_P(Notes, NoteWithoutAnyTextIsDropped) {
  Write({{4, QString(), QString()}, {3, "", ""}, {2, QString(), ""}, {1, "<div></div>", QString()}});

  Read();

  EXPECT_THAT(Titles(), ElementsAre("\n"));
}

// A title that is only an end tag is empty after cleaning.
TEST_P(Notes, NoteThatIsEmptyAfterTheCleanUpIsDropped) {
  Write({{1, "</div>", "&lt;/div&gt;"}});

  Read();

  EXPECT_THAT(m_notes, IsEmpty());
}

TEST_P(Notes, NewestComesFirst) {
  Write({{1000, "old", "x"}, {900000000, "new", "x"}, {500000, "middle", "x"}});

  Read();

  EXPECT_THAT(Titles(), ElementsAre("new", "middle", "old"));
}

TEST_P(Notes, ExistingNotesAreSortedWithTheNewOnes) {
  Write({{kNewYear2014, "store", "x"}});
  m_notes.resize(2);
  m_notes[0].strDate = "2000-01-01 00:00:00";
  m_notes[1].strDate = "2020-01-01 00:00:00";

  Read();

  EXPECT_THAT(Column(m_notes, &__NOTES__::strDate),
              ElementsAre("2020-01-01 00:00:00", kNewYear2014Text, "2000-01-01 00:00:00"));
}

TEST_P(Notes, StoreOfTheOtherKindGivesNothing) {
  const StoreKind& other = GetParam().pfnRead == kFirst.pfnRead ? kSecond : kFirst;
  other.pfnWrite(FromNarrow(Path()), {{kNewYear2014, "title", "text"}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_notes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stores, Notes, testing::Values(kFirst, kSecond),
                         [](const testing::TestParamInfo<StoreKind>& info) { return info.param.pszName; });

// Dates of the first store take month and day from a calendar that starts in 1970, whose leap years differ
// from those of one that starts in 2001.
TEST_P(NoteDate, OfTheFirstStoreIsLocalAndCountsItsDaysFrom1970) {
  const std::string strDate = DateOf(kFirst);

  EXPECT_EQ(GetParam().pszFirst, strDate);
}

TEST_P(NoteDate, OfTheSecondStoreIsCorrectAndInUtc) {
  const std::string strDate = DateOf(kSecond);

  EXPECT_EQ(GetParam().pszSecond, strDate);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, NoteDate,
    testing::Values(
        DateCase{"Zero", "UTC0", 0, "2001-01-01 00:00:00", "2001-01-01 00:00:00"},
        DateCase{"Null", "UTC0", QVariant(), "2001-01-01 00:00:00", ""},
        DateCase{"NullWestOfGreenwich", "EST5", QVariant(), "2000-12-31 19:00:00", ""},
        DateCase{"NewYear", "UTC0", kNewYear2014, "2014-01-01 00:00:00", "2014-01-01 00:00:00"},
        DateCase{"EastOfGreenwich", "MSK-3", kNewYear2014, "2014-01-01 03:00:00", "2014-01-01 00:00:00"},
        DateCase{"WestOfGreenwich", "EST5", kNewYear2014, "2013-12-31 19:00:00", "2014-01-01 00:00:00"},
        DateCase{"Summer", "CET-1CEST,M3.5.0,M10.5.0/3", 47217600, "2002-07-01 14:00:00",
                 "2002-07-01 12:00:00"},
        DateCase{"LeapDayOfACommonYear", "UTC0", 68169600, "2003-02-29 00:00:00", "2003-03-01 00:00:00"},
        DateCase{"DayBehindALeapDay", "UTC0", 99705600, "2004-02-28 00:00:00", "2004-02-29 00:00:00"},
        DateCase{"WholeSecondsStoredAsFloat", "UTC0", 410227261.0, "2014-01-01 00:01:01",
                 "2014-01-01 00:01:01"}),
    [](const testing::TestParamInfo<DateCase>& info) { return info.param.pszName; });

TEST(CloudNotes, OtherRowsWithATitleOrSnippetAreNotesToo) {
  TemporaryFolder folder;
  NotesCloudStore store(FromNarrow(folder.Path("notes.db")));
  store.addFolder("Notes");
  store.run("insert into ZICCLOUDSYNCINGOBJECT (Z_ENT, ZSNIPPET) values (5, 'an attachment')");
  store.close();
  std::vector<__NOTES__> notes;

  CIPhoneNotes().GetNotesStoreInfo(folder.Path("notes.db"), notes);

  EXPECT_THAT(Column(notes, &__NOTES__::strContent), ElementsAre("an attachment"));
}

TEST(CloudNotes, OtherDateColumnIsNotUsed) {
  TemporaryFolder folder;
  NotesCloudStore store(FromNarrow(folder.Path("notes.db")));
  store.run(
      "insert into ZICCLOUDSYNCINGOBJECT (ZTITLE1, ZCREATIONDATE, ZCREATIONDATE1) values ('a', 0, "
      "410227200)");
  store.close();
  std::vector<__NOTES__> notes;

  CIPhoneNotes().GetNotesStoreInfo(folder.Path("notes.db"), notes);

  EXPECT_THAT(Column(notes, &__NOTES__::strDate), ElementsAre(kNewYear2014Text));
}

TEST(NoteOrder, IsNewestFirst) {
  __NOTES__ older, newer;
  older.strDate = "2013-12-31 23:59:59";
  newer.strDate = kNewYear2014Text;

  EXPECT_TRUE(VectorCmp(newer, older));
  EXPECT_FALSE(VectorCmp(older, newer));
  EXPECT_FALSE(VectorCmp(newer, newer));
}
