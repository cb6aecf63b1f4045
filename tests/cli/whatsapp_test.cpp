#include <gmock/gmock.h>

#include "backup/scan.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/recovery_output.h"
#include "tests/extract/whatsapp_store.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

constexpr char kAnna[] = "4915112345678@s.whatsapp.net";

struct Place {
  const char* pszName;
  const char* pszDomain;
  const char* pszPath;
};

constexpr Place kToday = {"Today", "AppDomainGroup-group.net.whatsapp.WhatsApp.shared", "ChatStorage.sqlite"};
constexpr Place kEarly = {"Early", "AppDomain-net.whatsapp.WhatsApp", "Documents/ChatStorage.sqlite"};
constexpr Place kBusiness = {"Business", "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared",
                             "ChatStorage.sqlite"};

/// A store with one chat with Anna, in which she wrote one text.
void WriteStore(const QString& qstrPath, const QString& qstrText) {
  WhatsAppTestStore store(qstrPath);
  store.AddMessage(store.AddPerson(kAnna, "Anna"), double(kNewYear2014), qstrText);
  store.close();
}

class WhatsAppCommand : public testing::Test {
 protected:
  using Layout = BackupBuilder::Layout;

  BackupBuilder& Builder() {
    if (!m_pBuilder) {
      m_pBuilder = std::make_unique<BackupBuilder>(FromNarrow(Backup()), Layout::Db);
      m_pBuilder->writeInfo(BackupBuilder::Info());
    }
    return *m_pBuilder;
  }
  QString Reserve(const Place& place) { return Builder().reserveFile(place.pszDomain, place.pszPath); }

  QJsonObject Scan() {
    Builder().finish();
    return RunCommand({"scan", "--json", Backup()}).Object();
  }
  std::string ScannedText() {
    const QJsonArray chats = Scan()["whatsapp"].toArray();
    return chats[0]["messages"][0]["text"].toString().toStdString();
  }

  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  TemporaryFolder m_folder;
  std::unique_ptr<BackupBuilder> m_pBuilder;
};

/// The path of the line about a file. @param strEnd of the path.
std::string PathEndingWith(const CommandResult& result, const std::string& strEnd) {
  for (const std::string& strLine : result.Lines()) {
    const bool bFound = strLine.size() >= strEnd.size() &&
                        strLine.compare(strLine.size() - strEnd.size(), strEnd.size(), strEnd) == 0;
    if (bFound) return strLine.substr(strLine.find('\t') + 1);
  }
  ADD_FAILURE() << "no line about " << strEnd;
  return {};
}

class WhatsAppPlace : public WhatsAppCommand, public testing::WithParamInterface<Place> {};

class WhatsAppOfAnyAge : public WhatsAppCommand, public testing::WithParamInterface<AnyAge> {};

void PrintTo(const Place& place, std::ostream* pStream) {
  *pStream << place.pszName;
}

}  // namespace

TEST_P(WhatsAppPlace, StoreIsFoundInEachPlace) {
  WriteStore(Reserve(GetParam()), "hello");

  EXPECT_EQ("hello", ScannedText());
}

INSTANTIATE_TEST_SUITE_P(All, WhatsAppPlace, testing::Values(kToday, kEarly, kBusiness),
                         [](const auto& info) { return info.param.pszName; });

TEST_F(WhatsAppCommand, FirstPlaceThatExistsCounts) {
  WriteStore(Reserve(kBusiness), "business");
  WriteStore(Reserve(kEarly), "early");
  WriteStore(Reserve(kToday), "today");

  EXPECT_EQ("today", ScannedText());
}

TEST_F(WhatsAppCommand, EntryWithoutItsFileIsPassedOver) {
  Builder().addEntry(kToday.pszDomain, kToday.pszPath);
  WriteStore(Reserve(kBusiness), "business");

  EXPECT_EQ("business", ScannedText());
}

TEST_F(WhatsAppCommand, BackupWithoutTheStoreHasNoChats) {
  EXPECT_EQ(QJsonArray(), Scan()["whatsapp"].toArray());
  EXPECT_THAT(RunCommand({"scan", Backup()}).Lines(), Contains("WhatsApp(0)"));
}

TEST_F(WhatsAppCommand, JsonHasChatsAndMessages) {
  WhatsAppTestStore store(Reserve(kToday));
  const qint64 nGroup = store.AddGroup("1-2@g.us", "Family");
  store.AddMemberMessage(nGroup, store.AddMember(nGroup, kAnna, "Anna"), 0, "hello");
  store.AddMember(nGroup, "447700900123@s.whatsapp.net", "Ben");
  store.AddMessage(nGroup, 1, "hi", true);
  store.close();

  EXPECT_EQ(R"([{"chatId":1,"messages":[)"
            R"({"date":"2001-01-01 00:00:01","fromMe":true,"name":"Family","phone":"","text":"hi"},)"
            R"({"date":"2001-01-01 00:00:00","fromMe":false,"name":"Anna","phone":"4915112345678",)"
            R"("text":"hello"}],"name":"Anna, Ben","phone":"","title":"Family"}])",
            JsonText(Scan()["whatsapp"]));
}

