#include "ui/header_view.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

namespace {

class HeaderView : public testing::Test {
 protected:
  HeaderView() : m_table(2, 3), m_pHeader(new CCheckBoxHeaderView(1, Qt::Horizontal, &m_table)) {
    m_table.setHorizontalHeader(m_pHeader);
    m_pHeader->setMinimumHeight(30);
    for (int i = 0; i < 3; ++i) m_table.setColumnWidth(i, 100);
    m_table.resize(400, 200);
    m_table.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_table));
  }

  void ClickAt(int nX) {
    QTest::mouseClick(m_pHeader->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(nX, 15));
  }

  QTableWidget m_table;
  CCheckBoxHeaderView* m_pHeader;
};

TEST_F(HeaderView, AClickOnItsSectionTogglesAndEmits) {
  QSignalSpy changes(m_pHeader, &CCheckBoxHeaderView::checkStausChange);

  ClickAt(150);
  ClickAt(150);

  ASSERT_EQ(2, changes.count());
  EXPECT_TRUE(changes[0][0].toBool());
  EXPECT_FALSE(changes[1][0].toBool());
}

TEST_F(HeaderView, AClickOnAnotherSectionEmitsNothing) {
  QSignalSpy changes(m_pHeader, &CCheckBoxHeaderView::checkStausChange);
  QSignalSpy presses(m_pHeader, &QHeaderView::sectionPressed);
  m_pHeader->setSectionsClickable(true);

  ClickAt(50);
  ClickAt(250);

  EXPECT_EQ(0, changes.count());
  EXPECT_EQ(2, presses.count()) << "the plain header gets every press";
}

TEST_F(HeaderView, APressOnItsSectionReachesThePlainHeaderToo) {
  QSignalSpy presses(m_pHeader, &QHeaderView::sectionPressed);
  m_pHeader->setSectionsClickable(true);

  ClickAt(150);

  ASSERT_EQ(1, presses.count());
  EXPECT_EQ(1, presses[0][0].toInt());
}

/// Makes the painting of a section accessible.
class PaintedHeader : public CCheckBoxHeaderView {
 public:
  using CCheckBoxHeaderView::CCheckBoxHeaderView;
  using CCheckBoxHeaderView::paintSection;
};

TEST_F(HeaderView, PaintsTheBoxAtItsFixedPlaceForItsSectionAlone) {
  PaintedHeader header(1, Qt::Horizontal);
  header.setModel(m_table.model());
  const auto paint = [&](int nSection) {
    QImage image(300, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    header.paintSection(&painter, QRect(200, 0, 100, 30), nSection);
    painter.end();
    return image.copy(0, 0, 200, 40);  // beside the section
  };
  QImage blank(200, 40, QImage::Format_RGB32);
  blank.fill(Qt::white);

  const QImage other = paint(0);
  const QImage own = paint(1);

  EXPECT_EQ(blank, other);
  EXPECT_NE(blank, own);
  QImage outside = own;
  QPainter painter(&outside);
  painter.fillRect(QRect(QPoint(3, 5), QPoint(23, 25)), Qt::white);
  painter.end();
  EXPECT_EQ(blank, outside) << "something is painted outside (3, 5) to (23, 25)";
}

}  // namespace
