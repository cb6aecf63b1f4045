#include "common/format.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

const QColor kDeletedColour(243, 115, 2, 255);

/// Rows of the tables, filled from records that the test puts in.
class TableFill : public WindowTest {
 protected:
  BackupRecords& Records() { return WindowAccess::Records(*m_pWindow); }

  /// Fills the table of a category as the scan does.
  QTableWidget* Fill(int nCategory, const char* pszTable) {
    m_pWindow->UpdateTreeInfo(Node(nCategory), 0, true);
    return Table(pszTable);
  }

  static void ExpectLive(const QTableWidget* pTable, int nRow, const char* pszIcon) {
    const QTableWidgetItem* pItem = pTable->item(nRow, 0);
    if (pszIcon)
      EXPECT_EQ(QIcon(pszIcon).pixmap(16, 16).toImage(), pItem->icon().pixmap(16, 16).toImage()) << nRow;
    else
      EXPECT_TRUE(pItem->icon().isNull()) << nRow;
    for (int i = 0; i < pTable->columnCount(); ++i) {
      EXPECT_FALSE(pTable->item(nRow, i)->data(Qt::ForegroundRole).isValid()) << nRow << ", " << i;
      EXPECT_EQ("Calibri 10/50", FontOf(pTable->item(nRow, i)->font())) << nRow << ", " << i;
    }
    EXPECT_EQ(30, pTable->rowHeight(nRow));
  }

  static void ExpectDeleted(const QTableWidget* pTable, int nRow) {
    const QImage icon = QIcon(":/image/delete.png").pixmap(16, 16).toImage();
    EXPECT_FALSE(icon.isNull());
    EXPECT_EQ(icon, pTable->item(nRow, 0)->icon().pixmap(16, 16).toImage()) << nRow;
    for (int i = 0; i < pTable->columnCount(); ++i) {
      EXPECT_EQ(kDeletedColour, pTable->item(nRow, i)->foreground().color()) << nRow << ", " << i;
      EXPECT_EQ("Calibri 10/50", FontOf(pTable->item(nRow, i)->font())) << nRow << ", " << i;
    }
    EXPECT_EQ(30, pTable->rowHeight(nRow));
  }
};

__MESSAGE_INFO__ Message(const char* pszText, int nDeleted = 0) {
  __MESSAGE_INFO__ message;
  message.nDeleted = nDeleted;
  message.strContactName = std::string("name of ") + pszText;
  message.strSender = "+49 1";
  message.strDate = "2014-01-01 00:00:00";
  message.strText = pszText;
  return message;
}

TEST_F(TableFill, DeletedConversationsComeFirstEachWithItsFirstRecord) {
  OpenDataScreen();
  Records().m_mapMessage[1] = {Message("one"), Message("one, older")};
  Records().m_mapMessage[5] = {Message("five"), Message("five, older", 1)};
  Records().m_mapMessage[9] = {Message("nine")};

  const QTableWidget* pTable = Fill(4, "m_pMessageTable");

  ASSERT_EQ(3, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"name of five", "+49 1", "2014-01-01 00:00:00", "five"}),
            Cells(pTable, 0));
  ExpectDeleted(pTable, 0);
  EXPECT_EQ("one", Cells(pTable, 1)[3]);
  ExpectLive(pTable, 1, nullptr);
  ExpectLive(pTable, 2, nullptr);
  EXPECT_EQ(5u, pTable->item(0, 0)->data(Qt::UserRole).value<unsigned int>());
  EXPECT_EQ(1u, pTable->item(1, 0)->data(Qt::UserRole).value<unsigned int>());
  EXPECT_EQ(9u, pTable->item(2, 0)->data(Qt::UserRole).value<unsigned int>());
}

