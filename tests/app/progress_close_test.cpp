#include <QApplication>
#include <QMouseEvent>
#include <QProcess>
#include <QProgressBar>
#include <QTest>

#include "app/progress_dialog.h"
#include "tests/app/endless_wait.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

constexpr int kWatch = 1500;  // milliseconds for which a wait must not end

struct CloseCase {
  int nKind;
  const char* pszQuestion;
  std::atomic<bool> DRUI::*pCancel;
};
constexpr CloseCase kCloseCases[] = {
    {1, "Are you sure to cancel the scanning?", &DRUI::m_bCancelScan},
    {2, "Are you sure to cancel the searching?", &DRUI::m_bCancelSearch},
    {3, "Are you sure to cancel the previewing?", &DRUI::m_bCancelPreview},
    {4, "Are you sure to cancel the recoverying?", &DRUI::m_bCancelRecovery},
};

class ProgressClose : public WindowTest {
 protected:
  void OpenDialog(int nKind) {
    if (!m_pWindow) Open();
    m_pDialog = std::make_unique<SCANUI>();
    m_pDialog->InitSlot(m_pWindow.get(), nKind);
    m_pDialog->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pDialog.get()));
  }
  ~ProgressClose() override { m_pDialog.reset(); }

  std::unique_ptr<SCANUI> m_pDialog;
};

TEST_F(ProgressClose, AsksTheQuestionOfItsKindAndNoKeepsTheDialog) {
  for (const CloseCase& one : kCloseCases) {
    OpenDialog(one.nKind);
    m_pDialog->ScanProcessCallBackSlot(30);
    ModalSteps steps;
    std::string strText;
    QRect box;
    steps.Then("CMessageBox", [&](QWidget* pBox) {
      strText = TextOf(pBox->findChild<QLabel*>("m_pTextLabel"));
      box = pBox->geometry();
      Click(pBox->findChild<QPushButton*>("NO"));
    });

    Click(m_pDialog->findChild<QPushButton*>("Cancel"));

    EXPECT_EQ(one.pszQuestion, strText);
    EXPECT_EQ(QRect(m_pDialog->x() + 62, m_pDialog->y() + 31, 400, 150), box) << one.nKind;
    EXPECT_TRUE(m_pDialog->isVisible()) << one.nKind;
    EXPECT_FALSE(Window().*one.pCancel) << one.nKind;
    EXPECT_EQ(30, m_pDialog->findChild<QProgressBar*>("progressBar")->value()) << one.nKind;
  }
}

TEST_F(ProgressClose, ARightClickAnywhereAsks) {
  OpenDialog(1);
  for (const char* pszPart : {"headBand", "m_pTextLabel", "buttonRow"}) {
    ModalSteps steps;
    steps.ThenClick("CMessageBox", "NO");

    QTest::mouseClick(m_pDialog->findChild<QWidget*>(pszPart), Qt::RightButton, Qt::NoModifier, {3, 3});

    EXPECT_TRUE(steps.Done()) << pszPart;
    EXPECT_TRUE(m_pDialog->isVisible()) << pszPart;
  }
}

TEST_F(ProgressClose, ConfirmedWithTheScanFinishedClosesAtOnceWithTheBarAtZero) {
  OpenDialog(1);
  m_pDialog->ScanProcessCallBackSlot(80);
  Window().m_bScanFinished = true;
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "OK");

  m_pDialog->close();

  EXPECT_FALSE(m_pDialog->isVisible());
  EXPECT_TRUE(Window().m_bCancelScan);
  EXPECT_EQ(0, m_pDialog->findChild<QProgressBar*>("progressBar")->value());
}

TEST_F(ProgressClose, AHundredAfterANoClosesWithoutAQuestion) {
  OpenDialog(1);
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "NO");
  m_pDialog->close();
  ASSERT_TRUE(m_pDialog->isVisible());

  m_pDialog->ScanProcessCallBackSlot(100);

  EXPECT_FALSE(m_pDialog->isVisible());
}

