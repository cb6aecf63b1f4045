#include "app/progress_dialog.h"

#include <QProgressBar>
#include <QTest>
#include <QVBoxLayout>

#include "tests/ui/url_recorder.h"
#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

/// The progress dialog of a kind, not modal.
class ProgressDialog : public WindowTest {
 protected:
  SCANUI& OpenDialog(int nKind) {
    if (!m_pWindow) Open();
    m_pDialog = std::make_unique<SCANUI>();
    m_pDialog->InitSlot(m_pWindow.get(), nKind);
    m_pDialog->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pDialog.get()));
    return *m_pDialog;
  }
  ~ProgressDialog() override { m_pDialog.reset(); }

  template <typename Widget>
  Widget* Part(const char* pszName) {
    return m_pDialog->findChild<Widget*>(pszName);
  }
  std::string Text() { return TextOf(Part<QLabel>("m_pTextLabel")); }
  int Bar() { return Part<QProgressBar>("progressBar")->value(); }
  std::string Summary() { return TextOf(m_pDialog->GetDetail().findChild<QLabel*>("m_pTextLabel")); }

  std::unique_ptr<SCANUI> m_pDialog;
};

struct KindCase {
  int nKind;
  const char* pszHead;
  const char* pszText;
};
constexpr KindCase kKinds[] = {
    {1, "  Scanning \n  Scan iTunes backup for files",
     "  Current Process: 0%\n  Scanning takes a while, please wait...\n"},
    {2, "  Search File\n  Searching iTunes backup for files", ""},
    {3, "  Preview File\n  \n", ""},
    {4, "  Recovering \n  Recover iTunes backup files to folder", ""},
};

TEST_F(ProgressDialog, ShowsItsKindInHeadingAndText) {
  for (const KindCase& one : kKinds) {
    OpenDialog(one.nKind);

    EXPECT_EQ(one.pszHead, TextOf(Part<QLabel>("headText"))) << one.nKind;
    EXPECT_EQ(one.pszText, Text()) << one.nKind;
    EXPECT_EQ(0, Bar()) << one.nKind;
  }
}

TEST_F(ProgressDialog, HasFixedSizeTitleAndParts) {
  for (const KindCase& one : kKinds) {
    const SCANUI& dialog = OpenDialog(one.nKind);
    auto* pBand = Part<QLabel>("headBand");
    auto* pHead = Part<QLabel>("headText");
    auto* pBar = Part<QProgressBar>("progressBar");
    auto* pText = Part<QLabel>("m_pTextLabel");
    auto* pRow = Part<QWidget>("buttonRow");

    EXPECT_EQ("Orvandel", dialog.windowTitle());
    EXPECT_EQ(QSize(500, 250), dialog.minimumSize());
    EXPECT_EQ(QSize(500, 250), dialog.maximumSize());
    EXPECT_EQ("background-color: rgb(79, 79 ,79);", pBand->styleSheet());
    EXPECT_EQ(50, pBand->minimumHeight());
    EXPECT_EQ(QRect(0, 10, 400, 50), pHead->geometry());
    EXPECT_TRUE(pHead->alignment() & Qt::AlignLeft);
    EXPECT_EQ("Calibri 11/87", FontOf(pHead));
    EXPECT_EQ(QColor(Qt::white), TextColour(pHead));
    EXPECT_EQ(0, pBar->minimum());
    EXPECT_EQ(100, pBar->maximum());
    EXPECT_FALSE(pBar->isTextVisible());
    EXPECT_EQ(QSize(440, 80), pText->minimumSize());
    EXPECT_EQ("Calibri 11/50", FontOf(pText));
    EXPECT_EQ(QColor(Qt::black), TextColour(pText));
    EXPECT_TRUE(pText->wordWrap());
    EXPECT_EQ(440, pRow->minimumWidth());
    EXPECT_EQ(40, pRow->height());
    EXPECT_EQ(std::vector<int>({0, 0, 0, 0}), MarginsOf(dialog.layout()));
    EXPECT_EQ(5, MarginsOf(dialog.layout()->itemAt(1)->layout())[0]);
    EXPECT_EQ(5, MarginsOf(dialog.layout()->itemAt(1)->layout())[2]);
  }
}

