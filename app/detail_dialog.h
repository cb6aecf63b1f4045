#pragma once
#include <QDialog>
#include <QLabel>
#include <QTableWidget>

#include "ui_dialog.h"

/// The list of every file of a recovery with its result. Main thread only.
class CDetail : public QDialog {
  Q_OBJECT

 public:
  explicit CDetail(QDialog* pParent = nullptr, Qt::WindowFlags flags = {});

  /// Adds a row. @param nStatus 0 for success; anything else is shown as failed, in red.
  void AddTableItem(const QString& qstrName, int nStatus);

 public slots:
  void btnSlot();

 protected:
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;

 private:
  QPoint m_ptDrag;
  Ui_Dialog m_ui;
  QTableWidget* m_pTable = nullptr;
  QLabel* m_pTextLabel = nullptr;
  int m_nSuccess = 0;
  int m_nFailed = 0;
};
