#include "extract/contacts.h"

#include <gmock/gmock.h>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Person = ContactsStore::Person;

namespace {

/// Reads stores of one of the two column layouts.
class Contacts : public testing::TestWithParam<bool> {
 protected:
  void Write(const std::vector<Person>& people) {
    ContactsStore store(FromNarrow(Path()), GetParam());
    for (const Person& person : people) store.add(person);
    store.close();
  }

  int Read(bool bNewLayout = GetParam()) {
    CIPhoneContacts reader;
    reader.bNewContactsLayout = bNewLayout;
    return reader.GetContactsInfo(Path(), m_people, m_nMaxId);
  }

  std::vector<std::string> Names() const { return Column(m_people, &__PERSON_CONTENT__::strName); }
  std::string Path() const { return m_folder.Path("contacts.db"); }

  TemporaryFolder m_folder;
  std::vector<__PERSON_CONTENT__> m_people;
  uint64_t m_nMaxId = 20000;
};

struct NameCase {
  const char *pszFirst, *pszLast, *pszName;
};

void PrintTo(const NameCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ContactName : public testing::TestWithParam<NameCase> {};

}  // namespace

TEST_P(Contacts, PersonHasAllTheirTexts) {
  Write({{"Ann", "Lee", "Acme", "+49301\n+49302", "a@example.org\nb@example.org", "Street 1",
          "http://x\nhttp://y"}});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(m_people, SizeIs(1));
  const __PERSON_CONTENT__& person = m_people[0];
  EXPECT_EQ(0, person.nDeleted);
  EXPECT_EQ("AnnLee", person.strName);
  EXPECT_EQ("Acme", person.strCompany);
  EXPECT_EQ("+49301\n+49302", person.strPhone);
  EXPECT_EQ("a@example.org\nb@example.org", person.strEmail);
  EXPECT_EQ("http://x\nhttp://y", person.strUrl);
  EXPECT_EQ("", person.strAddress);
  EXPECT_EQ("", person.strSocial);
}

TEST_P(Contacts, PersonWithoutAPhoneIsDroppedAndStillCountsForTheHighestId) {
  Write({{"Ann", {}, {}, "1", {}, {}, {}},
         {"Mail", "Only", "Acme", {}, "m@example.org", "Street", "http://x"},
         {}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("Ann"));
  EXPECT_EQ(3u, m_nMaxId);
}

TEST_P(Contacts, EmptyPhoneTextCountsAsNone) {
  Write({{"Ann", {}, {}, "", {}, {}, {}}});

  Read();

  EXPECT_THAT(m_people, IsEmpty());
}

TEST_P(Contacts, NamelessPersonIsSortedAmongTheOthers) {
  Write({{"Zoe", {}, {}, "1", {}, {}, {}},
         {{}, {}, "Acme", "2", {}, {}, {}},
         {"Ann", {}, {}, "3", {}, {}, {}}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("Ann", "No Name", "Zoe"));
}

TEST_P(Contacts, SortIgnoresCaseAndGoesByteByByte) {
  Write({{"bob", {}, {}, "1", {}, {}, {}},
         {"\u00C4nne", {}, {}, "1", {}, {}, {}},
         {"Zed", {}, {}, "1", {}, {}, {}},
         {"ALICE", {}, {}, "1", {}, {}, {}},
         {"Bobby", {}, {}, "1", {}, {}, {}}});

  Read();

  EXPECT_THAT(Names(), ElementsAre("ALICE", "bob", "Bobby", "Zed", "\xC3\x84nne"));
}

TEST_P(Contacts, ExistingPeopleAreSortedWithTheNewOnes) {
  Write({{"Mo", {}, {}, "1", {}, {}, {}}});
  m_people.resize(2);
  m_people[0].strName = "Zoe";
  m_people[1].strName = "Ann";

  Read();

  EXPECT_THAT(Names(), ElementsAre("Ann", "Mo", "Zoe"));
}

TEST_P(Contacts, HighestIdIsNotTheNumberOfRows) {
  Write({{"Ann", {}, {}, "1", {}, {}, {}}, {"Bo", {}, {}, "1", {}, {}, {}}});
  {
    // The last row doesn't have the highest id.
    SampleStore store(FromNarrow(m_folder.Path("other.db")), false);
    store.run(
        "create table ABPersonFullTextSearch_content (docid INTEGER, c0First, c1Last, c6Organization, "
        "c15Phone, "
        "c16Email, c19URL, c16Phone, c17Email, c20URL)");
    store.run(
        "insert into ABPersonFullTextSearch_content (docid, c15Phone, c16Phone) "
        "values (7, '1', '1'), (900, '1', '1'), (12, '1', '1')");
    store.close();
  }
  CIPhoneContacts reader;
  reader.bNewContactsLayout = GetParam();

  reader.GetContactsInfo(m_folder.Path("other.db"), m_people, m_nMaxId);

  EXPECT_EQ(900u, m_nMaxId);
  EXPECT_THAT(m_people, SizeIs(3));
}

TEST_P(Contacts, LayoutOfTheOtherKindGivesNoRowsAndNoHighestId) {
  Write({{"Ann", {}, {}, "1", {}, {}, {}}});
  m_people.resize(1);

  const int nStatus = Read(!GetParam());

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_people, SizeIs(1));
  EXPECT_EQ(0u, m_nMaxId);
}

TEST_P(Contacts, ProductVersionIsIgnored) {
  Write({{"Ann", {}, {}, "1", {}, {}, {}}});
  CIPhoneContacts reader;
  reader.bNewContactsLayout = GetParam();
  reader.nProductVersionAbove11 = 1;

  reader.GetContactsInfo(Path(), m_people, m_nMaxId);

  EXPECT_THAT(Names(), ElementsAre("Ann"));
}

INSTANTIATE_TEST_SUITE_P(Layouts, Contacts, testing::Bool(),
                         [](const auto& info) { return info.param ? "New" : "Old"; });

TEST_P(ContactName, JoinsFirstAndLastWithoutABlank) {
  TemporaryFolder folder;
  ContactsStore store(FromNarrow(folder.Path("a.db")), true);
  store.add({GetParam().pszFirst, GetParam().pszLast, "Acme", "1", {}, {}, {}});
  store.close();
  CIPhoneContacts reader;
  reader.bNewContactsLayout = true;
  std::vector<__PERSON_CONTENT__> people;
  uint64_t nMaxId = 0;

  reader.GetContactsInfo(folder.Path("a.db"), people, nMaxId);

  EXPECT_THAT(Column(people, &__PERSON_CONTENT__::strName), ElementsAre(GetParam().pszName));
}

INSTANTIATE_TEST_SUITE_P(Names, ContactName,
                         testing::Values(NameCase{"Ann", "Lee", "AnnLee"}, NameCase{"Ann", "", "Ann"},
                                         NameCase{"", "Lee", "Lee"}, NameCase{nullptr, nullptr, "No Name"},
                                         NameCase{"", "", "No Name"}, NameCase{"Ann ", " Lee", "Ann  Lee"},
                                         NameCase{" ", "", " "}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST(ContactOrder, IsAscendingAndIgnoresCase) {
  __PERSON_CONTENT__ upper, lower, later;
  upper.strName = "ANN";
  lower.strName = "ann";
  later.strName = "Bo";

  EXPECT_TRUE(VectorCmp(upper, later));
  EXPECT_FALSE(VectorCmp(later, lower));
  EXPECT_FALSE(VectorCmp(upper, lower));
  EXPECT_FALSE(VectorCmp(lower, upper));
}
