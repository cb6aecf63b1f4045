#pragma once
#include <QFont>
#include <QIcon>
#include <QStringList>
#include <QTableWidget>

namespace orvandel {

/// Writes rows into a table from the top. The view is notified once, on destruction.
class RowWriter {
 public:
  /// A row to write.
  struct Row {
    QStringList cells;
    QVariant hidden;        ///< stored in Qt::UserRole of column 0
    bool bDeleted = false;  ///< shown with the style and icon of a deleted record
    bool bTicked = false;   ///< adds a ticked check box
  };

  /// @param pszIcon resource path of the icon in column 0; null for none.
  RowWriter(QTableWidget* pTable, const char* pszIcon);
  ~RowWriter();
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  void SetRowCount(size_t nRows);
  void Add(const Row& row);
  /// Skips a row, leaving it blank.
  void AddBlank() { ++m_nRow; }

 private:
  QTableWidget* m_pTable;
  QFont m_font;
  int m_nRow = 0;
  QIcon m_icon;  // null for none
  QIcon m_deletedIcon;
};

}  // namespace orvandel
