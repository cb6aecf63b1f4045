// Shared by both screens: top bar, gap and footer, the buttons, and dragging the window.

#include <QCoreApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>

#include "ui/drag.h"
#include "ui/focus_ring.h"
#include "ui/styles.h"
#include "ui/urls.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

constexpr int kWindowWidth = 1000;

/// A rectangle from its top left to its bottom right corner, both inclusive.
QRect Corners(int nLeft, int nTop, int nRight, int nBottom) {
  return QRect(QPoint(nLeft, nTop), QPoint(nRight, nBottom));
}

void SetTextColour(QLabel* pLabel, Qt::GlobalColor colour) {
  QPalette palette = pLabel->palette();
  palette.setColor(QPalette::WindowText, colour);
  pLabel->setPalette(palette);
}

struct MenuEntry {
  const char* pszText;
  const char* pszIcon;
  void (DRUI::*pfnSlot)();  // null if the button does nothing
};
constexpr MenuEntry kMenu[] = {
    {"Help", ":/image/help.png", &DRUI::btnHelpSlot},
    {"Support", ":/image/support.png", &DRUI::btnSupportSlot},
    {"Language", ":/image/language.png", nullptr},
};

}  // namespace

QWidget* DRUI::CreateTopBar() {
  auto* pBar = new QLabel;
  pBar->setObjectName("topBar");
  pBar->setMinimumSize(kWindowWidth, 80);
  pBar->setStyleSheet(Layout1TopBackGroud_style);

  auto* pLogo = new QLabel(pBar);
  pLogo->setObjectName("logo");
  pLogo->setGeometry(Corners(10, 10, 73, 73));
  pLogo->setAlignment(Qt::AlignLeft);
  pLogo->setPixmap(QIcon(":/image/logo-64.png").pixmap(QSize(64, 64)));

  auto* pTitle = new QLabel(pBar);
  pTitle->setObjectName("title");
  pTitle->setGeometry(Corners(80, 20, 679, 79));
  pTitle->setAlignment(Qt::AlignLeft);
  SetTextColour(pTitle, Qt::white);
  pTitle->setFont(TextFont(16, 75));
  pTitle->setText("Velmora Orvandel\nExtractor all kinds of data from you iTunes backup file for free.");

  CreateButton(1, 955, pBar);

  auto* pHolder = new QWidget;
  auto* pLayout = new QHBoxLayout(pHolder);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(pBar);
  return pHolder;
}

QWidget* DRUI::CreateGap() {
  auto* pGap = new QLabel;
  pGap->setObjectName("gap");
  pGap->setFixedSize(kWindowWidth, 2);
  return pGap;
}

QWidget* DRUI::CreateFoot(int nVersionRight) {
  auto* pFoot = new QLabel;
  pFoot->setObjectName("foot");
  pFoot->setMinimumSize(kWindowWidth, 40);
  pFoot->setStyleSheet(Layout1TopBackGroud_style);
  auto* pVersion = new QLabel(Version_label, pFoot);
  pVersion->setObjectName("version");
  pVersion->setGeometry(Corners(880, 20, nVersionRight, 49));
  pVersion->setAlignment(Qt::AlignHCenter);
  SetTextColour(pVersion, Qt::white);
  pVersion->setFont(TextFont(10, 50));
  return pFoot;
}

QPushButton* DRUI::CreateActionButton(const QString& qstrText, const QRect& rect, int nWeight,
                                      QWidget* pParent) {
  auto* pButton = new QPushButton(qstrText, pParent);
  pButton->setGeometry(rect);
  pButton->setFont(TextFont(nWeight == 50 ? 18 : 12, nWeight));
  pButton->setFlat(true);
  pButton->setCursor(Qt::PointingHandCursor);
  pButton->setStyleSheet(Layout2_main_button_style);
  FocusRing::Install(pButton);
  return pButton;
}

void DRUI::SetMainButtonEnabled(QPushButton* pButton, bool bEnabled) {
  if (!pButton) return;
  // Setting a style sheet costs far more than comparing it.
  const QString& qstrStyle = bEnabled ? Layout2_main_button_style : main_button_style_no_file;
  if (pButton->styleSheet() != qstrStyle) pButton->setStyleSheet(qstrStyle);
  pButton->setEnabled(bEnabled);
}

QPushButton* DRUI::CreateButton(int nKind, int nX, QWidget* pParent) {
  QPushButton* pButton = nullptr;
  const QPixmap picture(":/image/help.png");
  switch (nKind) {
    case 1:
      pButton = new QPushButton(pParent);
      pButton->setObjectName("helpButton");
      pButton->setAccessibleName("Help");
      pButton->setToolTip("Help");
      connect(pButton, &QPushButton::clicked, this, &DRUI::btnHelpSlot);
      break;
    case 3:
      InitMenu(pParent);
      pButton = m_pMenuButton;
      pButton->setStyleSheet("QPushButton::menu-indicator{image:None;}");
      break;
    default:
      return nullptr;
  }
  const QSize size(static_cast<int>(picture.width() / 1.3), static_cast<int>(picture.height() / 1.3));
  pButton->setGeometry(Corners(nX, 20, nX + 31, 39));
  pButton->setFont(TextFont(10, 75));
  pButton->setFlat(true);
  pButton->setIcon(QIcon(":/image/help.png"));
  pButton->setIconSize(size);
  pButton->resize(size);
  pButton->setCursor(Qt::PointingHandCursor);
  FocusRing::Install(pButton);
  return pButton;
}

void DRUI::InitMenu(QWidget* pParent) {
  m_pMenuButton = new QPushButton(pParent);
  m_pMenuButton->setObjectName("menuButton");
  m_pMenuButton->setAccessibleName("Menu");
  auto* pMenu = new QMenu(m_pMenuButton);
  for (const MenuEntry& entry : kMenu) {
    QAction* pAction = pMenu->addAction(QIcon(entry.pszIcon), entry.pszText);
    pAction->setData(QString(entry.pszText));
  }
  m_pMenuButton->setMenu(pMenu);
  connect(pMenu, &QMenu::triggered, this, &DRUI::SetMenuStatus);
}

void DRUI::SetMenuStatus(QAction* pAction) {
  for (const MenuEntry& entry : kMenu) {
    if (pAction->data().toString() == entry.pszText && entry.pfnSlot) (this->*entry.pfnSlot)();
  }
}

void DRUI::btnHelpSlot() {
  const QUrl online(CURLConfig::GetInstance()->GetUrl(CURLConfig::kOnlineHelp));
  btnOpenUrl(HelpPage(online, QCoreApplication::applicationDirPath()).toString());
}
void DRUI::btnSupportSlot() {
  btnOpenUrl(CURLConfig::GetInstance()->GetUrl(CURLConfig::kSupport));
}
void DRUI::btnAboutSlot() {
  btnOpenUrl(CURLConfig::GetInstance()->GetUrl(CURLConfig::kAbout));
}
void DRUI::btnOpenUrl(QString qstrUrl) {
  QDesktopServices::openUrl(QUrl(qstrUrl));
}
void DRUI::btnCloseSlot() {
  close();
}
void DRUI::btnMinSlot() {
  showMinimized();
}

void DRUI::paintEvent(QPaintEvent*) {
  const QPainter painter(this);
}

void DRUI::mousePressEvent(QMouseEvent* pEvent) {
  BeginDrag(this, pEvent, m_ptDrag);
}

void DRUI::mouseMoveEvent(QMouseEvent* pEvent) {
  ContinueDrag(this, pEvent, m_ptDrag);
}
