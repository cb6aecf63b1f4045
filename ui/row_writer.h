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
    QString icon;           ///< resource of the icon of column 0; empty for none
    bool bDeleted = false;  ///< the look of a deleted record, whatever the icon
    bool bTicked = false;   ///< gives the row a tick box, ticked
  };

  explicit RowWriter(QTableWidget* pTable);
  ~RowWriter();
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  void SetRowCount(size_t nRows);
  void Add(const Row& row);
  /// Leaves the next row blank.
  void AddBlank() { ++m_nRow; }

 private:
  const QIcon& Icon(const QString& qstrResource);

  QTableWidget* m_pTable;
  QFont m_font;
  int m_nRow = 0;
  QString m_iconResource;  // the icon below; all live rows of a table share one
  QIcon m_icon;
  QIcon m_deletedIcon;
};