TEST_F(TableFill, AnEmptyConversationLeavesItsRowBlank) {
  OpenDataScreen();
  Records().m_mapMessage[1] = {};
  Records().m_mapMessage[2] = {Message("two")};
  Records().m_mapWhatsApp[1] = {};

  const QTableWidget* pMessages = Fill(4, "m_pMessageTable");
  const QTableWidget* pChats = Fill(9, "m_pWhatsappTable");

  ASSERT_EQ(2, pMessages->rowCount());
  EXPECT_EQ(std::vector<std::string>(4, "(none)"), Cells(pMessages, 0));
  EXPECT_EQ("two", Cells(pMessages, 1)[3]);
  ASSERT_EQ(1, pChats->rowCount());
  EXPECT_EQ(std::vector<std::string>(3, "(none)"), Cells(pChats, 0));
}

TEST_F(TableFill, ABlankFirstRowSurvivesSelectionAndTicks) {
  OpenDataScreen();
  Records().m_mapMessage[1] = {};
  Records().m_mapMessage[2] = {Message("two")};

  ClickNode(4);
  for (const Qt::CheckState state : {Qt::Checked, Qt::PartiallyChecked, Qt::Unchecked}) {
    Node(4)->setCheckState(0, state);
    Window().UpdateTreeInfo(Node(4), 0, false);
  }

  EXPECT_EQ(2, Table("m_pMessageTable")->rowCount());
  EXPECT_EQ(Qt::Unchecked, Table("m_pMessageTable")->item(1, 0)->checkState());
}

TEST_F(TableFill, ContactsShowTheirFieldsAndDeletedOnesTheAddressLast) {
  OpenDataScreen();
  __PERSON_CONTENT__ person;
  person.strName = "Änne";
  person.strCompany = "Gärtnerei";
  person.strPhone = "+49 30";
  person.strEmail = "aenne@example.net";
  person.strUrl = "example.net";
  person.strAddress = "Street 1";
  __PERSON_CONTENT__ deleted = person;
  deleted.nDeleted = 1;
  Records().m_vecContact = {person, deleted};

  const QTableWidget* pTable = Fill(6, "m_pContactsTable");

  ASSERT_EQ(2, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"Änne", "Gärtnerei", "+49 30", "aenne@example.net", "Street 1"}),
            Cells(pTable, 0));
  EXPECT_EQ(std::vector<std::string>({"Änne", "Gärtnerei", "+49 30", "aenne@example.net", "example.net"}),
            Cells(pTable, 1));
  ExpectDeleted(pTable, 0);
  ExpectLive(pTable, 1, ":/image/contact.png");
  EXPECT_EQ("Street 1", pTable->item(1, 0)->data(Qt::UserRole).value<__PERSON_CONTENT__>().strAddress);
}

TEST_F(TableFill, CallsShowTheirDirectionAndLength) {
  OpenDataScreen();
  struct Case {
    int nDeleted, nAnswered, nDuration;
    std::string strType, strLength;
  };
  // Deleted calls come first, and are never "Canceled" or "Missed".
  const std::vector<Case> cases = {
      {1, 0, 0, "Outgoing", GetTimeStringA(0)},
      {2, 1, 0, "Incoming", GetTimeStringA(0)},
      {1, 1, 75, "Incoming", GetTimeStringA(75)},
      {0, 0, 0, "Outgoing", "Canceled"},
      {0, 1, 0, "Incoming", "Missed"},
      {0, 0, 61, "Outgoing", GetTimeStringA(61)},
      {0, 7, 3661, "Incoming", GetTimeStringA(3661)},
  };
  for (const Case& one : cases) {
    __CALLHISTORY__ call;
    call.nDeleted = one.nDeleted;
    call.nAnswered = one.nAnswered;
    call.nDuration = one.nDuration;
    call.strName = "Bo";
    call.strAddress = "110";
    call.strDate = "2014-01-01 00:00:00";
    Records().m_vecCall.push_back(call);
  }

  const QTableWidget* pTable = Fill(7, "m_pCallHistoryTable");

  ASSERT_EQ(static_cast<int>(cases.size()), pTable->rowCount());
  for (size_t i = 0; i < cases.size(); ++i) {
    const int nRow = static_cast<int>(i);
    EXPECT_EQ(
        std::vector<std::string>({"Bo", "110", "2014-01-01 00:00:00", cases[i].strType, cases[i].strLength}),
        Cells(pTable, nRow));
    cases[i].nDeleted ? ExpectDeleted(pTable, nRow) : ExpectLive(pTable, nRow, ":/image/phone.png");
  }
}

