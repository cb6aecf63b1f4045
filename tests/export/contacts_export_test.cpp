#include <cerrno>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kCsvHead[] =
    "Name,PhoneOne,PhoneTwo,PhoneThree,PhoneFour,EmailOne,EmailTwo,EmailThree,EmailFour,Address,Url,Social,"
    "Company,Department,Job Title,Birthday,Note,\n";

class ContactsExport : public RecoveryTest {
 protected:
  void Add(const __PERSON_CONTENT__& person) { m_recovery.RecoveryContacts(&person); }
  std::string Folder() const { return Out() + "/Contacts/" + Stamp(); }
  std::string Page() const { return ReadFile(Folder() + "/Contacts.html"); }
};

struct ColumnsCase {
  const char* pszName;
  const char* pszValues;
  const char* pszColumns;
};

void PrintTo(const ColumnsCase& columns, std::ostream* pStream) {
  *pStream << testing::PrintToString(columns.pszValues);
}

class ContactColumns : public ContactsExport, public testing::WithParamInterface<ColumnsCase> {};

}  // namespace

TEST_F(ContactsExport, PageHasARowOfSevenCellsForEachPersonInTheGivenOrder) {
  WriteTemplate("contacts", "{|title|}\r\n{|content|}<end>{|title|}\n");
  Begin();
  Add(Person("Zoe"));
  Add(Person("Ann Lee", "+1", "b@example.net"));
  __PERSON_CONTENT__ nobody;

  Add(nobody);
  const int nStatus = m_recovery.SaveContacts();

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(
      "iPhone's Contacts of Ann's phone\r\n"
      "\t<tr><td>Zoe</td><td>+49301</td><td>a@example.net</td><td>Road 1</td><td>example.net</td>"
      "<td>@ann</td><td>Mill</td></tr>\r\n"
      "\t<tr><td>Ann Lee</td><td>+1</td><td>b@example.net</td><td>Road 1</td><td>example.net</td>"
      "<td>@ann</td><td>Mill</td></tr>\r\n"
      "\t<tr><td></td><td></td><td></td><td></td><td></td><td></td><td></td></tr>\r\n"
      "<end>{|title|}\n",
      Page());
  EXPECT_THAT(Written(), ElementsAre(Folder() + "/Contacts.html"));
}

TEST_F(ContactsExport, LineFeedsOfPhonesAloneBecomeBreaks) {
  Begin();
  __PERSON_CONTENT__ person = Person("An\nn", "+1\n+2\n", "a\nb");
  person.strAddress = "Road 1\nTown";

  Add(person);
  m_recovery.SaveContacts();

  EXPECT_EQ(
      "<head>\n"
      "\t<tr><td>An\nn</td><td>+1<br />+2<br /></td><td>a\nb</td><td>Road 1\nTown</td><td>example.net</td>"
      "<td>@ann</td><td>Mill</td></tr>\r\n"
      "<tail>\n",
      Page());
}

TEST_F(ContactsExport, NothingIsEscaped) {
  Begin();

  Add(Person("<b>&\"{|content|}{|title|}\xFF", "<i>%s", ""));
  m_recovery.SaveContacts();

  EXPECT_EQ(
      "<head>\n"
      "\t<tr><td><b>&\"{|content|}{|title|}\xFF</td><td><i>%s</td><td></td><td>Road 1</td>"
      "<td>example.net</td><td>@ann</td><td>Mill</td></tr>\r\n"
      "<tail>\n",
      Page());
}

TEST_F(ContactsExport, CsvHasTheHeaderAndTheLastPersonAlone) {
  Begin();
  Add(Person("Zoe"));
  Add(Person("Bob"));

  Add(Person("Ann Lee"));

  EXPECT_EQ(kCsvHead + std::string("Ann Lee,+49301,,,,a@example.net,,,,Road 1,example.net,@ann,Mill, ,,,,\n"),
            m_recovery.GetContactsCsv());
}

