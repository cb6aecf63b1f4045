#include "ui/window.h"

#include <sys/stat.h>

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include "common/places.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {
constexpr int kWidth = 1000;
constexpr int kHeight = 680;

/// Creates the missing parents of a folder with mode 0755.
void MakeParents(const std::string& strFolder) {
  const size_t nEnd = strFolder.find_last_not_of('/');
  for (size_t i = strFolder.find('/', 1); i < nEnd; i = strFolder.find('/', i + 1))
    mkdir(strFolder.substr(0, i).c_str(), 0755);
}
}  // namespace

DRUI::DRUI(QWidget* pParent, Qt::WindowFlags flags)
    : QMainWindow(pParent, flags), m_records(m_backupFile.GetMessageMap()) {
  InitResources();
  m_ui.setupUi(this);
  m_ui.centralWidget->setStyleSheet("background-color: rgb(252, 252, 252);");
  setWindowTitle("Velmora Orvandel");
  setFixedSize(kWidth, kHeight);
  resize(kWidth, kHeight);
  setWindowIcon(QIcon(":/image/logo.ico"));
  if (const QScreen* pScreen = QApplication::primaryScreen()) MoveToMiddleOf(pScreen->geometry());
  Init();
}

DRUI::~DRUI() {
  // First, since its pending output could still reach other members.
  DropDecryptProcess();
}

void DRUI::MoveToMiddleOf(const QRect& desktop) {
  move(desktop.x() + (desktop.width() - width()) / 2, desktop.y() + (desktop.height() - height()) / 2);
}

void DRUI::Init() {
  InitLayout1Widget();
  m_pScreenStack = new QStackedLayout;
  m_pScreenStack->setObjectName("m_pScreenStack");
  m_pScreenStack->addWidget(m_pHomeScreen);
  m_pScreenStack->setCurrentWidget(m_pHomeScreen);
  auto* pLayout = new QVBoxLayout;
  pLayout->setSpacing(0);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addLayout(m_pScreenStack);
  m_ui.centralWidget->setLayout(pLayout);
  // Errors are ignored: the folders may exist, and whatever needs them reports its own error.
  const std::string strWorkFolder = WorkFolder();
#ifndef Q_OS_MACOS
  // On macOS the parents are part of the system.
  MakeParents(strWorkFolder);
#endif
  mkdir(strWorkFolder.c_str(), 0777);
  mkdir((strWorkFolder + kDecryptFolderName).c_str(), 0777);
}

void DRUI::closeEvent(QCloseEvent*) {
  QCoreApplication::quit();
}

void DRUI::keyPressEvent(QKeyEvent* pEvent) {
  if (pEvent->key() != Qt::Key_Escape) QWidget::keyPressEvent(pEvent);
}

bool DRUI::eventFilter(QObject* pWatched, QEvent* pEvent) {
  return QObject::eventFilter(pWatched, pEvent);
}
