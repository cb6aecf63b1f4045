#pragma once
#include <QStyledItemDelegate>

class QAbstractItemView;

namespace orvandel {

/// Paints table cells with text from a backup. Such text may be arbitrarily long, and laying it out takes
/// half a second per megabyte on each repaint, so only as much as a cell can show is measured and painted.
/// The item keeps the whole text.
///
/// Main thread only; owned by the view.
class CellDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Longest text that is painted unshortened, in UTF-16 units; several times what fits into the widest cell.
  static constexpr int kMostPainted = 2000;

  /// Creates a delegate and installs it in a view, which takes ownership.
  static void Install(QAbstractItemView* pView);

  /// Returns the text itself, or for a long one the part that the view's elide mode keeps (the beginning, or
  /// the beginning and the end) with an ellipsis for the rest.
  QString displayText(const QVariant& value, const QLocale& locale) const override;

  /// Shows tool tips as plain text, with the same length limit.
  void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const override;
  bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  explicit CellDelegate(QAbstractItemView* pView);
  QString Painted(const QString& qstrText) const;

  QAbstractItemView* m_pView;
};

}  // namespace orvandel