TEST_P(ContactColumns, FillFourPlacesOfTheCsvAndOverrunWithMore) {
  Begin();

  Add(Person("Ann", GetParam().pszValues, ""));
  const std::string strOfPhones = m_recovery.GetContactsCsv();
  Add(Person("Ann", "", GetParam().pszValues));
  const std::string strOfMails = m_recovery.GetContactsCsv();

  const std::string strColumns = GetParam().pszColumns;
  const std::string strRest = "Road 1,example.net,@ann,Mill, ,,,,\n";
  EXPECT_EQ(kCsvHead + ("Ann," + strColumns) + ",,,," + strRest, strOfPhones);
  EXPECT_EQ(kCsvHead + std::string("Ann,,,,,") + strColumns + strRest, strOfMails);
}

INSTANTIATE_TEST_SUITE_P(Values, ContactColumns,
                         testing::Values(ColumnsCase{"None", "", ",,,,"}, ColumnsCase{"One", "1", "1,,,,"},
                                         ColumnsCase{"Two", "1\n2", "1,2,,,"},
                                         ColumnsCase{"Three", "1\n2\n3", "1,2,3,,"},
                                         ColumnsCase{"Four", "1\n2\n3\n4", "1,2,3,4,"},
                                         ColumnsCase{"Five", "1\n2\n3\n4\n5", "1,2,3,4,5,"},
                                         ColumnsCase{"Seven", "1\n2\n3\n4\n5\n6\n7", "1,2,3,4,5,6,7,"},
                                         ColumnsCase{"CommaInAValue", "1,2", "1,2,,,"},
                                         ColumnsCase{"LineFeedAlone", "\n", ",,,,"},
                                         ColumnsCase{"LineFeedAtTheEnd", "1\n", "1,,,,"},
                                         ColumnsCase{"EmptyValueBetween", "1\n\n3", "1,,3,,"},
                                         ColumnsCase{"CarriageReturnStays", "1\r\n2", "1\r,2,,,"}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(ContactsExport, CsvReachesNoFile) {
  Begin();
  Add(Person("Ann Lee"));

  m_recovery.SaveContactsCsv();
  m_recovery.SaveContacts();

  EXPECT_THAT(NamesIn(Folder()), ElementsAre("Contacts.html"));
}

TEST_F(ContactsExport, FolderIsMadeWithTheFirstPerson) {
  Begin();

  Add(Person("Ann Lee"));

  EXPECT_THAT(NamesIn(Out()), ElementsAre("Contacts"));
  EXPECT_THAT(NamesIn(Folder()), IsEmpty());
}

TEST_F(ContactsExport, PageWithoutPeopleHasHeadAndTail) {
  Begin();

  m_recovery.SaveContacts();

  EXPECT_EQ("<head>\n<tail>\n", Page());
}

TEST_F(ContactsExport, PageOfASecondRunInTheSameSecondReplacesTheFirst) {
  CRecovery second(FromNarrow(m_folder.Path("program")));
  BeginTwice(m_recovery, second);
  Add(Person("Zoe with a long name"));
  m_recovery.SaveContacts();
  const __PERSON_CONTENT__ person = Person("Ann Lee");

  second.RecoveryContacts(&person);
  second.SaveContacts();

  EXPECT_THAT(NamesIn(Folder()), ElementsAre("Contacts.html"));
  EXPECT_EQ(
      "<head>\n"
      "\t<tr><td>Ann Lee</td><td>+49301</td><td>a@example.net</td><td>Road 1</td><td>example.net</td>"
      "<td>@ann</td><td>Mill</td></tr>\r\n"
      "<tail>\n",
      Page());
}

TEST_F(ContactsExport, ManyPeopleAreAllOnThePage) {
  Begin();
  std::string strExpected = "<head>\n";

  for (int i = 0; i < 5000; ++i) {
    Add(Person("Person " + std::to_string(i)));
    strExpected += "\t<tr><td>Person " + std::to_string(i) +
                   "</td><td>+49301</td><td>a@example.net</td><td>Road 1</td><td>example.net</td>"
                   "<td>@ann</td><td>Mill</td></tr>\r\n";
  }
  m_recovery.SaveContacts();

  EXPECT_TRUE(strExpected + "<tail>\n" == Page());
}

TEST_F(ContactsExport, StatusOfAPageThatCanNotBeOpenedIsTheSystemsErrorNumber) {
  Begin();
  m_folder.Write("out/Contacts", "mine");

  const int nStatus = m_recovery.SaveContacts();

  EXPECT_EQ(ENOTDIR, nStatus);
  EXPECT_THAT(Failed(), ElementsAre(Folder() + "/Contacts.html"));
}
