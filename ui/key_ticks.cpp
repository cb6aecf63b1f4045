#include "ui/key_ticks.h"

#include <QKeyEvent>

namespace orvandel {

namespace {
bool IsReturn(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}
}  // namespace

void KeyTickTable::keyPressEvent(QKeyEvent* pEvent) {
  const QTableWidgetItem* pItem = currentItem();
  if (IsReturn(*pEvent) && pItem) {
    const int nRow = pItem->row();
    const int nColumn = pItem->column();
    emit cellClicked(nRow, nColumn);
    emit cellDoubleClicked(nRow, nColumn);
    return;
  }
  if (pEvent->key() == Qt::Key_Backspace) {
    emit Left();
    return;
  }
  const int nBefore = pItem ? pItem->checkState() : Qt::Unchecked;
  QTableWidget::keyPressEvent(pEvent);
  if (pItem && pItem == currentItem() && pItem->checkState() != nBefore)
    emit cellClicked(pItem->row(), pItem->column());
}

void KeyTickTree::keyPressEvent(QKeyEvent* pEvent) {
  QTreeWidgetItem* pItem = currentItem();
  if (IsReturn(*pEvent) && pItem) {
    emit itemClicked(pItem, 0);
    return;
  }
  const int nBefore = pItem ? pItem->checkState(0) : Qt::Unchecked;
  QTreeWidget::keyPressEvent(pEvent);
  if (pItem && pItem == currentItem() && pItem->checkState(0) != nBefore) emit itemClicked(pItem, 0);
}

}  // namespace orvandel