TEST_F(ProgressDialog, HasTheButtonsOfItsKind) {
  for (const KindCase& one : kKinds) {
    OpenDialog(one.nKind);
    std::vector<std::pair<std::string, QRect>> buttons;
    for (const QPushButton* pButton :
         m_pDialog->findChild<QWidget*>("buttonRow")->findChildren<QPushButton*>()) {
      buttons.emplace_back(pButton->text().toStdString(), pButton->geometry());
      EXPECT_TRUE(pButton->isFlat());
      EXPECT_EQ("Calibri 11/50", FontOf(pButton));
      EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
      EXPECT_EQ(dialog_style::main_button_style, pButton->styleSheet());
    }

    const std::vector<std::pair<std::string, QRect>> recovery = {{"Detail", QRect(100, 5, 80, 25)},
                                                                 {"Open Folder", QRect(200, 5, 80, 25)},
                                                                 {"Cancel", QRect(300, 5, 80, 25)}};
    const std::vector<std::pair<std::string, QRect>> others = {{"Cancel", QRect(205, 5, 80, 25)}};
    EXPECT_EQ(one.nKind == 4 ? recovery : others, buttons) << one.nKind;
  }
}

TEST_F(ProgressDialog, ScanSlotShowsTheValue) {
  OpenDialog(1);

  m_pDialog->ScanProcessCallBackSlot(37);

  EXPECT_EQ(37, Bar());
  EXPECT_EQ("  Current Process: 37%\n  Scanning takes a while, please wait...\n", Text());
  EXPECT_TRUE(m_pDialog->isVisible());
}

TEST_F(ProgressDialog, AScanValueOfAHundredOrMoreFinishesTheDialog) {
  for (const int nValue : {100, 101, 1000}) {
    OpenDialog(1);

    m_pDialog->ScanProcessCallBackSlot(nValue);

    EXPECT_EQ(100, Bar()) << nValue;
    EXPECT_EQ("  Current Process: 100%\n  Scanning takes a while, please wait...\n", Text()) << nValue;
    EXPECT_FALSE(m_pDialog->isVisible()) << nValue;
  }
}

TEST_F(ProgressDialog, IsConnectedToTheSignalsOfTheWindow) {
  OpenDialog(4);

  emit Window().ScanProcessCallBack(12);
  const int nScan = Bar();
  emit Window().RecoveryCallBack(3400, 0, 0, "/out/a.jpg");

  EXPECT_EQ(12, nScan);
  EXPECT_EQ(34, Bar());
}

TEST_F(ProgressDialog, RecoverySlotAddsHundredthsToPercent) {
  OpenDialog(4);
  struct Case {
    int nProgress, nPercent, nValue;
  };
  for (const Case& one : {Case{0, 0, 0}, Case{99, 5, 5}, Case{150, 5, 6}, Case{9999, 0, 99},
                          Case{0, 1000, 100}, Case{20000, 3, 100}}) {
    m_pDialog->RecoveryCallBackSlot(one.nProgress, one.nPercent, 0, "/out/a.jpg");

    EXPECT_EQ(one.nValue, Bar());
    EXPECT_EQ("  Process: " + std::to_string(one.nValue) + "%\n  Destination: /out/a.jpg", Text());
  }
}

TEST_F(ProgressDialog, RecoverySlotListsEachFileWithItsResult) {
  OpenDialog(4);

  m_pDialog->RecoveryCallBackSlot(100, 0, 0, "/out/a.jpg");
  m_pDialog->RecoveryCallBackSlot(200, 0, 13, "/out/b.jpg");
  m_pDialog->RecoveryCallBackSlot(300, 0, 0, "");

  const auto* pTable = m_pDialog->GetDetail().findChild<QTableWidget*>("m_pTable");
  ASSERT_EQ(2, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"/out/a.jpg", "Success"}), Cells(pTable, 0));
  EXPECT_EQ(std::vector<std::string>({"/out/b.jpg", "Failed"}), Cells(pTable, 1));
  EXPECT_EQ("  Recovery Detail\n  Sucess:1 Failed:1\n", Summary());
}

