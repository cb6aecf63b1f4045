#include "ui/row_writer.h"

#include <QAbstractItemModel>
#include <QBrush>

#include "ui/styles.h"

namespace orvandel {

namespace {
constexpr QRgb kDeletedColour = qRgba(243, 115, 2, 255);
}

RowWriter::RowWriter(QTableWidget* pTable, const char* pszIcon)
    : m_pTable(pTable),
      m_font(TextFont(10, 50)),
      m_icon(pszIcon ? QIcon(pszIcon) : QIcon()),
      m_deletedIcon(":/image/delete.png") {}

RowWriter::~RowWriter() {
  m_pTable->model()->blockSignals(false);
  m_pTable->viewport()->update();
}

void RowWriter::SetRowCount(size_t nRows) {
  m_pTable->setRowCount(static_cast<int>(nRows));
  // The view knows the row count; it needs no signal for each cell.
  m_pTable->model()->blockSignals(true);
}

void RowWriter::Add(const Row& row) {
  for (int nColumn = 0; nColumn < row.cells.size(); ++nColumn) {
    auto* pItem = new QTableWidgetItem(row.cells[nColumn]);
    pItem->setFont(m_font);
    if (row.bDeleted) pItem->setForeground(QColor::fromRgba(kDeletedColour));
    if (nColumn == 0) {
      const QIcon& icon = row.bDeleted ? m_deletedIcon : m_icon;
      if (!icon.isNull()) pItem->setIcon(icon);
      if (row.bTicked) pItem->setCheckState(Qt::Checked);
      pItem->setData(Qt::UserRole, row.hidden);
    }
    m_pTable->setItem(m_nRow, nColumn, pItem);
  }
  ++m_nRow;
}

}  // namespace orvandel
