#include <QBoxLayout>
#include <QPointer>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

class DataScreen : public WindowTest {
 protected:
  QWidget* Screen() { return WindowAccess::DataScreen(*m_pWindow); }
};

TEST_F(DataScreen, HasItsTwelvePagesInOrder) {
  OpenDataScreen();
  struct Page {
    std::vector<std::string> parts;
    QBoxLayout::Direction direction;
  };
  const std::vector<Page> pages = {
      {{"m_pCameraPreview", "m_pCameraTable"}, QBoxLayout::TopToBottom},
      {{"m_pPhotoStreamPreview", "m_pPhotoStreamTable"}, QBoxLayout::TopToBottom},
      {{"m_pAppPhotosTable"}, QBoxLayout::TopToBottom},
      {{"m_pAppVideosTable"}, QBoxLayout::TopToBottom},
      {{"m_pAppFileCaption", "m_pAppFilePreview", "m_pAppsTable"}, QBoxLayout::TopToBottom},
      {{"m_pMessageTable", "m_pMessageWebView"}, QBoxLayout::LeftToRight},
      {{"m_pContactsTable", "m_pContactText"}, QBoxLayout::LeftToRight},
      {{"m_pCallHistoryTable"}, QBoxLayout::LeftToRight},
      {{"m_pNotesTable", "m_pNoteText"}, QBoxLayout::LeftToRight},
      {{"m_pMessAttachPreview", "m_pMessAttachTable"}, QBoxLayout::TopToBottom},
      {{"m_pWhatsappTable", "m_pWhatsappWebView"}, QBoxLayout::LeftToRight},
      {{"m_pWhatsappAttachPreview", "m_pWhatsappAttachTable"}, QBoxLayout::TopToBottom},
  };

  const QStackedLayout* pStack = WindowAccess::PageStack(Window());

  ASSERT_EQ(static_cast<int>(pages.size()), pStack->count());
  for (size_t nPage = 0; nPage < pages.size(); ++nPage) {
    auto* pLayout = qobject_cast<QBoxLayout*>(pStack->widget(static_cast<int>(nPage))->layout());
    ASSERT_NE(nullptr, pLayout) << nPage;
    std::vector<std::string> parts;
    for (int i = 0; i < pLayout->count(); ++i)
      parts.push_back(pLayout->itemAt(i)->widget()->objectName().toStdString());
    EXPECT_EQ(pages[nPage].parts, parts);
    EXPECT_EQ(pages[nPage].direction, pLayout->direction()) << nPage;
    EXPECT_EQ(std::vector<int>({0, 0, 2, 0}), MarginsOf(pLayout)) << nPage;
  }
}

// Picture and table have fixed sizes, and the page is less high than both together.
TEST_F(DataScreen, TableOfThePhotoStreamCoversSeventeenPixelsOfItsPicture) {
  OpenDataScreen();

  WindowAccess::PageStack(Window())->setCurrentIndex(1);
  QCoreApplication::processEvents();

  const QRect picture = Find<QLabel>("m_pPhotoStreamPreview")->geometry();
  const QRect table = Table("m_pPhotoStreamTable")->geometry();
  EXPECT_EQ(17, picture.top() + picture.height() - table.top());
}

TEST_F(DataScreen, StartsOnTheCameraPageWithoutASelectedNode) {
  OpenDataScreen();

  const QTreeWidget* pTree = WindowAccess::Tree(Window());

  EXPECT_EQ(0, WindowAccess::PageStack(Window())->currentIndex());
  EXPECT_TRUE(Table("m_pCameraTable")->isVisible());
  EXPECT_TRUE(pTree->selectedItems().isEmpty());
  EXPECT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());
}

TEST_F(DataScreen, HidesThePanesBesideTheTables) {
  OpenDataScreen();

  for (const char* pszName : {"m_pMessageWebView", "m_pWhatsappWebView", "m_pContactText", "m_pNoteText"}) {
    EXPECT_TRUE(Find<QWidget>(pszName)->isHidden()) << pszName;
  }
}

