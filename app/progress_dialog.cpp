#include "app/progress_dialog.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QMouseEvent>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>

#include "app/dialog_parts.h"
#include "app/hanging_label.h"
#include "ui/busy_cursor.h"
#include "ui/drag.h"
#include "ui/message_box.h"
#include "ui/styles.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

constexpr int kWidth = 500;
constexpr int kHeight = 250;
constexpr int kMomentForFlag = 1000;  // milliseconds
constexpr char kWaitText[] = "Scanning takes a while, please wait...";
constexpr char kFinished[] = "Finished";

/// What the kinds of operation differ by.
struct Kind {
  const char* pszHead;  // "%1" is the name of the file
  const char* pszQuestion;
  std::atomic<bool> DRUI::*pCancel;
  std::atomic<bool> DRUI::*pFinished;
};

const Kind& KindOf(int nOprType) {
  static const Kind kinds[] = {
      {"  Scanning \n  Scan iTunes backup for files", "Are you sure to cancel the scanning?",
       &DRUI::m_bCancelScan, &DRUI::m_bScanFinished},
      {"  Search File\n  Searching iTunes backup for files", "Are you sure to cancel the searching?",
       &DRUI::m_bCancelSearch, &DRUI::m_bSearchFinished},
      {"  Preview File\n  %1\n", "Are you sure to cancel the previewing?", &DRUI::m_bCancelPreview,
       &DRUI::m_bPreviewFinished},
      {"  Recovering \n  Recover iTunes backup files to folder", "Are you sure to cancel the recoverying?",
       &DRUI::m_bCancelRecovery, &DRUI::m_bRecoveryFinished},
  };
  return kinds[nOprType - 1];
}

}  // namespace

int SCANUI::m_nOprType = SCANUI::kScan;
QProgressBar* SCANUI::m_progressBar = nullptr;
bool SCANUI::m_bIsFinished = false;
int SCANUI::m_nError = 0;

SCANUI::SCANUI(QDialog*, Qt::WindowFlags flags) : QDialog(nullptr, flags) {
  m_ui.setupUi(this);
  setWindowTitle("Orvandel");
  setWindowIcon(QIcon(":/image/logo.ico"));
  setFixedSize(kWidth, kHeight);
  m_bIsFinished = false;
}

void SCANUI::SetSaveDir(const QString& qstrFolder) {
  m_strSaveDir = qstrFolder;
}

void SCANUI::InitSlot(DRUI* pWindow, int nOprType) {
  m_pWindow = pWindow;
  m_nOprType = nOprType;
  InitDialog();
  m_progressBar->setValue(0);
  m_pTextLabel->setText(nOprType == kScan ? QString("  Current Process: 0%\n  %1\n").arg(kWaitText)
                                          : QString());
  connect(pWindow, &DRUI::ScanProcessCallBack, this, &SCANUI::ScanProcessCallBackSlot);
  connect(pWindow, qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), this,
          &SCANUI::RecoveryCallBackSlot);
  // Search and preview have slots here, and no signal of the window leads to them yet.
}

void SCANUI::InitDialog() {
  m_bIsFinished = false;
  QLabel* pHeadText = nullptr;
  QLabel* pBand = CreateHeadBand(50, 50, pHeadText);
  QString qstrHead = KindOf(m_nOprType).pszHead;
  pHeadText->setText(m_nOprType == kPreview ? qstrHead.arg(m_strFileName) : qstrHead);

  m_progressBar = new QProgressBar;
  m_progressBar->setObjectName("progressBar");
  m_progressBar->setAccessibleName("Progress");
  m_progressBar->setRange(0, 100);
  m_progressBar->setValue(0);
  m_progressBar->setTextVisible(false);

  m_pTextLabel = new HangingLabel;
  m_pTextLabel->setObjectName("m_pTextLabel");
  m_pTextLabel->setMinimumSize(width() - 60, 80);
  m_pTextLabel->setFont(TextFont(11, 50));
  m_pTextLabel->setWordWrap(true);
  QPalette palette = m_pTextLabel->palette();
  palette.setColor(QPalette::WindowText, Qt::black);
  m_pTextLabel->setPalette(palette);

  auto* pRow = new QWidget;
  pRow->setObjectName("buttonRow");
  pRow->setMinimumWidth(width() - 60);
  pRow->setFixedHeight(40);
  AddButtons(pRow);

  auto* pInner = new QVBoxLayout;
  pInner->setContentsMargins(5, 0, 5, 0);
  pInner->addWidget(m_progressBar);
  pInner->addStretch(2);
  pInner->addWidget(m_pTextLabel);
  pInner->addWidget(pRow);
  auto* pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(pBand);
  pLayout->addLayout(pInner);
}

