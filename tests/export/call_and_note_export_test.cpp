#include <cerrno>
#include <filesystem>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CallAndNoteExport : public RecoveryTest {
 protected:
  void Add(const __CALLHISTORY__& call) { m_recovery.RecoveryCallHistory(&call); }
  void Add(const __NOTES__& note) { m_recovery.RecoveryNotes(&note); }
  std::string CallPath() const { return Out() + "/CallHistory/CallHistory_" + Stamp() + ".html"; }
  std::string NotesPath() const { return Out() + "/Notes/Notes_" + Stamp() + ".html"; }
};

struct CallCase {
  const char* pszName;
  int nAnswered;
  int nDuration;
  const char* pszType;
  const char* pszLength;
};

void PrintTo(const CallCase& call, std::ostream* pStream) {
  *pStream << "answered " << call.nAnswered << ", " << call.nDuration << " s";
}

class CallRow : public CallAndNoteExport, public testing::WithParamInterface<CallCase> {};

}  // namespace

TEST_F(CallAndNoteExport, PageOfCallsHasARowForEachInTheGivenOrder) {
  WriteTemplate("CallHistory", "{|title|}\r\n{|content|}<end>{|title|}\n");
  Begin();
  Add(Call(1, 65));

  Add(Call(0, 0, ""));
  const int nStatus = m_recovery.SaveCallHistory();

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(
      "iPhone's Call History of Ann's phone\r\n"
      "\t<tr><td>Ann Lee</td><td>+49301</td><td>2014-01-01 00:00:00</td><td>Incoming</td><td>0</td></tr>\r\n"
      "\t<tr><td></td><td>+49301</td><td>2014-01-01 00:00:00</td><td>Outgoing</td><td>Canceled</td></tr>\r\n"
      "<end>{|title|}\n",
      ReadFile(CallPath()));
  EXPECT_THAT(Written(), ElementsAre(CallPath()));
}

TEST_P(CallRow, HasTypeAndLength) {
  Begin();

  Add(Call(GetParam().nAnswered, GetParam().nDuration));
  m_recovery.SaveCallHistory();

  EXPECT_EQ(std::string("<head>\n\t<tr><td>Ann Lee</td><td>+49301</td><td>2014-01-01 00:00:00</td><td>") +
                GetParam().pszType + "</td><td>" + GetParam().pszLength + "</td></tr>\r\n<tail>\n",
            ReadFile(CallPath()));
}

