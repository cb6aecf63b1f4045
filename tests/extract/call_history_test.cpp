#include "extract/call_history.h"

#include <gmock/gmock.h>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

struct Call {
  int nAnswered = 1;
  double dDuration = 60;
  QString qstrAddress = "+493012345";
  double dDate = double(kNewYear2014);
};

class Calls : public testing::Test {
 protected:
  void Write(const std::vector<Call>& calls) {
    CallStore store(FromNarrow(Path()));
    for (const Call& call : calls) store.add(call.nAnswered, call.dDuration, call.qstrAddress, call.dDate);
    store.close();
  }

  void WriteContacts(const std::vector<ContactsStore::Person>& people, bool bNewLayout = true) {
    ContactsStore store(FromNarrow(ContactsPath()), bNewLayout);
    for (const ContactsStore::Person& person : people) store.add(person);
    store.close();
  }

  int Read() { return CIPhoneHistoryCall().GetHistoryCallInfo(Path(), ContactsPath(), m_calls); }

  std::vector<std::string> Names() const { return Column(m_calls, &__CALLHISTORY__::strName); }
  std::string Path() const { return m_folder.Path("calls.db"); }
  std::string ContactsPath() const { return m_folder.Path("contacts.db"); }

  TemporaryFolder m_folder;
  std::vector<__CALLHISTORY__> m_calls;
};

struct MatchCase {
  const char* pszName;
  const char* pszAddress;
  const char* pszPhone;
  const char* pszExpected;
};

void PrintTo(const MatchCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class CallName : public Calls, public testing::WithParamInterface<MatchCase> {};

struct DurationCase {
  const char* pszName;
  double dStored;
  int nSeconds;
};

void PrintTo(const DurationCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class CallDuration : public Calls, public testing::WithParamInterface<DurationCase> {};

}  // namespace

TEST_F(Calls, CallHasTheStoredValues) {
  Write({{1, 75, "+493012345", double(kNewYear2014) + 3661}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(m_calls, SizeIs(1));
  EXPECT_EQ(0, m_calls[0].nDeleted);
  EXPECT_EQ(1, m_calls[0].nAnswered);
  EXPECT_EQ(75, m_calls[0].nDuration);
  EXPECT_EQ("2014-01-01 01:01:01", m_calls[0].strDate);
  EXPECT_EQ("+493012345", m_calls[0].strAddress);
  EXPECT_EQ("", m_calls[0].strName);
}

TEST_F(Calls, AnsweredIsKeptWhateverItIs) {
  Write({{0, 60, "a", 3}, {1, 60, "b", 2}, {5, 60, "c", 1}});

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::nAnswered), ElementsAre(0, 1, 5));
}

// As QVariant::toInt converts: to the nearest integer, halves away from zero.
TEST_P(CallDuration, BecomesAWholeNumberOfSeconds) {
  Write({{1, GetParam().dStored, "a", 1}});

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::nDuration), ElementsAre(GetParam().nSeconds));
}

INSTANTIATE_TEST_SUITE_P(
    Seconds, CallDuration,
    testing::Values(DurationCase{"None", 0, 0}, DurationCase{"LessThanHalfASecond", 0.4, 0},
                    DurationCase{"HalfASecond", 0.5, 1}, DurationCase{"Whole", 12, 12},
                    DurationCase{"JustAbove", 12.2, 12}, DurationCase{"Half", 12.5, 13},
                    DurationCase{"JustBelow", 12.9, 13}, DurationCase{"ADay", 86400, 86400},
                    DurationCase{"BelowZero", -1.4, -1}, DurationCase{"FurtherBelowZero", -1.6, -2}),
    [](const testing::TestParamInfo<DurationCase>& info) { return info.param.pszName; });

TEST_F(Calls, NewestComesFirst) {
  Write({{1, 1, "old", 1000}, {1, 1, "new", 900000000}, {1, 1, "middle", 500000}});

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::strAddress), ElementsAre("new", "middle", "old"));
}

TEST_F(Calls, TwoCallsInOneSecondAreBothListed) {
  Write({{1, 1, "a"}, {1, 1, "b"}});

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::strAddress), UnorderedElementsAre("a", "b"));
}

