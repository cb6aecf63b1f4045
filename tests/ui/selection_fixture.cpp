#include "tests/ui/selection_fixture.h"

#include <QTest>

#include "ui/styles.h"

namespace orvandel {

const SelectionMap kAlpha = {{0, 10}, {1, 20}, {2, 30}};
const SelectionMap kBeta = {{0, 40}};
const SelectionMap kGamma = {{0, 50}, {1, 60}};

namespace {
const SelectionMap kRows = {{0, 0}, {1, 1}, {2, 2}};  // of a category whose rows have no size
}

const std::vector<PlainCategory> kPlainCategories = {
    {0, "CameraRoll", "m_pCameraTable", &DRUI::cameraTableItemPress,
     SelectionMap{{0, 100}, {1, 2000}, {2, 30}}, "2.08 KB", "130 Bytes", SelectionMap{}},
    {1, "PhotoStream", "m_pPhotoStreamTable", &DRUI::photoStreamTableItemPress,
     SelectionMap{{0, 7}, {1, 8}, {2, 9}}, "24 Bytes", "16 Bytes", SelectionMap{}},
    {4, "Messages", "m_pMessageTable", &DRUI::messageTableItemPress, kRows, "1.00 MB", "1.00 MB",
     SelectionMap{}},
    {5, "MessageAttachments", "m_pMessAttachTable", &DRUI::messageAttachTableItemPress,
     SelectionMap{{0, 500}, {1, 600}, {2, 700}}, "1.76 KB", "1.17 KB", SelectionMap{}},
    {6, "Contacts", "m_pContactsTable", &DRUI::contactsTableItemPress, kRows, "1.00 MB", "1.00 MB",
     SelectionMap{}},
    {7, "CallHistory", "m_pCallHistoryTable", &DRUI::callHistoryTableItemPress, kRows, "1.00 MB", "1.00 MB",
     SelectionMap{}},
    {8, "Notes", "m_pNotesTable", &DRUI::notesTableItemPress, kRows, "1.00 MB", "1.00 MB", SelectionMap{}},
    // The chats have the keys 7, 1 and 9 from the top, and only row 1 has a number that is one of them.
    {9, "WhatsApp", "m_pWhatsappTable", &DRUI::whatsappTableItemPress, kRows, "1.00 MB", "1.00 MB",
     SelectionMap{{0, 0}, {2, 2}}},
    {10, "WhatsAppAttachments", "m_pWhatsappAttachTable", &DRUI::whatsappAttachTableItemPress,
     SelectionMap{{0, 11}, {1, 12}, {2, 13}}, "36 Bytes", "24 Bytes", SelectionMap{}},
};

const std::vector<AppCategory> kAppCategories = {
    {2, "AppPhotos", "m_pAppPhotosTable", &DRUI::appPhotosTableItemPress,
     &DRUI::appPhotosTableItemSelectDoubleClick},
    {3, "AppVideos", "m_pAppVideosTable", &DRUI::appVideosTableItemPress,
     &DRUI::appVideosTableItemSelectDoubleClick},
};

void SelectionTest::PutRecords() {
  BackupRecords& records = Records();
  records.m_vecCamera = {{100, "a", u""}, {2000, "b", u""}, {30, "c", u""}};
  records.m_vecPhotoStream = {{7, "a", u""}, {8, "b", u""}, {9, "c", u""}};
  records.m_vecMessageAttachment = {{1, 500, "a", u""}, {1, 600, "b", u""}, {1, 700, "c", u""}};
  records.m_vecWhatsAppAttachment = {{11, "a", u""}, {12, "b", u""}, {13, "c", u""}};
  // The second record of each is deleted and so comes first.
  records.m_vecContact.assign(3, {});
  records.m_vecContact[1].nDeleted = 1;
  records.m_vecCall.assign(3, {});
  records.m_vecCall[1].nDeleted = 1;
  records.m_vecNote.assign(3, {});
  records.m_vecNote[1].nDeleted = 1;
  __MESSAGE_INFO__ gone;
  gone.nDeleted = 1;
  records.m_mapMessage = {{3, {{}}}, {5, {gone}}, {8, {{}}}};
  __WHATSAPP_MESSAGE__ goneChat;
  goneChat.nDeleted = 1;
  records.m_mapWhatsApp = {{1, {{}}}, {7, {goneChat}}, {9, {{}}}};
  records.m_mapAppPhotoFiles = {
      {"Alpha", {{10, "Alpha", "a", u""}, {20, "Alpha", "b", u""}, {30, "Alpha", "c", u""}}},
      {"Beta", {{40, "Beta", "a", u""}}},
      {"Gamma", {{50, "Gamma", "a", u""}, {60, "Gamma", "b", u""}}}};
  records.m_mapAppVideoFiles = records.m_mapAppPhotoFiles;
}

DRUI& SelectionTest::OpenFilled() {
  OpenDataScreen();
  PutRecords();
  return *m_pWindow;
}

DRUI& SelectionTest::OpenScanned() {
  OpenFilled();
  for (const int nCategory : {0, 1, 4, 5, 6, 7, 8, 2, 3, 9, 10}) TickNode(nCategory);
  m_pWindow->RefreshSelectFileInfo();
  return *m_pWindow;
}

void SelectionTest::ReplaceDataScreen() {
  m_pWindow->InitLayout3Widget();
  QStackedLayout* pScreens = WindowAccess::ScreenStack(*m_pWindow);
  pScreens->addWidget(WindowAccess::DataScreen(*m_pWindow));
  pScreens->setCurrentWidget(WindowAccess::DataScreen(*m_pWindow));
  QCoreApplication::processEvents();
}

void SelectionTest::SetNode(int nCategory, int nState) {
  Node(nCategory)->setCheckState(0, static_cast<Qt::CheckState>(nState));
  m_pWindow->UpdateTreeInfo(Node(nCategory), 0, true);
}

std::vector<int> SelectionTest::States(const QTableWidget* pTable) {
  std::vector<int> states;
  for (int i = 0; i < pTable->rowCount(); ++i)
    states.push_back(pTable->item(i, 0) ? pTable->item(i, 0)->checkState() : -1);
  return states;
}

void SelectionTest::SetState(QTableWidget* pTable, int nRow, int nState) {
  pTable->item(nRow, 0)->setCheckState(static_cast<Qt::CheckState>(nState));
}

bool SelectionTest::RecoveryIsOn() {
  const auto* pButton = Find<QPushButton>("m_pRecoveryButton");
  EXPECT_EQ(pButton->isEnabled() ? Layout2_main_button_style : main_button_style_no_file,
            pButton->styleSheet());
  return pButton->isEnabled();
}

void SelectionTest::DoubleClickRow(QTableWidget* pTable, int nRow, int nColumn, bool bOnBox) {
  bOnBox ? ClickRowBox(pTable, nRow, nColumn) : ClickRow(pTable, nRow, nColumn);
  // The position of the second press within the cell doesn't matter.
  const QPoint place = pTable->visualItemRect(pTable->item(nRow, nColumn)).center();
  QTest::mouseDClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, place);
  QTest::mouseRelease(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

}  // namespace orvandel
