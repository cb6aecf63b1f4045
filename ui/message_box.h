#pragma once
#include <QDialog>
#include <QLabel>
#include <QPoint>

#include "ui_dialog.h"

/// A message or a question. Created on the caller's stack: position it, call one of the Init functions, exec,
/// and read the answer. Main thread only.
class CMessageBox : public QDialog {
  Q_OBJECT

 public:
  explicit CMessageBox(QDialog* pParent = nullptr, Qt::WindowFlags flags = {});

  /// One button, "OK". The text wraps.
  void InitInfoDialog(const QString& qstrText);
  /// Buttons "NO" and "OK". The text breaks only at line feeds.
  void InitQuestionDialog(const QString& qstrText);
  /// 1 for OK, 0 for anything else.
  int GetMessageBoxRet() const { return m_nRet; }

 public slots:
  void btnSlotOK();
  void btnSlotNO();

 protected:
  void paintEvent(QPaintEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;

 private:
  void BuildForm(const QString& qstrText, const QString& qstrIcon);
  void AddButton(const char* pszText, const char* pszName, int nX, void (CMessageBox::*pfnSlot)());

  Ui_Dialog m_ui;
  QPoint m_ptDrag;
  QLabel* m_pTextLabel = nullptr;
  QLabel* m_pButtonStrip = nullptr;
  int m_nRet = 0;
};
