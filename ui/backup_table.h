#pragma once
#include <QTableWidget>

namespace orvandel {

/// The list of backups. The arrow keys, Return and Space choose the current row like a click, so that what is
/// marked is what will be scanned. An empty list says what to do.
class BackupTable : public QTableWidget {
  Q_OBJECT

 public:
  BackupTable();

  /// What an empty list says.
  static QString Hint();

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
};

}  // namespace orvandel
