#include "ui/cell_delegate.h"

#include <QElapsedTimer>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

#include "app/detail_dialog.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

constexpr int kHugeText = 1024 * 1024;
constexpr int kRepaints = 5;
constexpr int kColumnWidth = 150;
// A repaint that lays out the whole text takes several hundred times as long as one of a short text.
constexpr qint64 kMostTimes = 20;
constexpr qint64 kSlack = 20 * 1000 * 1000;  // nanoseconds

QString Words(int nUnits) {
  const QString qstrWords = "Eine Nachricht mit Worten, die umbrechen. ";
  return qstrWords.repeated(nUnits / qstrWords.size() + 1).left(nUnits);
}

/// Time of the fastest of several repaints, in nanoseconds.
qint64 TimeOfRepaint(QTableWidget* pTable) {
  qint64 nQuickest = std::numeric_limits<qint64>::max();
  for (int i = 0; i < kRepaints; ++i) {
    QElapsedTimer timer;
    timer.start();
    pTable->viewport()->grab();
    nQuickest = std::min(nQuickest, timer.nsecsElapsed());
  }
  return nQuickest;
}

void PutText(QTableWidget* pTable, const QString& qstrText) {
  pTable->setRowCount(1);
  for (int i = 0; i < pTable->columnCount(); ++i) {
    auto* pItem = new QTableWidgetItem(qstrText);
    pItem->setCheckState(Qt::Checked);
    pTable->setItem(0, i, pItem);
  }
}

QImage Picture(QTableWidget* pTable) {
  return pTable->viewport()->grab().toImage();
}

class CellDelegateTest : public WindowTest {
 protected:
  /// A table with the delegate, or with Qt's.
  static std::unique_ptr<QTableWidget> MakeTable(bool bWithDelegate,
                                                 Qt::TextElideMode nElide = Qt::ElideRight) {
    auto pTable = std::make_unique<QTableWidget>(0, 2);
    pTable->setTextElideMode(nElide);
    pTable->setWordWrap(nElide != Qt::ElideMiddle);
    pTable->resize(400, 200);
    pTable->setColumnWidth(0, kColumnWidth);
    if (bWithDelegate) CellDelegate::Install(pTable.get());
    return pTable;
  }
};

TEST_F(CellDelegateTest, AHugeTextCostsNoMoreThanAShortOneInAnyTableOfUntrustedTexts) {
  OpenDataScreen();
  CDetail detail;
  QList<QTableWidget*> tables = Window().findChildren<QTableWidget*>();
  tables << detail.findChild<QTableWidget*>("m_pTable");
  ASSERT_EQ(14, tables.size()) << "twelve of the data screen, that of the backups, that of a recovery";
  const QString qstrHuge = Words(kHugeText);
  for (QTableWidget* pTable : tables) {
    PutText(pTable, "short");
    const qint64 nShort = TimeOfRepaint(pTable);
    PutText(pTable, qstrHuge);

    const qint64 nHuge = TimeOfRepaint(pTable);

    EXPECT_LT(nHuge, kMostTimes * nShort + kSlack) << pTable->objectName().toStdString();
    EXPECT_TRUE(pTable->item(0, 0)->text() == qstrHuge) << "the item keeps its text";
  }
}

TEST_F(CellDelegateTest, ACellLooksAsWithoutTheDelegate) {
  for (const Qt::TextElideMode nElide : {Qt::ElideRight, Qt::ElideMiddle}) {
    const auto pTable = MakeTable(true, nElide);
    const auto pPlain = MakeTable(false, nElide);
    for (const QString& qstrText : {QString("short"), QString(), QString("two\nlines"), Words(300),
                                    Words(CellDelegate::kMostPainted)}) {
      PutText(pTable.get(), qstrText);
      PutText(pPlain.get(), qstrText);

      EXPECT_EQ(Picture(pPlain.get()), Picture(pTable.get())) << qstrText.toStdString();
      pTable->resizeColumnToContents(0);
      pPlain->resizeColumnToContents(0);
      EXPECT_EQ(pPlain->columnWidth(0), pTable->columnWidth(0)) << qstrText.toStdString();
      pTable->setColumnWidth(0, kColumnWidth);
      pPlain->setColumnWidth(0, kColumnWidth);
    }
  }
}

