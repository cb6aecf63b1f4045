#include "ui/key_ticks.h"

namespace orvandel {

void KeyTickTable::keyPressEvent(QKeyEvent* pEvent) {
  const QTableWidgetItem* pItem = currentItem();
  const int nBefore = pItem ? pItem->checkState() : Qt::Unchecked;
  QTableWidget::keyPressEvent(pEvent);
  if (pItem && pItem == currentItem() && pItem->checkState() != nBefore)
    emit cellClicked(pItem->row(), pItem->column());
}

void KeyTickTree::keyPressEvent(QKeyEvent* pEvent) {
  QTreeWidgetItem* pItem = currentItem();
  const int nBefore = pItem ? pItem->checkState(0) : Qt::Unchecked;
  QTreeWidget::keyPressEvent(pEvent);
  if (pItem && pItem == currentItem() && pItem->checkState(0) != nBefore) emit itemClicked(pItem, 0);
}

}  // namespace orvandel
