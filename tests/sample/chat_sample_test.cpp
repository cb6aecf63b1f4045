// WhatsApp's store in samples.
#include <gmock/gmock.h>

#include "sample/chat_store.h"
#include "tests/sample/written_sample.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

/// Where the store and its media are in a version.
struct PlaceCase {
  int nIos;
  const char *pszStoreId, *pszDomain, *pszMediaParent;
};

void PrintTo(const PlaceCase& place, std::ostream* pStream) {
  *pStream << "iOS " << place.nIos;
}

constexpr char kTodayId[] = "7c7fba66680ef796b916b067077cc246adacf01d";
constexpr char kEarlyId[] = "1b6b187a1b60b9ae8b720c79e2c67f472bab09c0";
constexpr char kTodayDomain[] = "AppDomainGroup-group.net.whatsapp.WhatsApp.shared";
constexpr char kEarlyDomain[] = "AppDomain-net.whatsapp.WhatsApp";

class ChatSample : public testing::TestWithParam<PlaceCase> {
 protected:
  ChatSample() : m_sample(GetParam().nIos) {}

  std::string Store() const {
    const BackupBuilder backup(QString::fromStdString(m_sample.Path()), m_sample.Options().layout);
    return backup.filePath(GetParam().pszStoreId).toStdString();
  }
  Rows Read(const std::string& strStatement) const { return RowsOf(Store(), strStatement); }
  std::string Scalar(const std::string& strStatement) const {
    const Rows rows = Read(strStatement);
    return rows.empty() ? "(no row)" : rows[0][0];
  }

  WrittenSample m_sample;
};

INSTANTIATE_TEST_SUITE_P(Places, ChatSample,
                         testing::Values(PlaceCase{5, kEarlyId, kEarlyDomain, "Library/"},
                                         PlaceCase{7, kEarlyId, kEarlyDomain, "Library/"},
                                         PlaceCase{8, kTodayId, kTodayDomain, "Message/"},
                                         PlaceCase{9, kTodayId, kTodayDomain, "Message/"},
                                         PlaceCase{17, kTodayId, kTodayDomain, "Message/"}));

}  // namespace

TEST_P(ChatSample, HasPersonsGroupsAndStates) {
  EXPECT_THAT(Read("select ZCONTACTJID, ZPARTNERNAME from ZWACHATSESSION where ZPARTNERNAME is null"),
              ElementsAre(ElementsAre("12025550143@s.whatsapp.net", "(null)"),
                          ElementsAre("12025550144@s.whatsapp.net", "(null)"),
                          ElementsAre("status@broadcast", "(null)")));
  EXPECT_EQ("3", Scalar("select count(*) from ZWACHATSESSION where ZCONTACTJID like '%@s.whatsapp.net' "
                        "and ZPARTNERNAME is not null and ZGROUPINFO is null"));
  EXPECT_EQ("2", Scalar("select count(*) from ZWACHATSESSION s join ZWAGROUPINFO i on i.Z_PK = ZGROUPINFO "
                        "where ZCONTACTJID like '%@g.us' and i.ZCHATSESSION = s.Z_PK"));
  EXPECT_EQ("0",
            Scalar("select count(*) from ZWACHATSESSION s where ZMESSAGECOUNTER <> (select count(*) from "
                   "ZWAMESSAGE where ZCHATSESSION = s.Z_PK)"));
  EXPECT_EQ("0", Scalar("select count(*) from ZWACHATSESSION s where ZLASTMESSAGE is not (select Z_PK from "
                        "ZWAMESSAGE where ZLASTSESSION = s.Z_PK)"));
}

TEST_P(ChatSample, MembersAreNamedInDifferentWays) {
  EXPECT_EQ("3", Scalar("select count(*) from ZWAGROUPMEMBER where ZCONTACTNAME is not null"));
  EXPECT_EQ("1",
            Scalar("select count(*) from ZWAGROUPMEMBER where ZCONTACTNAME is null and ZFIRSTNAME is not "
                   "null"));
  const std::string strNameless =
      "select count(*) from ZWAGROUPMEMBER where ZCONTACTNAME is null and ZFIRSTNAME "
      "is null and ZMEMBERJID ";
  EXPECT_EQ("1", Scalar(strNameless + "in (select ZJID from ZWAPROFILEPUSHNAME)"));
  EXPECT_EQ("1", Scalar(strNameless + "not in (select ZJID from ZWAPROFILEPUSHNAME)"));
  EXPECT_EQ("0", Scalar("select count(*) from ZWAMESSAGE m join ZWAGROUPMEMBER g on g.Z_PK = ZGROUPMEMBER "
                        "where g.ZCHATSESSION <> m.ZCHATSESSION or ZISFROMME"));
}

