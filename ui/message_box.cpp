#include "ui/message_box.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/drag.h"
#include "ui/focus_ring.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {
constexpr int kWidth = 400;
constexpr int kHeight = 150;
}  // namespace

CMessageBox::CMessageBox(QDialog*, Qt::WindowFlags flags) : QDialog(nullptr, flags) {
  InitResources();
  m_ui.setupUi(this);
  setWindowTitle("Orvandel");
  setWindowIcon(QIcon(":/image/logo.ico"));
  setFixedSize(kWidth, kHeight);
}

void CMessageBox::InitInfoDialog(const QString& qstrText) {
  BuildForm(qstrText, ":/image/information.png");
  m_pTextLabel->setWordWrap(true);
  AddButton("OK", "OK", kWidth / 3, &CMessageBox::btnSlotOK);
}

void CMessageBox::InitQuestionDialog(const QString& qstrText) {
  BuildForm(qstrText, ":/image/question.png");
  AddButton("NO", "NO", kWidth / 4, &CMessageBox::btnSlotNO);
  AddButton("OK", "OK", kWidth / 4 + 100, &CMessageBox::btnSlotOK);
}

void CMessageBox::BuildForm(const QString& qstrText, const QString& qstrIcon) {
  auto* pIconLabel = new QLabel(this);
  pIconLabel->setObjectName("iconLabel");
  pIconLabel->setAlignment(Qt::AlignCenter);
  pIconLabel->setPixmap(QIcon(qstrIcon).pixmap(48, 48));  // picks the @2x variant on high-resolution screens
  m_pTextLabel = new QLabel(qstrText, this);
  m_pTextLabel->setObjectName("m_pTextLabel");
  m_pTextLabel->setMinimumSize(kWidth - 60, 80);
  m_pTextLabel->setFont(TextFont(12, 50));
  QPalette palette = m_pTextLabel->palette();
  palette.setColor(QPalette::WindowText, Qt::black);
  m_pTextLabel->setPalette(palette);
  auto* pBody = new QHBoxLayout;
  pBody->setContentsMargins(5, 0, 0, 0);
  pBody->addWidget(pIconLabel);
  pBody->addWidget(m_pTextLabel);

  m_pButtonStrip = new QLabel(this);
  m_pButtonStrip->setObjectName("buttonStrip");
  m_pButtonStrip->setMinimumSize(kWidth, 40);
  m_pButtonStrip->setStyleSheet("background-color: rgb(220, 220, 220);");

  auto* pLower = new QVBoxLayout;
  pLower->addLayout(pBody);
  pLower->addStretch(2);
  pLower->addWidget(m_pButtonStrip);
  auto* pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addLayout(new QHBoxLayout);
  pLayout->addStretch(2);
  pLayout->addLayout(pLower);
}

void CMessageBox::AddButton(const char* pszText, const char* pszName, int nX,
                            void (CMessageBox::*pfnSlot)()) {
  auto* pButton = new QPushButton(pszText, m_pButtonStrip);
  pButton->setObjectName(pszName);
  pButton->setGeometry(nX, 5, 80, 25);
  pButton->setFlat(true);
  pButton->setFont(TextFont(12, 50));
  pButton->setCursor(Qt::PointingHandCursor);
  pButton->setStyleSheet(dialog_style::main_button_style);
  FocusRing::Install(pButton);
  connect(pButton, &QPushButton::clicked, this, pfnSlot);
}

void CMessageBox::btnSlotOK() {
  m_nRet = 1;
  close();
}

void CMessageBox::btnSlotNO() {
  m_nRet = 0;
  close();
}

void CMessageBox::paintEvent(QPaintEvent*) {}

void CMessageBox::mousePressEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::RightButton)
    close();
  else
    BeginDrag(this, pEvent, m_ptDrag);
}

void CMessageBox::mouseMoveEvent(QMouseEvent* pEvent) {
  ContinueDrag(this, pEvent, m_ptDrag);
}