TEST_F(ProgressDialog, TheLastReportOfARecoveryTurnsCancelIntoFinished) {
  OpenDialog(4);
  Window().m_bCancelRecovery = true;

  m_pDialog->RecoveryCallBackSlot(0, 1000, 0, "");

  EXPECT_EQ(100, Bar());
  EXPECT_EQ("  Process: 100%\n  File recovery complete", Text());
  EXPECT_EQ("Finished", Part<QPushButton>("Cancel")->text());
  EXPECT_TRUE(m_pDialog->isVisible());
}

TEST_F(ProgressDialog, ALastReportBeforeTheFlagLeavesCancel) {
  OpenDialog(4);

  m_pDialog->RecoveryCallBackSlot(0, 1000, 0, "");

  EXPECT_EQ("Cancel", Part<QPushButton>("Cancel")->text());
}

TEST_F(ProgressDialog, TheFlagWithoutTheLastReportLeavesCancel) {
  OpenDialog(4);
  Window().m_bCancelRecovery = true;

  m_pDialog->RecoveryCallBackSlot(10000, 99, 0, "/out/a.jpg");

  EXPECT_EQ("Cancel", Part<QPushButton>("Cancel")->text());
}

TEST_F(ProgressDialog, SearchSlotShowsAndClosesOnceTheSearchHasFinished) {
  OpenDialog(2);

  m_pDialog->SearchCallBackSlot(40, "name");
  const std::string strText = Text();
  m_pDialog->SearchCallBackSlot(100, "name");
  const bool bOpenBefore = m_pDialog->isVisible();
  Window().m_bSearchFinished = true;
  m_pDialog->SearchCallBackSlot(100, "name");

  EXPECT_EQ("  Process: 40%\n  Searching drive for recovery files", strText);
  EXPECT_TRUE(bOpenBefore);
  EXPECT_FALSE(m_pDialog->isVisible());
  EXPECT_EQ(100, Bar());
}

TEST_F(ProgressDialog, PreviewSlotShowsAndClosesAtAHundred) {
  OpenDialog(3);

  m_pDialog->PreViewCallBackSlot(40, 7);
  const std::string strText = Text();
  const int nBar = Bar();
  m_pDialog->PreViewCallBackSlot(100, 7);

  EXPECT_EQ("  Process: 40%\n  Previewing file:", strText);
  EXPECT_EQ(40, nBar);
  EXPECT_FALSE(m_pDialog->isVisible());
}

TEST_F(ProgressDialog, OpenFolderOpensTheDestination) {
  UrlRecorder browser;
  OpenDialog(4);
  m_pDialog->SetSaveDir("/out/My Files");

  Click(Part<QPushButton>("Open Folder"));

  EXPECT_EQ(QStringList({"file:///out/My Files"}), browser.m_opened);
}

TEST_F(ProgressDialog, DetailOpensAtTheDialogsPlaceAndKeepsFilling) {
  OpenDialog(4);
  m_pDialog->move(120, 90);
  m_pDialog->RecoveryCallBackSlot(100, 0, 0, "/out/a.jpg");
  std::vector<int> rows;
  QPoint place;
  ModalSteps steps;
  steps.Then("CDetail", [&](QWidget* pDetail) {
    const auto* pTable = pDetail->findChild<QTableWidget*>("m_pTable");
    place = pDetail->pos();
    rows.push_back(pTable->rowCount());
    // Through the event queue, like a worker's report.
    QMetaObject::invokeMethod(
        m_pWindow.get(), [this] { emit Window().RecoveryCallBack(200, 0, 0, "/out/b.jpg"); },
        Qt::QueuedConnection);
  });
  steps.Then(
      "CDetail",
      [&](QWidget* pDetail) {
        rows.push_back(pDetail->findChild<QTableWidget*>("m_pTable")->rowCount());
        Click(pDetail->findChild<QPushButton*>("OK"));
      },
      [](QWidget* pDetail) { return pDetail->findChild<QTableWidget*>("m_pTable")->rowCount() == 2; });

  Click(Part<QPushButton>("Detail"));

  EXPECT_EQ(std::vector<int>({1, 2}), rows);
  EXPECT_EQ(m_pDialog->pos(), place);
  EXPECT_TRUE(m_pDialog->isVisible());
}

}  // namespace
