#include "extract/chats.h"

#include <gmock/gmock.h>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::SizeIs;

namespace {

class Chats : public testing::Test {
 protected:
  Chats() { g_u32WhatsappColNumber = 0; }
  ~Chats() override { g_u32WhatsappColNumber = 0; }

  std::string MakeStore(const std::string& strName, const char* pszTable) {
    SampleStore store(FromNarrow(m_folder.Path(strName)), false);
    store.run(pszTable);
    store.close();
    return m_folder.Path(strName);
  }

  int Read(const std::string& strPath) {
    return CIPhoneWhatsApp().GetWhatsAppMessageInfo(strPath, "", m_chats);
  }

  TemporaryFolder m_folder;
  WhatsAppMap m_chats = {{7, {}}};
};

}  // namespace

TEST_F(Chats, ReaderCountsTheColumnsAndLeavesTheMapAlone) {
  const int nStatus = Read(MakeStore("a.db", "create table ZWAMESSAGE (a, b, c)"));

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(3u, g_u32WhatsappColNumber);
  EXPECT_THAT(m_chats, SizeIs(1));
}

TEST_F(Chats, LargestCountStays) {
  Read(MakeStore("a.db", "create table ZWAMESSAGE (a, b, c)"));
  Read(MakeStore("b.db", "create table ZWAMESSAGE (a, b)"));

  EXPECT_EQ(3u, g_u32WhatsappColNumber);
}

TEST_F(Chats, RowCallbackStoresAnyCount) {
  g_u32WhatsappColNumber = 9;

  const int nAnswer = select_result(nullptr, 4, nullptr, nullptr);

  EXPECT_EQ(0, nAnswer);
  EXPECT_EQ(4u, g_u32WhatsappColNumber);
}

TEST_F(Chats, QQReaderFindsNothing) {
  QQChats chats = {{"kept", {}}};

  const int nStatus = CIPhoneQQ().GetQQInfo(m_folder.Path("QQ.db"), chats);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(chats, SizeIs(1));
  EXPECT_FALSE(Exists(m_folder.Path("QQ.db")));
}