TEST_P(ChatSample, HasMessagesOfEachType) {
  std::vector<std::string> types;
  for (const auto& row : Read("select distinct ZMESSAGETYPE from ZWAMESSAGE order by 1"))
    types.push_back(row[0]);

  EXPECT_THAT(types, ElementsAre("0", "1", "2", "3", "4", "5", "6", "7", "8", "14", "15", "59"));
  EXPECT_NE("0", Scalar("select count(*) from ZWAMESSAGE where ZMESSAGETYPE = 6 and ZTEXT is null"));
  EXPECT_EQ("0", Scalar("select count(*) from ZWAMESSAGE where ZMESSAGETYPE = 14 and (ZTEXT is not null or "
                        "ZMEDIAITEM is not null)"));
  EXPECT_NE("0", Scalar("select count(*) from ZWAMESSAGE m join ZWAMEDIAITEM i on i.Z_PK = ZMEDIAITEM where "
                        "ZMESSAGETYPE = 1 and ZTITLE is not null"));
  EXPECT_EQ("7", Scalar("select count(*) from ZWAMEDIAITEM where ZVCARDSTRING like 'BEGIN:VCARD%'"));
  EXPECT_EQ("7", Scalar("select count(*) from ZWAMEDIAITEM where ZLATITUDE is not null"));
  EXPECT_EQ("0", Scalar("select count(*) from ZWAMESSAGE where typeof(ZMESSAGEDATE) <> 'real'"));
}

TEST_P(ChatSample, MediaAreInTheBackup) {
  const Rows media = Read(
      "select i.ZMEDIALOCALPATH, i.ZFILESIZE, i.ZMESSAGE, m.Z_PK, m.ZMEDIAITEM, i.Z_PK, s.ZCONTACTJID from "
      "ZWAMEDIAITEM i join ZWAMESSAGE m on m.Z_PK = i.ZMESSAGE join ZWACHATSESSION s on s.Z_PK = "
      "m.ZCHATSESSION");
  size_t nFiles = 0;

  EXPECT_EQ(std::to_string(media.size()), Scalar("select count(*) from ZWAMEDIAITEM"));
  for (const auto& row : media) {
    EXPECT_EQ(row[2], row[3]);
    EXPECT_EQ(row[4], row[5]);
    if (row[0] == "(null)") continue;
    ++nFiles;
    EXPECT_EQ(0u, row[0].find("Media/" + row[6] + "/")) << row[0];
    const std::string strFile = m_sample.FileOf(GetParam().pszDomain, GetParam().pszMediaParent + row[0]);
    ASSERT_TRUE(Exists(strFile)) << row[0];
    EXPECT_EQ(row[1], std::to_string(ReadFile(strFile).size()));
  }
  EXPECT_EQ(42u, nFiles);
}

TEST_P(ChatSample, PrimaryKeysAreCounted) {
  const std::pair<const char*, const char*> tables[] = {
      {"WAChatSession", "ZWACHATSESSION"}, {"WAGroupInfo", "ZWAGROUPINFO"},
      {"WAGroupMember", "ZWAGROUPMEMBER"}, {"WAMediaItem", "ZWAMEDIAITEM"},
      {"WAMessage", "ZWAMESSAGE"},         {"WAProfilePushName", "ZWAPROFILEPUSHNAME"}};
  for (const auto& [pszEntity, pszTable] : tables) {
    const std::string strTable = pszTable,
                      strOfEntity = std::string(" from Z_PRIMARYKEY where Z_NAME = '") + pszEntity + "'";
    EXPECT_EQ(Scalar("select max(Z_PK) from " + strTable), Scalar("select Z_MAX" + strOfEntity)) << pszTable;
    EXPECT_EQ("0", Scalar("select count(*) from " + strTable + " where Z_ENT <> (select Z_ENT" + strOfEntity +
                          ")"));
  }
  EXPECT_EQ("1", Scalar("select count(*) from Z_METADATA"));
}

TEST(ChatSampleOfNoVersion, DoesNotExist) {
  const WrittenSample sample(0);

  EXPECT_FALSE(Exists(sample.StoreOf(store_places::chats())));
  EXPECT_FALSE(Exists(sample.StoreOf(store_places::earlyChats())));
}

TEST(ChatSampleOfToday, HasEncodedPushNamesInMessages) {
  const std::string strStatement =
      "select distinct ZPUSHNAME from ZWAMESSAGE where ZPUSHNAME is not null order by 1";
  const WrittenSample old(12), current(17);

  EXPECT_THAT(RowsOf(old.StoreOf(store_places::chats()), strStatement),
              ElementsAre(ElementsAre("Anna \xF0\x9F\x8C\xBB"), ElementsAre("Sam <3"), ElementsAre("zoe")));
  for (const auto& row : RowsOf(current.StoreOf(store_places::chats()), strStatement))
    EXPECT_EQ(0u, row[0].find("Cg")) << row[0];
}