TEST_F(CellDelegateTest, TheVisiblePartOfALongTextLooksAsWithoutTheDelegate) {
  const QString cases[] = {Words(3 * CellDelegate::kMostPainted),
                           QString("line\n").repeated(CellDelegate::kMostPainted)};
  for (const QString& qstrText : cases) {
    for (const Qt::TextElideMode nElide : {Qt::ElideRight, Qt::ElideMiddle}) {
      const auto pTable = MakeTable(true, nElide);
      const auto pPlain = MakeTable(false, nElide);
      PutText(pTable.get(), qstrText);
      PutText(pPlain.get(), qstrText);

      EXPECT_EQ(Picture(pPlain.get()), Picture(pTable.get())) << qstrText.left(20).toStdString();
    }
  }
}

TEST_F(CellDelegateTest, ALongTextIsCutWhereItsTableElides) {
  const QString qstrText = "begin" + QString(kHugeText, 'x') + "end";
  const auto pRight = MakeTable(true);
  const auto pMiddle = MakeTable(true, Qt::ElideMiddle);

  const QString qstrRight =
      static_cast<CellDelegate*>(pRight->itemDelegate())->displayText(qstrText, QLocale());
  const QString qstrMiddle =
      static_cast<CellDelegate*>(pMiddle->itemDelegate())->displayText(qstrText, QLocale());

  EXPECT_EQ("begin" + QString(CellDelegate::kMostPainted - 5, 'x') + QChar(0x2026), qstrRight);
  EXPECT_EQ(CellDelegate::kMostPainted + 1, qstrMiddle.size());
  EXPECT_TRUE(qstrMiddle.startsWith("begin"));
  EXPECT_TRUE(qstrMiddle.endsWith("end"));
}

TEST_F(CellDelegateTest, ACutNeverSplitsACharacterOfTwoUnits) {
  const QString qstrText = QString(CellDelegate::kMostPainted / 2 - 1, 'x') +
                           QString::fromUcs4(U"\U0001F600").repeated(CellDelegate::kMostPainted + 1) + "y";
  for (const Qt::TextElideMode nElide : {Qt::ElideRight, Qt::ElideMiddle}) {
    const auto pTable = MakeTable(true, nElide);

    const QString qstrPainted =
        static_cast<CellDelegate*>(pTable->itemDelegate())->displayText(qstrText, QLocale());

    EXPECT_TRUE(qstrPainted.isValidUtf16()) << nElide;
    EXPECT_LT(qstrPainted.size(), CellDelegate::kMostPainted + 2) << nElide;
  }
}

TEST_F(CellDelegateTest, AToolTipIsBoundedPlainText) {
  CDetail detail;
  auto* pTable = detail.findChild<QTableWidget*>("m_pTable");
  const QString qstrName = "<b>name</b>" + QString(kHugeText, 'x');
  detail.AddTableItem(qstrName, 0);
  detail.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&detail));
  const QPoint place = pTable->visualItemRect(pTable->item(0, 0)).center();
  QHelpEvent event(QEvent::ToolTip, place, pTable->viewport()->mapToGlobal(place));

  QApplication::sendEvent(pTable->viewport(), &event);

  EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;name")) << QToolTip::text().left(40).toStdString();
  EXPECT_LT(QToolTip::text().size(), 2 * CellDelegate::kMostPainted);
  EXPECT_EQ(qstrName, pTable->item(0, 0)->toolTip());
  QToolTip::hideText();
}

TEST(CellDelegateOfSelectedRow, PaintsItsIconAsItIs) {
  QPixmap pixmap(16, 16);
  pixmap.fill(Qt::red);
  QTableWidget table(1, 1);
  CellDelegate::Install(&table);
  auto* pItem = new QTableWidgetItem(QIcon(pixmap), QString());
  table.setItem(0, 0, pItem);
  table.resize(200, 100);

  pItem->setSelected(true);

  const QRect cell = table.visualItemRect(pItem);
  const QImage image = table.viewport()->grab(cell).toImage();
  int nRed = 0;
  for (int nY = 0; nY < image.height(); ++nY) {
    for (int nX = 0; nX < image.width(); ++nX) nRed += image.pixelColor(nX, nY) == QColor(Qt::red);
  }
  EXPECT_EQ(16 * 16, nRed);
}

}  // namespace