INSTANTIATE_TEST_SUITE_P(Calls, CallRow,
                         testing::Values(CallCase{"Missed", 1, 0, "Incoming", "Missed"},
                                         CallCase{"Canceled", 0, 0, "Outgoing", "Canceled"},
                                         CallCase{"MissedWithAnyMark", -1, 0, "Incoming", "Missed"},
                                         CallCase{"OneSecond", 1, 1, "Incoming", "0"},
                                         CallCase{"AMinute", 1, 65, "Incoming", "0"},
                                         CallCase{"OutgoingAnHour", 0, 3600, "Outgoing", "0"},
                                         CallCase{"JustBelowTenHours", 1, 35999, "Incoming", "0"},
                                         CallCase{"TenHours", 1, 36000, "Incoming", "1"},
                                         CallCase{"TwentyHours", 0, 72000, "Outgoing", "2"},
                                         CallCase{"NinetyNineHours", 1, 359999, "Incoming", "9"},
                                         CallCase{"HundredHours", 1, 360000, "Incoming", "1"},
                                         CallCase{"ThreeHundredHours", 1, 1080000, "Incoming", "3"}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(CallAndNoteExport, PageOfNotesHasARowForEachInTheGivenOrder) {
  WriteTemplate("Notes", "{|title|}\r\n{|content|}<end>{|title|}\n");
  Begin();
  Add(Note("Milk", "two\nlines"));

  Add(Note("", ""));
  const int nStatus = m_recovery.SaveNotes();

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(
      "iPhone's Notes of Ann's phone\r\n"
      "\t<tr><td>Milk</td><td>2014-01-01 00:00:00</td><td>two\nlines</td></tr>\r\n"
      "\t<tr><td></td><td>2014-01-01 00:00:00</td><td></td></tr>\r\n"
      "<end>{|title|}\n",
      ReadFile(NotesPath()));
  EXPECT_THAT(Written(), ElementsAre(NotesPath()));
}

TEST_F(CallAndNoteExport, NothingIsEscaped) {
  Begin();

  Add(Note("<b>%s", "{|content|}{|title|}\xFF&"));
  Add(Call(1, 65, "<i>&\"%n"));
  m_recovery.SaveNotes();
  m_recovery.SaveCallHistory();

  EXPECT_EQ(
      "<head>\n\t<tr><td><b>%s</td><td>2014-01-01 00:00:00</td><td>{|content|}{|title|}\xFF&</td></tr>"
      "\r\n<tail>\n",
      ReadFile(NotesPath()));
  EXPECT_EQ(
      "<head>\n\t<tr><td><i>&\"%n</td><td>+49301</td><td>2014-01-01 00:00:00</td><td>Incoming</td>"
      "<td>0</td></tr>\r\n<tail>\n",
      ReadFile(CallPath()));
}

TEST_F(CallAndNoteExport, FoldersAreCreatedWithTheFirstRow) {
  Begin();

  Add(Note("Milk", "two"));
  Add(Call(1, 65));

  EXPECT_THAT(NamesIn(Out()), ElementsAre("CallHistory", "Notes"));
  EXPECT_THAT(NamesIn(Out() + "/Notes"), IsEmpty());
  EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(CallAndNoteExport, RemovedFolderIsRecreated) {
  Begin();
  Add(Note("Milk", "two"));
  std::filesystem::remove_all(Out());

  const int nStatus = m_recovery.SaveNotes();

  EXPECT_EQ(0, nStatus);
  EXPECT_TRUE(Exists(NotesPath()));
}

TEST_F(CallAndNoteExport, PagesWithoutRowsHaveHeadAndTail) {
  Begin();

  m_recovery.SaveNotes();
  m_recovery.SaveCallHistory();

  EXPECT_EQ("<head>\n<tail>\n", ReadFile(NotesPath()));
  EXPECT_EQ("<head>\n<tail>\n", ReadFile(CallPath()));
}

TEST_F(CallAndNoteExport, PagesOfASecondRunInTheSameSecondReplaceTheFirst) {
  CRecovery second(FromNarrow(m_folder.Path("program")));
  BeginTwice(m_recovery, second);
  Add(Note("Milk", "much more than that"));
  Add(Call(1, 65, "Zoe with a long name"));
  m_recovery.SaveNotes();
  m_recovery.SaveCallHistory();

  second.SaveNotes();
  second.SaveCallHistory();

  EXPECT_EQ("<head>\n<tail>\n", ReadFile(NotesPath()));
  EXPECT_EQ("<head>\n<tail>\n", ReadFile(CallPath()));
  EXPECT_THAT(NamesIn(Out() + "/Notes"), ElementsAre("Notes_" + Stamp() + ".html"));
  EXPECT_THAT(NamesIn(Out() + "/CallHistory"), ElementsAre("CallHistory_" + Stamp() + ".html"));
}

TEST_F(CallAndNoteExport, StatusOfAPageThatCanNotBeOpenedIsTheSystemsErrorNumber) {
  Begin();
  m_folder.Write("out/Notes", "mine");
  m_folder.MakeFolder("out/CallHistory/CallHistory_" + Stamp() + ".html");

  const int nNotes = m_recovery.SaveNotes();
  const int nCalls = m_recovery.SaveCallHistory();

  EXPECT_THAT(nNotes, AnyOf(ENOTDIR, EEXIST)) << "of the page, or of its folder";
  EXPECT_EQ(EISDIR, nCalls);
  EXPECT_THAT(Failed(), ElementsAre(NotesPath(), CallPath()));
}

TEST_F(CallAndNoteExport, PageOnAFullDiskIsReportedAsFailedWithTheReason) {
  if (!Exists("/dev/full")) GTEST_SKIP() << "no full device here";
  Begin();
  m_folder.MakeFolder("out/Notes");
  std::filesystem::create_symlink("/dev/full", NotesPath());

  Add(Note("Milk", "two"));
  const int nStatus = m_recovery.SaveNotes();

  EXPECT_EQ(ENOSPC, nStatus);
  EXPECT_THAT(Failed(), ElementsAre(NotesPath()));
  EXPECT_EQ("No space left on device", Reason());
}
