#pragma once
#include <QFont>
#include <QIcon>
#include <QStringList>
#include <QTableWidget>

/// Writes rows into a table from the top. The view hears of them all at once, when the writer goes.
class RowWriter {
 public:
  /// A row to write. Text of the cells, from the left.
  struct Row {
    QStringList cells;
    QVariant hidden;        ///< goes into Qt::UserRole of column 0
    bool bDeleted = false;  ///< the look and icon of a deleted record
    bool bTicked = false;   ///< gives the row a tick box, ticked
  };

  /// @param pszIcon resource of the icon of column 0; null for none.
  RowWriter(QTableWidget* pTable, const char* pszIcon);
  ~RowWriter();
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  void SetRowCount(size_t nRows);
  void Add(const Row& row);
  /// Leaves the next row blank.
  void AddBlank() { ++m_nRow; }

 private:
  QTableWidget* m_pTable;
  QFont m_font;
  int m_nRow = 0;
  QIcon m_icon;  // null for none
  QIcon m_deletedIcon;
};
