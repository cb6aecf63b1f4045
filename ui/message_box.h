#pragma once
#include <QDialog>
#include <QLabel>
#include <QPoint>

#include "ui_dialog.h"

/// Tells the user something, or asks a question. Lives on the caller's stack: place it, Init one of the two
/// forms, exec, and read the answer. Main thread only.
class CMessageBox : public QDialog {
  Q_OBJECT

 public:
  explicit CMessageBox(QDialog* pParent = nullptr, Qt::WindowFlags flags = {});

  /// The form with one button, "OK". Its text wraps.
  void InitInfoDialog(const QString& qstrText);
  /// The form with "NO" and "OK". Its text breaks at its line feeds alone.
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
