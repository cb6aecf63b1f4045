#include "ui/header_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>

namespace {
constexpr QRect kBoxRect(3, 5, 21, 21);  // relative to the header, independent of the section
}

CCheckBoxHeaderView::CCheckBoxHeaderView(int nCheckSection, Qt::Orientation orientation, QWidget* pParent)
    : QHeaderView(orientation, pParent), m_nCheckSection(nCheckSection) {}

void CCheckBoxHeaderView::paintSection(QPainter* pPainter, const QRect& rect, int nLogicalIndex) const {
  pPainter->save();
  QHeaderView::paintSection(pPainter, rect, nLogicalIndex);
  pPainter->restore();
  if (nLogicalIndex != m_nCheckSection) return;
  QStyleOptionButton option;
  option.rect = kBoxRect;
  option.state = m_bChecked ? QStyle::State_On : QStyle::State_Off;
  style()->drawControl(QStyle::CE_CheckBox, &option, pPainter);
}

void CCheckBoxHeaderView::mousePressEvent(QMouseEvent* pEvent) {
  if (visualIndexAt(qRound(pEvent->position().x())) == m_nCheckSection) {
    m_bChecked = !m_bChecked;
    updateSection(m_nCheckSection);
    emit checkStausChange(m_bChecked);
  }
  QHeaderView::mousePressEvent(pEvent);
}
