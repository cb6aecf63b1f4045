#include "ui/row_writer.h"

#include <QAbstractItemModel>
#include <QBrush>

#include "ui/styles.h"

namespace {
constexpr QRgb kDeletedColour = qRgba(243, 115, 2, 255);
}

RowWriter::RowWriter(QTableWidget* pTable)
    : m_pTable(pTable), m_font(TextFont(10, 50)), m_deletedIcon(":/image/delete.png") {}

RowWriter::~RowWriter() {
  m_pTable->model()->blockSignals(false);
  m_pTable->viewport()->update();
}

void RowWriter::SetRowCount(size_t nRows) {
  m_pTable->setRowCount(static_cast<int>(nRows));
  // The view knows its rows now; it needn't hear of each cell that gets its content.
  m_pTable->model()->blockSignals(true);
}

const QIcon& RowWriter::Icon(const QString& qstrResource) {
  if (m_iconResource != qstrResource) {
    m_iconResource = qstrResource;
    m_icon = QIcon(qstrResource);
  }
  return m_icon;
}

void RowWriter::Add(const Row& row) {
  for (int nColumn = 0; nColumn < row.cells.size(); ++nColumn) {
    auto* pItem = new QTableWidgetItem(row.cells[nColumn]);
    pItem->setFont(m_font);
    if (row.bDeleted) pItem->setForeground(QColor::fromRgba(kDeletedColour));
    if (nColumn == 0) {
      if (row.bDeleted)
        pItem->setIcon(m_deletedIcon);
      else if (!row.icon.isEmpty())
        pItem->setIcon(Icon(row.icon));
      if (row.bTicked) pItem->setCheckState(Qt::Checked);
      pItem->setData(Qt::UserRole, row.hidden);
    }
    m_pTable->setItem(m_nRow, nColumn, pItem);
  }
  ++m_nRow;
}
