#pragma once
#include <QTableWidget>
#include <QTreeWidget>

namespace orvandel {

/// A table that also works by keyboard: a key that toggles a check box emits the same signals as a click on
/// its cell, Return those of a double click. Tab leads on to the next widget.
class KeyTickTable : public QTableWidget {
  Q_OBJECT

 public:
  KeyTickTable() { setTabKeyNavigation(false); }

 signals:
  /// The user wants to go back to where this table was opened from: Backspace.
  void Left();

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};

/// The same for a tree and its nodes. Return is a click on the current node.
class KeyTickTree : public QTreeWidget {
  Q_OBJECT

 public:
  using QTreeWidget::QTreeWidget;

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};

}  // namespace orvandel
