#include "app/password_dialog.h"

#include <QMouseEvent>
#include <QVBoxLayout>

#include "app/dialog_parts.h"
#include "ui/drag.h"
#include "ui/focus_ring.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr int kSmallestText = 8;  // pixels

/// Shrinks the font until the text fits its label, since the substitute for Calibri may be wider.
void ShrinkToFit(QLabel* pLabel) {
  QFont font = pLabel->font();
  const auto fits = [&] {
    const QRect needed =
        QFontMetrics(font).boundingRect(QRect(QPoint(), pLabel->size()), Qt::TextWordWrap, pLabel->text());
    return needed.height() <= pLabel->height() && needed.width() <= pLabel->width();
  };
  while (font.pixelSize() > kSmallestText && !fits()) font.setPixelSize(font.pixelSize() - 1);
  pLabel->setFont(font);
}

}  // namespace

CPasswordUI::CPasswordUI(QDialog*, Qt::WindowFlags flags) : QDialog(nullptr, flags) {
  InitResources();
  m_ui.setupUi(this);
  setWindowTitle("iTunes Backup Password");
  setWindowIcon(QIcon(":/image/logo.ico"));
  setFixedSize(500, 250);
  setFont(TextFont(12, 50));
  InitDialog();
}

void CPasswordUI::InitDialog() {
  auto* pCaption = new QLabel("  iTunes Backup Password");
  pCaption->setMinimumHeight(40);

  auto* pPanel = new QLabel;
  pPanel->setMinimumHeight(180);
  auto* pText = new QLabel(
      "The selected iTunes Backup File is encrypted. Please enter the password to unlock it.", pPanel);
  pText->setObjectName("passwordText");
  pText->setFont(font());
  pText->setWordWrap(true);
  pText->setGeometry(20, 30, width() - 40, 25);
  ShrinkToFit(pText);
  QPalette palette = pText->palette();
  palette.setColor(QPalette::WindowText, Qt::black);
  pText->setPalette(palette);
  m_pLineEdit = new QLineEdit(pPanel);
  m_pLineEdit->setObjectName("m_pLineEdit");
  m_pLineEdit->setAccessibleName("Password");
  FocusRing::Install(m_pLineEdit);
  m_pLineEdit->setGeometry(20, 70, width() - 40, 25);

  auto* pStrip = new QLabel;
  pStrip->setObjectName("buttonStrip");
  pStrip->setMinimumHeight(50);
  pStrip->setStyleSheet("background-color: rgb(220, 220, 220);");
  const auto addButton = [&](const char* pszText, int nX, void (CPasswordUI::*pfnSlot)()) {
    QPushButton* pButton = CreateDialogButton(pszText, pStrip);
    pButton->setObjectName(pszText);
    pButton->setFont(TextFont(12, 50));
    pButton->move(nX, 10);
    connect(pButton, &QPushButton::clicked, this, pfnSlot);
  };
  addButton("OK", width() / 4 + 20, &CPasswordUI::btnSlotOK);
  addButton("Cancel", width() / 3 + 80, &CPasswordUI::btnSlotNO);

  auto* pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(0);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(pCaption);
  pLayout->addWidget(pPanel);
  pLayout->addWidget(pStrip);
}

QString CPasswordUI::GetPassword() const {
  return m_pLineEdit->text();
}

void CPasswordUI::btnSlotOK() {
  m_nResult = 0;
  close();
}

void CPasswordUI::btnSlotNO() {
  m_nResult = 1;
  close();
}

void CPasswordUI::mousePressEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::RightButton)
    close();
  else
    BeginDrag(this, pEvent, m_ptDrag);
}

void CPasswordUI::mouseMoveEvent(QMouseEvent* pEvent) {
  ContinueDrag(this, pEvent, m_ptDrag);
}

void CPasswordUI::paintEvent(QPaintEvent*) {}