TEST_F(ProgressClose, WhatEndsWhileTheQuestionIsOpenClosesTheDialogAfterANo) {
  struct Case {
    int nKind;
    std::function<void(SCANUI&)> end;
    bool bStays;
  };
  const Case cases[] = {
      {1, [](SCANUI& dialog) { dialog.ScanProcessCallBackSlot(100); }, false},
      {2, [](SCANUI& dialog) { dialog.SearchCallBackSlot(100, ""); }, false},
      {3, [](SCANUI& dialog) { dialog.PreViewCallBackSlot(100, 0); }, false},
      {4, [](SCANUI& dialog) { dialog.RecoveryCallBackSlot(10000, 1000, 0, ""); }, true},
  };
  for (const Case& one : cases) {
    OpenDialog(one.nKind);
    Window().m_bSearchFinished = true;
    Window().m_bCancelRecovery = one.nKind == 4;  // set by the worker at its end
    ModalSteps steps;
    steps.Then("CMessageBox", [&](QWidget* pBox) {
      one.end(*m_pDialog);
      Click(pBox->findChild<QPushButton*>("NO"));
    });

    Click(m_pDialog->findChild<QPushButton*>("Cancel"));

    EXPECT_EQ(one.bStays, m_pDialog->isVisible()) << one.nKind;
    if (one.bStays) {
      EXPECT_EQ("Finished", m_pDialog->findChild<QPushButton*>("Cancel")->text());
      Click(m_pDialog->findChild<QPushButton*>("Cancel"));
      EXPECT_FALSE(m_pDialog->isVisible());
    }
    EXPECT_EQ(100, m_pDialog->findChild<QProgressBar*>("progressBar")->value()) << one.nKind;
  }
}

TEST_F(ProgressClose, AFinishedRecoveryAsksNothing) {
  for (const bool bByButton : {true, false}) {
    OpenDialog(4);
    Window().m_bCancelRecovery = true;
    m_pDialog->RecoveryCallBackSlot(0, 1000, 0, "");
    ASSERT_TRUE(m_pDialog->isVisible());

    if (bByButton)
      Click(m_pDialog->findChild<QPushButton*>("Cancel"));
    else
      QTest::mouseClick(m_pDialog.get(), Qt::RightButton, Qt::NoModifier, {250, 60});

    EXPECT_FALSE(m_pDialog->isVisible()) << bByButton;
    EXPECT_EQ(nullptr, QApplication::activeModalWidget()) << bByButton;
  }
}

TEST_F(ProgressClose, ConfirmedSearchAndPreviewEndOnceTheirFlagsAreSet) {
  // The wait checks these flags, although nothing in the program sets them.
  OpenDialog(2);
  Window().m_bSearchFinished = true;
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "OK");
  m_pDialog->close();
  const bool bSearchClosed = !m_pDialog->isVisible();
  OpenDialog(3);
  Window().m_bPreviewFinished = true;
  steps.ThenClick("CMessageBox", "OK");

  m_pDialog->close();

  EXPECT_TRUE(bSearchClosed);
  EXPECT_FALSE(m_pDialog->isVisible());
  EXPECT_TRUE(Window().m_bCancelSearch);
  EXPECT_TRUE(Window().m_bCancelPreview);
}

TEST_F(ProgressClose, CanBeDraggedByTheLeftButton) {
  OpenDialog(1);
  QWidget* pBand = m_pDialog->findChild<QWidget*>("headBand");
  const QPoint before = m_pDialog->pos();
  const QPoint global = pBand->mapToGlobal(QPoint(450, 20));
  QMouseEvent press(QEvent::MouseButtonPress, QPoint(450, 20), global, Qt::LeftButton, Qt::LeftButton, {});

  QApplication::sendEvent(pBand, &press);
  QMouseEvent move(QEvent::MouseMove, QPoint(450, 20), global + QPoint(-12, 9), Qt::NoButton, Qt::LeftButton,
                   {});
  QApplication::sendEvent(pBand, &move);

  EXPECT_EQ(before + QPoint(-12, 9), m_pDialog->pos());
}

class EndlessWait : public testing::TestWithParam<int> {};

TEST_P(EndlessWait, AConfirmedCancelNeverReturns) {
  QProcess process;
  QByteArray output;

  process.start(QCoreApplication::applicationFilePath(), {kEndlessWaitArgument, QString::number(GetParam())});
  const bool bCancelled =
      WaitFor([&] { return (output += process.readAllStandardOutput()).contains("cancelled"); });
  const bool bEnded = process.waitForFinished(kWatch);
  output += process.readAllStandardOutput();
  process.kill();
  process.waitForFinished(30000);

  EXPECT_TRUE(bCancelled) << output.toStdString();
  EXPECT_FALSE(bEnded);
  EXPECT_FALSE(output.contains("ended"));
}

INSTANTIATE_TEST_SUITE_P(Kind, EndlessWait, testing::Values(2, 3, 4));

}  // namespace