TEST_F(WhatsAppCommand, RecoveryWritesPageTextAndCsvOfEachChat) {
  WhatsAppTestStore store(Reserve(kToday));
  store.AddMessage(store.AddPerson(kAnna, "Anna"), double(kNewYear2014), "one, two");
  store.AddMessage(store.AddPerson("5@s.whatsapp.net", {}), 0, "hi", true);
  store.close();
  Builder().finish();

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  const std::string strAnna = "/WhatsApp Message/Anna(4915112345678)-STAMP/Anna(4915112345678)";
  const std::string strOther = "/WhatsApp Message/5(5)-STAMP/5(5)";
  EXPECT_THAT(Succeeded(result, Out()),
              UnorderedElementsAre(strAnna + ".txt", strAnna + ".csv", strAnna + ".html", strOther + ".txt",
                                   strOther + ".csv", strOther + ".html"));
  EXPECT_EQ(
      "Chats,Name/Phone,Date,Type,Content\n"
      "Anna,4915112345678,2014-01-01 00:00:00,Received,one, two\n",
      ReadFile(PathEndingWith(result, "Anna(4915112345678).csv")));
  EXPECT_EQ("        To: 5(5)\n      Data: 2001-01-01 00:00:00\n   Content: hi\n\n",
            ReadFile(PathEndingWith(result, "5(5).txt")));
}

TEST_F(WhatsAppCommand, OnlyReadsThemWhenTheyAreWanted) {
  WriteFile(ToNarrow(Reserve(kToday)), std::string(4096, 'x'));
  Builder().finish();

  EXPECT_EQ(0, RunCommand({"recover", "--only", "Contacts", Backup(), Out()}).nExitStatus);
  EXPECT_EQ(4, RunCommand({"recover", "--only", "WhatsApp", Backup(), Out()}).nExitStatus);
}

TEST_F(WhatsAppCommand, DamagedStoreIsReportedByItsName) {
  WriteFile(ToNarrow(Reserve(kToday)), std::string(4096, 'x'));
  Builder().finish();

  const CommandResult result = RunCommand({"scan", Backup()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("7c/7c7fba66680ef796b916b067077cc246adacf01d"));
}

TEST_F(WhatsAppCommand, NamesThatArePathsStayInTheDestination) {
  WhatsAppTestStore store(Reserve(kToday));
  for (const char* pszName : {"../../../escaped", "/etc/passwd", "..", "a/../../b", ""})
    store.AddMessage(store.AddPerson({}, pszName), 1, "hello");
  const qint64 nGroup = store.AddGroup("1-2@g.us", "../../escaped");
  for (const char* pszName : {"../x", "../y"}) store.AddMember(nGroup, "1@s.whatsapp.net", pszName);
  store.AddMessage(nGroup, 1, "hello");
  store.close();
  Builder().finish();

  const CommandResult result = RunCommand({"recover", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.LastLine(), HasSubstr(" 0 failed"));
  EXPECT_EQ(6u * 3 + 1, Succeeded(result, Out()).size());
  EXPECT_THAT(NamesIn(m_folder.Path()), UnorderedElementsAre("backup", "out"));
}

TEST_F(WhatsAppCommand, ScanOfTheWindowLeavesTheListEmpty) {
  WriteStore(Reserve(kToday), "hello");
  Builder().finish();
  __BACK_FILE_INFO__ info = InfoOf(Backup());
  CIphoneBackupFile session;
  BackupRecords records(session.GetMessageMap());
  std::unique_ptr<IPhoneRecoveryParse> pParser;

  ScanBackup(info, session, pParser, records, ScanSteps());

  EXPECT_TRUE(records.m_mapWhatsApp.empty());
  EXPECT_TRUE(session.GetWhatsAppMap().empty());
}

TEST_F(WhatsAppCommand, MarkupIsWrittenAsItIsBehindThePolicyOfThePage) {
  const std::string strMarkup = "</div><script>alert(1)</script><img src=x onerror=alert(1)>";
  WhatsAppTestStore store(Reserve(kToday));
  store.AddMessage(store.AddPerson(kAnna, "<b>Anna</b>"), 0, QString::fromStdString(strMarkup));
  store.close();
  Builder().finish();

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  const std::string strPage = ReadFile(PathEndingWith(result, ".html"));
  EXPECT_THAT(strPage, AllOf(HasSubstr(strMarkup), HasSubstr("Content-Security-Policy")));
  EXPECT_LT(strPage.find("Content-Security-Policy"), strPage.find("<b>Anna</b>"));
}

TEST_F(WhatsAppCommand, GroupOfOneMemberHasTheMemberAsLabel) {
  WhatsAppTestStore store(Reserve(kToday));
  const qint64 nGroup = store.AddGroup("1-2@g.us", "Family");
  store.AddMember(nGroup, kAnna, "Anna");
  store.AddMessage(nGroup, 1, "hello");
  store.close();
  Builder().finish();

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_THAT(Succeeded(result, Out()), Contains("/WhatsApp Message/Anna()-STAMP/Anna().txt"));
}

TEST_F(WhatsAppCommand, IndexListsTheChats) {
  WriteStore(Reserve(kToday), "hello");
  Builder().finish();

  RunCommand({"recover", Backup(), Out()});

  EXPECT_THAT(ReadFile(Out() + "/index.html"),
              AllOf(HasSubstr("<bdi>Anna</bdi>"), HasSubstr("<b>1</b> <span>WhatsApp</span>")));
}

TEST_P(WhatsAppOfAnyAge, ChatsAreReadInPlace) {
  const BackupAge& age = GetParam().age;
  BackupBuilder backup(FromNarrow(Backup()), age.layout);
  if (GetParam().bEncrypted) {
    Encryption encryption;
    encryption.age = age.age;
    encryption.password = kPassword;
    encryption.rounds = 10;
    backup.encrypt(encryption);
  }
  backup.writeInfo(BackupBuilder::Info());
  WriteStore(backup.reserveFile(kToday.pszDomain, kToday.pszPath), "hello");
  backup.finish();

  const CommandResult result = RunWithPassword(m_folder.Path(), {"scan", "--json", Backup()});

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  const QJsonArray chats = result.Object()["whatsapp"].toArray();
  EXPECT_EQ("hello", chats[0]["messages"][0]["text"].toString().toStdString());
}

INSTANTIATE_TEST_SUITE_P(All, WhatsAppOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);
