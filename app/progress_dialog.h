#pragma once
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "app/detail_dialog.h"
#include "ui_dialog.h"

class DRUI;

/// The modal dialog in which the main thread sits while a worker runs. Shows what the worker reports, asks
/// before a cancel, and blocks until the worker has stopped. One at a time, on the stack of who starts the
/// worker.
class SCANUI : public QDialog {
  Q_OBJECT

 public:
  enum Operation { kScan = 1, kSearch = 2, kPreview = 3, kRecovery = 4 };

  explicit SCANUI(QDialog* pParent = nullptr, Qt::WindowFlags flags = {});

  /// The destination of a recovery, for the button that opens it.
  void SetSaveDir(const QString& qstrFolder);
  /// Takes owner and kind of operation, builds the content and listens to the owner's signals.
  void InitSlot(DRUI* pWindow, int nOprType);
  void InitDialog();
  CDetail& GetDetail() { return m_detail; }

 public slots:
  void btnSlot();
  void btnDetail();
  void btnOpenFolder();
  void ScanProcessCallBackSlot(int nProgress);
  void RecoveryCallBackSlot(int nProgress, int nPercent, int nErrorCode, QString pRecoveryFileName);
  void SearchCallBackSlot(int nProgress, QString pRecoveryFileName);
  void PreViewCallBackSlot(int nProgress, int nRet);

 protected:
  void closeEvent(QCloseEvent* pEvent) override;
  void reject() override;
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;

 private:
  bool ConfirmsCancel();
  void WaitForWorker();
  void AddButtons(QWidget* pRow);

  static int m_nOprType;
  static QProgressBar* m_progressBar;
  static bool m_bIsFinished;
  static int m_nError;

  QPoint m_ptDrag;
  Ui_Dialog m_ui;
  QLabel* m_pTextLabel = nullptr;
  DRUI* m_pWindow = nullptr;
  QString m_strFileName;
  QPushButton* m_pCancelButton = nullptr;  // of a recovery
  QString m_strSaveDir;
  CDetail m_detail;
};
