#pragma once
#include <QTableWidget>

namespace orvandel {

/// The list of backups. Return and Space choose the current row like a click; an empty list says what to do.
class BackupTable : public QTableWidget {
  Q_OBJECT

 public:
  BackupTable();

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
};

}  // namespace orvandel
