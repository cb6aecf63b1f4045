#include <QVBoxLayout>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

class HomeScreen : public WindowTest {
 protected:
  QWidget* Screen() { return WindowAccess::HomeScreen(*m_pWindow); }

  QLabel* LabelWith(const char* pszText) {
    for (QLabel* pLabel : Screen()->findChildren<QLabel*>()) {
      if (pLabel->text() == pszText) return pLabel;
    }
    return nullptr;
  }
};

/// Place of a widget on the window.
QRect OnWindow(const QWidget* pWidget) {
  return QRect(pWidget->mapTo(pWidget->window(), QPoint(0, 0)), pWidget->size());
}

TEST_F(HomeScreen, TopBarHasLogoTitleAndHelpButton) {
  Open();

  auto* pBar = Find<QLabel>("topBar");
  auto* pLogo = pBar->findChild<QLabel*>("logo");
  auto* pTitle = pBar->findChild<QLabel*>("title");
  auto* pHelp = pBar->findChild<QPushButton*>("helpButton");

  EXPECT_GE(pBar->minimumWidth(), 1000);
  EXPECT_EQ(80, pBar->minimumHeight());
  EXPECT_EQ(Layout1TopBackGroud_style, pBar->styleSheet());
  EXPECT_EQ(Corners(10, 10, 73, 73), pLogo->geometry());
  EXPECT_TRUE(pLogo->alignment() & Qt::AlignLeft);
  EXPECT_FALSE(pLogo->pixmap().isNull());
  EXPECT_EQ(Corners(80, 20, 679, 79), pTitle->geometry());
  EXPECT_TRUE(pTitle->alignment() & Qt::AlignLeft);
  EXPECT_EQ("Velmora Orvandel\nExtractor all kinds of data from you iTunes backup file for free.",
            TextOf(pTitle));
  EXPECT_EQ("Calibri 16/75", FontOf(pTitle));
  EXPECT_EQ(QColor(Qt::white), TextColour(pTitle));
  EXPECT_EQ(QPoint(955, 20), pHelp->pos());
}

TEST_F(HomeScreen, GapLiesBelowTheTopBar) {
  Open();

  auto* pGap = Find<QLabel>("gap");

  EXPECT_EQ(QSize(1000, 2), pGap->size());
  EXPECT_EQ(OnWindow(Find<QLabel>("topBar")).bottom() + 1, OnWindow(pGap).top());
}

TEST_F(HomeScreen, FooterShowsTheVersion) {
  Open();

  auto* pFoot = Find<QLabel>("foot");
  auto* pVersion = pFoot->findChild<QLabel*>("version");

  EXPECT_GE(pFoot->minimumWidth(), 1000);
  EXPECT_EQ(40, pFoot->minimumHeight());
  EXPECT_EQ(Layout1TopBackGroud_style, pFoot->styleSheet());
  EXPECT_EQ("Version " ORVANDEL_VERSION, TextOf(pVersion));
  EXPECT_EQ(Corners(880, 20, 1000, 49), pVersion->geometry());
  EXPECT_EQ("Calibri 10/50", FontOf(pVersion));
  EXPECT_EQ(QColor(Qt::white), TextColour(pVersion));
  EXPECT_TRUE(pVersion->alignment() & Qt::AlignHCenter);
}

TEST_F(HomeScreen, LabelsHaveTheInstructions) {
  Open();
  struct Case {
    const char* pszText;
    const char* pszFont;
  };
  const Case cases[] = {
      {"Select an iTunes Backup File of your iOS device below to scan.", "Calibri 13/75"},
      {"If your iOS device is not listed here, it's probably because your iOS device has not been "
       "synchronized with iTunes.",
       "Calibri 12/50"},
      {"Select the iTunes Backup File from other folder to recover your data.", "Calibri 12/50"},
  };

  for (const Case& one : cases) {
    QLabel* pLabel = LabelWith(one.pszText);

    ASSERT_NE(nullptr, pLabel) << one.pszText;
    EXPECT_EQ(one.pszFont, FontOf(pLabel)) << one.pszText;
    EXPECT_TRUE(pLabel->isVisible()) << one.pszText;
  }
}

