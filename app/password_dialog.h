#pragma once
#include <QDialog>
#include <QLineEdit>

#include "ui_dialog.h"

/// Asks for the password of an encrypted backup; the input is not masked. Created on the caller's stack.
/// Main thread only.
class CPasswordUI : public QDialog {
  Q_OBJECT

 public:
  explicit CPasswordUI(QDialog* pParent = nullptr, Qt::WindowFlags flags = {});

  void InitDialog();
  /// 0 after OK, 1 otherwise.
  int GetResult() const { return m_nResult; }
  QString GetPassword() const;

 public slots:
  void btnSlotOK();
  void btnSlotNO();

 protected:
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;

 private:
  QPoint m_ptDrag;
  Ui_Dialog m_ui;
  QLineEdit* m_pLineEdit = nullptr;
  int m_nResult = 1;
};
