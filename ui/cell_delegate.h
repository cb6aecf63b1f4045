#pragma once
#include <QStyledItemDelegate>

class QAbstractItemView;

/// Paints the cells of a table that shows texts from a backup. A text may have any length, and laying all of
/// it out would cost half a second a megabyte with each repaint: a cell paints and measures no more of its
/// text than any cell shows. The item keeps the whole text.
///
/// Main thread only; owned by the view.
class CellDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Longest text that is painted as it is, in UTF-16 units: several times what fits into the widest cell.
  static constexpr int kMostPainted = 2000;

  /// Becomes the delegate of a view, which owns it.
  static void Install(QAbstractItemView* pView);

  /// The text as it is, or for a long one the end that the view's elide mode keeps: its beginning, or its
  /// beginning and end, with an ellipsis for the rest.
  QString displayText(const QVariant& value, const QLocale& locale) const override;

  /// Shows tool tips as plain text, bounded like the cells'.
  bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  explicit CellDelegate(QAbstractItemView* pView);
  QString Painted(const QString& qstrText) const;

  QAbstractItemView* m_pView;
};