TEST_F(HomeScreen, ColumnKeepsItsMarginsSpacesAndOrder) {
  Open();

  auto* pLayout = qobject_cast<QVBoxLayout*>(Screen()->layout());
  const QRect table = OnWindow(Table("m_pBackupTable"));
  const QRect caption = OnWindow(LabelWith("Select an iTunes Backup File of your iOS device below to scan."));

  ASSERT_NE(nullptr, pLayout);
  EXPECT_EQ(0, pLayout->spacing());
  EXPECT_EQ(std::vector<int>({0, 0, 0, 0}), MarginsOf(pLayout));
  EXPECT_EQ(OnWindow(Find<QLabel>("gap")).bottom() + 1 + 20, caption.top());
  EXPECT_EQ(80, caption.left());
  EXPECT_EQ(80, table.left());
  EXPECT_EQ(1000 - 80 - 1, table.right());
  EXPECT_EQ(caption.bottom() + 1 + 5, table.top());
  EXPECT_EQ(OnWindow(Find<QWidget>("selectText")).left(), 80);
  EXPECT_EQ(679, OnWindow(Find<QLabel>("foot")).bottom());
}

TEST_F(HomeScreen, SelectHolderHasTextAndButton) {
  Open();

  auto* pText = Find<QLabel>("selectText");
  auto* pButton = Find<QPushButton>("selectButton");

  EXPECT_EQ(Corners(0, 5, 374, 44), pText->geometry());
  EXPECT_EQ(Corners(380, 5, 479, 39), pButton->geometry());
  EXPECT_EQ("Select", pButton->text());
  EXPECT_EQ("Calibri 12/75", FontOf(pButton));
  EXPECT_TRUE(pButton->isFlat());
  EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
  EXPECT_EQ(Layout2_main_button_style, pButton->styleSheet());
  EXPECT_EQ(40, pButton->parentWidget()->minimumHeight());
  EXPECT_EQ(pButton->parentWidget(), pText->parentWidget());
}

TEST_F(HomeScreen, ScanButtonIsGrayBeforeABackupIsPicked) {
  WriteEmptyBackup("one");
  Open();

  auto* pButton = Find<QPushButton>("m_pScanButton");

  EXPECT_EQ("Scan", pButton->text());
  EXPECT_EQ(Corners(800, 0, 949, 49), pButton->geometry());
  EXPECT_EQ("Calibri 18/50", FontOf(pButton));
  EXPECT_TRUE(pButton->isFlat());
  EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
  EXPECT_EQ(main_button_style_no_file, pButton->styleSheet());
  EXPECT_FALSE(pButton->isEnabled());
  EXPECT_EQ(80, pButton->parentWidget()->minimumHeight());
}

TEST_F(HomeScreen, ScanIsEnabledForALeafAndDisabledForABranch) {
  Open();
  QTreeWidgetItem leaf;
  QTreeWidgetItem branch;
  branch.addChild(new QTreeWidgetItem);
  auto* pButton = Find<QPushButton>("m_pScanButton");

  Window().diskItemClick(nullptr, 0);
  const bool bAfterNull = pButton->isEnabled();
  Window().diskItemClick(&leaf, 0);
  const bool bAfterLeaf = pButton->isEnabled();
  const QString qstrLeafStyle = pButton->styleSheet();
  Window().diskItemClick(&branch, 0);

  EXPECT_FALSE(bAfterNull);
  EXPECT_TRUE(bAfterLeaf);
  EXPECT_EQ(Layout2_main_button_style, qstrLeafStyle);
  EXPECT_FALSE(pButton->isEnabled());
  EXPECT_EQ(main_button_style_no_file, pButton->styleSheet());
}

TEST_F(HomeScreen, WithoutBackupsTheTableIsEmptyScanGrayAndSelectEnabled) {
  Open();
  auto* pSelect = Find<QPushButton>("selectButton");
  ModalSteps steps;
  bool bFolderDialog = false;
  steps.Then("QFileDialog", [&](QWidget* pDialog) {
    bFolderDialog = true;
    pDialog->close();
  });

  Click(Find<QPushButton>("m_pScanButton"));
  Click(pSelect);

  EXPECT_EQ(0, Table("m_pBackupTable")->rowCount());
  EXPECT_FALSE(Find<QPushButton>("m_pScanButton")->isEnabled());
  EXPECT_TRUE(bFolderDialog);
  EXPECT_EQ(nullptr, WindowAccess::DataScreen(Window()));
}

}  // namespace