TEST_F(DataScreen, StripHasHomeRecoveryAndTheLine) {
  OpenDataScreen();

  auto* pHome = Find<QPushButton>("homeButton");
  auto* pRecovery = Find<QPushButton>("m_pRecoveryButton");
  auto* pLine = Find<QLabel>("m_pSelectInfoLabel");

  EXPECT_EQ("Home", pHome->text());
  EXPECT_EQ(Corners(50, 5, 149, 44), pHome->geometry());
  EXPECT_EQ("Recovery", pRecovery->text());
  EXPECT_EQ(Corners(850, 5, 949, 44), pRecovery->geometry());
  for (const QPushButton* pButton : {pHome, pRecovery}) {
    EXPECT_EQ("Calibri 12/75", FontOf(pButton));
    EXPECT_TRUE(pButton->isFlat());
    EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
    EXPECT_EQ(Layout2_main_button_style, pButton->styleSheet());
    EXPECT_TRUE(pButton->isEnabled());
  }
  EXPECT_EQ(Corners(400, 15, 649, 74), pLine->geometry());
  EXPECT_TRUE(pLine->alignment() & Qt::AlignLeft);
  EXPECT_EQ("Calibri 12/50", FontOf(pLine));
  EXPECT_EQ(QColor(Qt::black), TextColour(pLine));
  EXPECT_EQ(50, pHome->parentWidget()->minimumHeight());
}

TEST_F(DataScreen, IsFramedByTopBarAndFoot) {
  OpenDataScreen();

  auto* pBar = Screen()->findChild<QLabel*>("topBar");
  auto* pVersion = Screen()->findChild<QLabel*>("version");
  auto* pLayout = qobject_cast<QVBoxLayout*>(Screen()->layout());

  ASSERT_NE(nullptr, pBar);
  EXPECT_NE(nullptr, pBar->findChild<QPushButton*>("helpButton"));
  EXPECT_EQ(nullptr, Screen()->findChild<QPushButton*>("menuButton"));
  EXPECT_EQ(Corners(880, 20, 999, 49), pVersion->geometry());
  EXPECT_EQ("Version " ORVANDEL_VERSION, TextOf(pVersion));
  EXPECT_EQ(0, pLayout->spacing());
  EXPECT_EQ(std::vector<int>({0, 0, 0, 0}), MarginsOf(pLayout));
  EXPECT_EQ(std::vector<int>({2, 0, 2, 0}), MarginsOf(pLayout->itemAt(2)->layout()));
  EXPECT_EQ(5, pLayout->stretch(3));
  EXPECT_EQ("bottomStrip", pLayout->itemAt(4)->widget()->objectName());
  EXPECT_EQ("foot", pLayout->itemAt(5)->widget()->objectName());
}

TEST_F(DataScreen, TreeIsLeftOfThePages) {
  OpenDataScreen();

  auto* pMiddle = qobject_cast<QHBoxLayout*>(Screen()->layout()->itemAt(2)->layout());

  ASSERT_NE(nullptr, pMiddle);
  EXPECT_EQ(WindowAccess::Tree(Window()), pMiddle->itemAt(0)->widget());
  EXPECT_EQ(WindowAccess::PageStack(Window()), pMiddle->itemAt(1)->layout()->itemAt(0)->layout());
}

TEST_F(DataScreen, ASecondOneReplacesTheFirst) {
  OpenDataScreen();
  QPointer<QWidget> pFirst = Screen();
  QPointer<QTreeWidget> pFirstTree = WindowAccess::Tree(Window());
  QPointer<QTableWidget> pFirstTable = Table("m_pCallHistoryTable");

  Window().InitLayout3Widget();

  EXPECT_TRUE(pFirst.isNull());
  EXPECT_TRUE(pFirstTree.isNull());
  EXPECT_TRUE(pFirstTable.isNull());
  EXPECT_EQ(kZeroLabels, Labels());
}

}  // namespace