void SCANUI::AddButtons(QWidget* pRow) {
  struct Button {
    const char* pszText;
    int nX;
    void (SCANUI::*pfnSlot)();
  };
  const std::vector<Button> recoveryButtons = {{"Detail", 100, &SCANUI::btnDetail},
                                               {"Open Folder", 200, &SCANUI::btnOpenFolder},
                                               {"Cancel", 300, &SCANUI::btnSlot}};
  const std::vector<Button> otherButtons = {{"Cancel", (width() - 10) / 2 - 40, &SCANUI::btnSlot}};
  for (const Button& button : m_nOprType == kRecovery ? recoveryButtons : otherButtons) {
    QPushButton* pButton = CreateDialogButton(button.pszText, pRow);
    pButton->setObjectName(button.pszText);
    pButton->move(button.nX, 5);
    connect(pButton, &QPushButton::clicked, this, button.pfnSlot);
    if (m_nOprType == kRecovery) m_pCancelButton = pButton;  // the last one
  }
}

void SCANUI::ScanProcessCallBackSlot(int nProgress) {
  nProgress = std::min(nProgress, 100);
  m_progressBar->setValue(nProgress);
  m_pTextLabel->setText(QString("  Current Process: %1%\n  %2\n").arg(nProgress).arg(kWaitText));
  if (nProgress == 100) {
    m_bIsFinished = true;
    close();
  }
  m_nError = 0;
}

void SCANUI::RecoveryCallBackSlot(int nProgress, int nPercent, int nErrorCode, QString pRecoveryFileName) {
  const int nValue = std::min(nProgress / 100 + nPercent, 100);
  m_progressBar->setValue(nValue);
  m_strFileName = pRecoveryFileName;
  if (!m_strFileName.isEmpty()) {
    m_detail.AddTableItem(m_strFileName, nErrorCode == 0 ? 0 : 1);
    m_pTextLabel->setText(QString("  Process: %1%\n  Destination: %2").arg(nValue).arg(m_strFileName));
  } else if (nPercent == 1000) {
    m_pTextLabel->setText(QString("  Process: %1%\n  File recovery complete").arg(nValue));
  }
  // The worker sets the flag itself right after its last report, so that with it the flag means that all is
  // done. This slot may be quicker than the worker: it waits for it a moment.
  if (nPercent == 1000 &&
      m_pWindow->GetTask().ServeUntil(m_pWindow->m_bCancelRecovery, QDeadlineTimer(kMomentForFlag))) {
    m_bIsFinished = true;
    if (m_pCancelButton) m_pCancelButton->setText(kFinished);
  }
}

void SCANUI::SearchCallBackSlot(int nProgress, QString pRecoveryFileName) {
  m_progressBar->setValue(nProgress);
  m_strFileName = pRecoveryFileName;
  m_pTextLabel->setText(QString("  Process: %1%\n  Searching drive for recovery files").arg(nProgress));
  if (nProgress == 100 && m_pWindow->m_bSearchFinished) {
    m_bIsFinished = true;
    close();
  }
}

void SCANUI::PreViewCallBackSlot(int nProgress, int) {
  m_progressBar->setValue(nProgress);
  m_pTextLabel->setText(QString("  Process: %1%\n  Previewing file:%2").arg(nProgress).arg(m_strFileName));
  if (nProgress == 100) {
    m_bIsFinished = true;
    close();
  }
}

bool SCANUI::ConfirmsCancel() {
  CMessageBox box;
  box.InitQuestionDialog(KindOf(m_nOprType).pszQuestion);
  box.setGeometry(x() + width() / 8, y() + height() / 8, 400, 200);
  box.exec();
  return box.GetMessageBoxRet() != 0;
}

void SCANUI::WaitForWorker() {
  // Frozen until the worker has stopped. Only its own steps on widgets are served, or it could never stop.
  // Nothing ever sets the flags of the other kinds: their wait doesn't end, and who cancels a recovery waits
  // for ever.
  const BusyCursor cursor;
  m_pWindow->repaint();  // the question would stay on the screen
  repaint();
  m_pWindow->GetTask().ServeUntil(m_pWindow->*KindOf(m_nOprType).pFinished);
}

void SCANUI::closeEvent(QCloseEvent* pEvent) {
  if (m_bIsFinished) return pEvent->accept();
  const bool bDone = m_nOprType == kRecovery && m_pCancelButton && m_pCancelButton->text() == kFinished;
  if (!bDone && !ConfirmsCancel()) {
    // A close while the question was open, as the end of a scan asks for, did nothing: this one was under
    // way. A recovery stays open for its detail.
    pEvent->setAccepted(m_bIsFinished && m_nOprType != kRecovery);
    return;
  }
  m_pWindow->GetTask().Raise(m_pWindow->*KindOf(m_nOprType).pCancel);
  WaitForWorker();
  m_progressBar->setValue(0);
  pEvent->accept();
}

// Escape closes like any other way, with the question.
void SCANUI::reject() {
  close();
}

void SCANUI::btnSlot() {
  close();
}

void SCANUI::btnDetail() {
  m_detail.move(pos());
  m_detail.exec();
}

void SCANUI::btnOpenFolder() {
  QDesktopServices::openUrl(QUrl::fromLocalFile(m_strSaveDir));
}

void SCANUI::mousePressEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::RightButton)
    close();
  else
    BeginDrag(this, pEvent, m_ptDrag);
}

void SCANUI::mouseMoveEvent(QMouseEvent* pEvent) {
  ContinueDrag(this, pEvent, m_ptDrag);
}

void SCANUI::paintEvent(QPaintEvent*) {}
