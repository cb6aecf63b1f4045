#include "app/detail_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

class DetailDialog : public testing::Test {
 protected:
  DetailDialog() {
    m_detail.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_detail));
  }
  QTableWidget* Table() { return m_detail.findChild<QTableWidget*>("m_pTable"); }
  std::string Summary() { return TextOf(m_detail.findChild<QLabel*>("m_pTextLabel")); }

  CDetail m_detail;
};

TEST_F(DetailDialog, HasFixedSizeTitleAndHead) {
  auto* pBand = m_detail.findChild<QLabel*>("headBand");
  auto* pText = m_detail.findChild<QLabel*>("m_pTextLabel");

  EXPECT_EQ("Orvandel", m_detail.windowTitle());
  EXPECT_EQ(QSize(600, 400), m_detail.minimumSize());
  EXPECT_EQ(QSize(600, 400), m_detail.maximumSize());
  EXPECT_EQ("background-color: rgb(79, 79 ,79);", pBand->styleSheet());
  EXPECT_EQ(60, pBand->minimumHeight());
  EXPECT_EQ(QRect(0, 10, 400, 40), pText->geometry());
  EXPECT_EQ("Calibri 11/50", FontOf(pText));
  EXPECT_EQ(QColor(Qt::white), TextColour(pText));
  EXPECT_EQ("  Recovery Detail\n\n  Sucess:0 Failed:0\n", Summary());
}

TEST_F(DetailDialog, TableHasItsColumnsAndLook) {
  const QTableWidget* pTable = Table();

  ASSERT_EQ(2, pTable->columnCount());
  EXPECT_EQ(0, pTable->rowCount());
  EXPECT_EQ("Name", pTable->horizontalHeaderItem(0)->text());
  EXPECT_EQ("Status", pTable->horizontalHeaderItem(1)->text());
  EXPECT_EQ(400, pTable->columnWidth(0));
  EXPECT_TRUE(pTable->horizontalHeader()->stretchLastSection());
  EXPECT_TRUE(pTable->verticalHeader()->isHidden());
  EXPECT_EQ(QAbstractItemView::NoEditTriggers, pTable->editTriggers());
  EXPECT_EQ(QAbstractItemView::SelectRows, pTable->selectionBehavior());
  EXPECT_EQ(QAbstractItemView::SingleSelection, pTable->selectionMode());
}

TEST_F(DetailDialog, AddsSuccessesAndFailuresAndCountsThem) {
  m_detail.AddTableItem("/out/a.jpg", 0);
  m_detail.AddTableItem("/out/b.jpg", 1);
  m_detail.AddTableItem("/out/ö.jpg", -1);
  m_detail.AddTableItem("/out/d.jpg", 0);

  const char* const names[] = {"/out/a.jpg", "/out/b.jpg", "/out/ö.jpg", "/out/d.jpg"};
  const bool successes[] = {true, false, false, true};

  ASSERT_EQ(4, Table()->rowCount());
  for (int i = 0; i < 4; ++i) {
    const QTableWidgetItem* pStatus = Table()->item(i, 1);
    EXPECT_EQ(names[i], Table()->item(i, 0)->text().toStdString());
    EXPECT_EQ(successes[i] ? "Success" : "Failed", pStatus->text().toStdString()) << i;
    EXPECT_EQ(!successes[i], pStatus->data(Qt::ForegroundRole).isValid()) << i;
    if (!successes[i]) {
      EXPECT_EQ(QColor(255, 0, 0), pStatus->foreground().color()) << i;
    }
    EXPECT_EQ(22, Table()->rowHeight(i)) << i;
  }
  EXPECT_EQ("  Recovery Detail\n  Sucess:2 Failed:2\n", Summary());
}

TEST_F(DetailDialog, OkAndRightClickCloseIt) {
  Click(m_detail.findChild<QPushButton*>("OK"));
  const bool bAfterOk = m_detail.isVisible();
  m_detail.show();
  QTest::mouseClick(m_detail.findChild<QWidget*>("headBand"), Qt::RightButton, Qt::NoModifier, {500, 20});

  EXPECT_FALSE(bAfterOk);
  EXPECT_FALSE(m_detail.isVisible());
  EXPECT_EQ("OK", m_detail.findChild<QPushButton*>("OK")->text());
}

TEST_F(DetailDialog, CanBeDraggedByItsHead) {
  QWidget* pBand = m_detail.findChild<QWidget*>("headBand");
  const QPoint before = m_detail.pos();
  const QPoint global = pBand->mapToGlobal(QPoint(500, 20));
  QMouseEvent press(QEvent::MouseButtonPress, QPoint(500, 20), global, Qt::LeftButton, Qt::LeftButton, {});

  QApplication::sendEvent(pBand, &press);
  QMouseEvent move(QEvent::MouseMove, QPoint(500, 20), global + QPoint(8, 8), Qt::NoButton, Qt::LeftButton,
                   {});
  QApplication::sendEvent(pBand, &move);

  EXPECT_EQ(before + QPoint(8, 8), m_detail.pos());
}

}  // namespace
