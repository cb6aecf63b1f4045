#pragma once
#include <QTableWidget>
#include <QTreeWidget>

/// A table whose boxes follow the keyboard: the key that toggles one is told like a click on its cell, so
/// that what depends on the tick hears of it.
class KeyTickTable : public QTableWidget {
  Q_OBJECT

 public:
  using QTableWidget::QTableWidget;

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};

/// The same for a tree, and a click on its node.
class KeyTickTree : public QTreeWidget {
  Q_OBJECT

 public:
  using QTreeWidget::QTreeWidget;

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
};