TEST_F(TableFill, DeletedRecordsKeepTheOrderOfTheList) {
  OpenDataScreen();
  for (const char* pszTitle : {"live a", "gone a", "live b", "gone b"}) {
    __NOTES__ note;
    note.strTitle = pszTitle;
    note.strDate = "2014-01-01 00:00:00";
    note.strContent = "text";
    note.nDeleted = note.strTitle[0] == 'g' ? 1 : 0;
    Records().m_vecNote.push_back(note);
  }

  const QTableWidget* pTable = Fill(8, "m_pNotesTable");

  ASSERT_EQ(4, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"gone a", "2014-01-01 00:00:00", "text"}), Cells(pTable, 0));
  EXPECT_EQ("gone b", Cells(pTable, 1)[0]);
  EXPECT_EQ("live a", Cells(pTable, 2)[0]);
  EXPECT_EQ("live b", Cells(pTable, 3)[0]);
  ExpectDeleted(pTable, 1);
  ExpectLive(pTable, 2, ":/image/note.png");
  EXPECT_EQ("live b", pTable->item(3, 0)->data(Qt::UserRole).value<__NOTES__>().strTitle);
}

TEST_F(TableFill, ChatsFallBackToTheWriterOfTheMessage) {
  OpenDataScreen();
  __WHATSAPP_MESSAGE__ message;
  message.strChatTitle = "Title";
  message.strChatName = "Chat Name";
  message.strName = "Writer";
  message.strChatPhone = "1";
  message.strPhone = "2";
  __WHATSAPP_MESSAGE__ bare = message;
  bare.strChatName.clear();
  bare.strChatPhone.clear();
  __WHATSAPP_MESSAGE__ deleted = message;
  deleted.nDeleted = 1;
  Records().m_mapWhatsApp = {{3, {message}}, {4, {bare}}, {5, {message, deleted}}};

  const QTableWidget* pTable = Fill(9, "m_pWhatsappTable");

  ASSERT_EQ(3, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"Title", "Chat Name", "1"}), Cells(pTable, 0));
  EXPECT_EQ(std::vector<std::string>({"Title", "Chat Name", "1"}), Cells(pTable, 1));
  EXPECT_EQ(std::vector<std::string>({"Title", "Writer", "2"}), Cells(pTable, 2));
  ExpectDeleted(pTable, 0);
  ExpectLive(pTable, 1, ":/image/FileIcon/image.png");
  EXPECT_EQ(5u, pTable->item(0, 0)->data(Qt::UserRole).value<unsigned int>());
}

TEST_F(TableFill, FilesShowNameSizeAndIcon) {
  OpenDataScreen();
  Records().m_vecCamera = {{2048, "IMG_1.JPG", u"/a"}};
  Records().m_vecPhotoStream = {{100, "IMG_2.JPG", u"/b"}};
  Records().m_vecMessageAttachment = {{0, 5000000, "cat.GIF", u"/c"}};
  Records().m_vecWhatsAppAttachment = {{1, "d.JPG", u"/d"}};
  struct Case {
    int nCategory;
    const char* pszTable;
    std::string strName;
    uint32_t uSize;
    const char* pszIcon;
  };
  const Case cases[] = {
      {0, "m_pCameraTable", "IMG_1.JPG", 2048, ":/image/photo.png"},
      {1, "m_pPhotoStreamTable", "IMG_2.JPG", 100, ":/image/photostream.png"},
      {5, "m_pMessAttachTable", "cat.GIF", 5000000, ":/image/FileIcon/image.png"},
      {10, "m_pWhatsappAttachTable", "d.JPG", 1, ":/image/FileIcon/image.png"},
  };

  for (const Case& one : cases) {
    const QTableWidget* pTable = Fill(one.nCategory, one.pszTable);

    ASSERT_EQ(1, pTable->rowCount()) << one.pszTable;
    EXPECT_EQ(std::vector<std::string>({one.strName, GetFileSizeString(one.uSize)}), Cells(pTable, 0));
    ExpectLive(pTable, 0, one.pszIcon);
  }
  EXPECT_EQ(
      "IMG_1.JPG",
      Table("m_pCameraTable")->item(0, 0)->data(Qt::UserRole).value<_IPHONE_CAMERA_INFO_>().strFileName);
}

