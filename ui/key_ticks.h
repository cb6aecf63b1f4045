#pragma once
#include <QTableWidget>
#include <QTreeWidget>

namespace orvandel {

/// A table whose check boxes also work by keyboard: a key that toggles one emits the same signals as a click
/// on its cell.
class KeyTickTable : public QTableWidget {
  Q_OBJECT

 public:
  using QTableWidget::QTableWidget;

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};

/// The same for a tree and its nodes.
class KeyTickTree : public QTreeWidget {
  Q_OBJECT

 public:
  using QTreeWidget::QTreeWidget;

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};

}  // namespace orvandel
