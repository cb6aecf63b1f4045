#include "ui/backup_table.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/styles.h"

using namespace orvandel;

namespace {
constexpr char kNoBackups[] =
    "No backup was found in the folders where iTunes keeps them.\n"
    "Press \"Select\" to choose the folder of a backup.";
constexpr QColor kHintColour(110, 110, 110);
}  // namespace

BackupTable::BackupTable() {
  setTabKeyNavigation(false);  // Tab leads on to the buttons
}

void BackupTable::keyPressEvent(QKeyEvent* pEvent) {
  switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!currentItem()) break;
      selectRow(currentRow());
      emit cellClicked(currentRow(), currentColumn());
      return;
    default:
      break;
  }
  const int nBefore = currentRow();
  QTableWidget::keyPressEvent(pEvent);
  if (currentRow() != nBefore && currentItem()) emit cellClicked(currentRow(), currentColumn());
}

QString BackupTable::Hint() {
  return kNoBackups;
}

void BackupTable::paintEvent(QPaintEvent* pEvent) {
  QTableWidget::paintEvent(pEvent);
  if (rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setFont(TextFont(12, 50));
  painter.setPen(kHintColour);
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, kNoBackups);
}