TEST_F(TableFill, AppsHaveOneRowEachWithTheWordFolder) {
  OpenDataScreen();
  Records().m_mapAppPhotoFiles = {{"example.Snap", {{10, "example.Snap", "a.JPG", u"/a"}}},
                                  {"other", {{20, "other", "b.TXT", u"/b"}, {1, "other", "c", u"/c"}}}};
  Records().m_mapAppVideoFiles = {{"example.Radio", {{30, "example.Radio", "c.MOV", u"/c"}}}};

  const QTableWidget* pPhotos = Fill(2, "m_pAppPhotosTable");
  const QTableWidget* pVideos = Fill(3, "m_pAppVideosTable");

  ASSERT_EQ(2, pPhotos->rowCount());
  ASSERT_EQ(1, pVideos->rowCount());
  EXPECT_EQ(std::vector<std::string>({"example.Snap", "Folder"}), Cells(pPhotos, 0));
  EXPECT_EQ(std::vector<std::string>({"other", "Folder"}), Cells(pPhotos, 1));
  EXPECT_EQ(std::vector<std::string>({"example.Radio", "Folder"}), Cells(pVideos, 0));
  ExpectLive(pPhotos, 1, ":/image/appphoto.png");
  ExpectLive(pVideos, 0, ":/image/video.png");
  EXPECT_EQ("other", pPhotos->item(1, 0)->data(Qt::UserRole).toString().toStdString());
}

TEST_F(TableFill, ExtensionsDecideBetweenAppPhotosAndAppVideos) {
  OpenDataScreen();
  for (const char* pszName : {"a.JPG", "b.mov", "c.mp3", "d.txt", "e.jpg"})
    Records().m_vecAppFile.push_back({1, "app", pszName, u"/x"});

  Window().RefreshAppFileNode();
  const auto& photos = Records().m_mapAppPhotoFiles["app"];
  const auto& videos = Records().m_mapAppVideoFiles["app"];

  ASSERT_EQ(3u, photos.size());
  EXPECT_EQ("a.JPG", photos[0].strFileName);
  EXPECT_EQ("d.txt", photos[1].strFileName);
  EXPECT_EQ("e.jpg", photos[2].strFileName);
  ASSERT_EQ(2u, videos.size());
  EXPECT_EQ("b.mov", videos[0].strFileName);
  EXPECT_EQ("c.mp3", videos[1].strFileName);
  EXPECT_EQ(3, Records().m_nAppPhotoCount);
  EXPECT_EQ(2, Records().m_nAppVideoCount);
}

TEST_F(TableFill, RowsFollowTheTickOfTheNodeOnceTheyAreFilled) {
  OpenDataScreen();
  Records().m_vecNote.resize(3);
  Records().m_vecCamera.resize(2);
  Node(8)->setCheckState(0, Qt::Checked);

  const QTableWidget* pNotes = Fill(8, "m_pNotesTable");
  const QTableWidget* pCamera = Fill(0, "m_pCameraTable");

  for (int i = 0; i < 3; ++i) EXPECT_EQ(Qt::Checked, pNotes->item(i, 0)->checkState()) << i;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Qt::Unchecked, pCamera->item(i, 0)->checkState()) << i;
}

TEST_F(TableFill, ATableIsFilledOnceForEachDataScreen) {
  OpenDataScreen();
  Records().m_vecNote.resize(3);
  const QTableWidget* pTable = Fill(8, "m_pNotesTable");
  Records().m_vecNote.resize(7);

  Fill(8, "m_pNotesTable");

  EXPECT_EQ(3, pTable->rowCount());
}

}  // namespace