TEST_F(Calls, ExistingCallsAreSortedWithTheNewOnes) {
  Write({{1, 1, "store"}});
  m_calls.resize(2);
  m_calls[0].strDate = "2000-01-01 00:00:00";
  m_calls[1].strDate = "2020-01-01 00:00:00";

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::strDate),
              ElementsAre("2020-01-01 00:00:00", kNewYear2014Text, "2000-01-01 00:00:00"));
}

TEST_F(Calls, CallWithAWithheldNumberIsSkipped) {
  Write({{1, 60, QString()}, {1, 60, ""}, {1, 60, "1"}});

  Read();

  EXPECT_THAT(Column(m_calls, &__CALLHISTORY__::strAddress), ElementsAre("1"));
}

TEST_P(CallName, ComesFromAPhoneTextThatHoldsTheNumber) {
  Write({{1, 60, QString::fromUtf8(GetParam().pszAddress)}});
  WriteContacts({{"Ann", "Lee", {}, QString::fromUtf8(GetParam().pszPhone), {}, {}, {}}});

  Read();

  EXPECT_THAT(Names(), ElementsAre(GetParam().pszExpected));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, CallName,
    testing::Values(MatchCase{"Whole", "+493012345", "+493012345", "AnnLee"},
                    MatchCase{"SecondOfTheText", "+493012345", "+49301\n+493012345", "AnnLee"},
                    MatchCase{"FiveInsideALongerOne", "30123", "+493012345", "AnnLee"},
                    MatchCase{"FourInsideALongerOne", "3012", "+493012345", ""},
                    MatchCase{"FourThatAreEqual", "3012", "3012", ""},
                    MatchCase{"FourBytesOfThreeLetters", "ab\xC3\xA9", "ab\xC3\xA9", ""},
                    MatchCase{"FiveBytesOfFourLetters", "abc\xC3\xA9", "abc\xC3\xA9", "AnnLee"},
                    MatchCase{"StoredOneIsShorter", "+493012345", "12345", ""},
                    MatchCase{"BlanksAreNotSkipped", "+493012345", "+49 30 12345", ""},
                    MatchCase{"CountryIsNotTranslated", "03012345", "+493012345", ""},
                    MatchCase{"CaseCounts", "Ann@x.org", "ann@x.org", ""},
                    MatchCase{"PersonWithoutPhone", "+493012345", "", ""}),
    [](const testing::TestParamInfo<MatchCase>& info) { return info.param.pszName; });

TEST_F(Calls, FirstMatchingPersonOfTheStoreGivesTheName) {
  Write({{1, 60, "+493012345"}});
  WriteContacts({{"Other", {}, {}, "+49777", {}, {}, {}},
                 {"Zoe", {}, {}, "+493012345", {}, {}, {}},
                 {"Ann", {}, {}, "+493012345", {}, {}, {}}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("Zoe"));
}

TEST_F(Calls, NamelessPersonWhoMatchesFirstLeavesTheNameEmpty) {
  Write({{1, 60, "+493012345"}});
  WriteContacts({{{}, {}, "Acme", "+493012345", {}, {}, {}}, {"Ann", {}, {}, "+493012345", {}, {}, {}}});

  Read();

  EXPECT_THAT(Names(), ElementsAre(""));
}

TEST_F(Calls, ContactsOfTheOlderLayoutGiveNoNames) {
  Write({{1, 60, "+493012345"}});
  WriteContacts({{"Ann", {}, {}, "+493012345", {}, {}, {}}}, false);

  Read();

  EXPECT_THAT(Names(), ElementsAre(""));
}

TEST_F(Calls, ContactsThatAreNoStoreGiveNoNames) {
  Write({{1, 60, "+493012345"}});
  WriteFile(ContactsPath(), "Ann +493012345");

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre(""));
}

TEST(CallOrder, IsNewestFirst) {
  __CALLHISTORY__ older, newer;
  older.strDate = "2013-12-31 23:59:59";
  newer.strDate = kNewYear2014Text;

  EXPECT_TRUE(VectorCmp(newer, older));
  EXPECT_FALSE(VectorCmp(older, newer));
  EXPECT_FALSE(VectorCmp(newer, newer));
}
