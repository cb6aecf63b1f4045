// The home screen: the list of backups, and the controls that start a scan.

#include <QHeaderView>
#include <QVBoxLayout>

#include "common/text.h"
#include "ui/backup_table.h"
#include "ui/cell_delegate.h"
#include "ui/focus_ring.h"
#include "ui/styles.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

constexpr int kSideMargin = 80;
constexpr int kBackupRowHeight = 50;

QLabel* CreateText(const QString& qstrText, int nSize, int nWeight, QWidget* pParent = nullptr) {
  auto* pLabel = new QLabel(qstrText, pParent);
  pLabel->setFont(TextFont(nSize, nWeight));
  return pLabel;
}

QVBoxLayout* CreateColumn() {
  auto* pLayout = new QVBoxLayout;
  pLayout->setSpacing(0);
  pLayout->setContentsMargins(kSideMargin, 0, kSideMargin, 0);
  return pLayout;
}

}  // namespace

QWidget* DRUI::InitLayout1Widget() {
  m_pHomeScreen = new QWidget;
  m_pHomeScreen->setObjectName("m_pHomeScreen");
  m_pHomeScreen->setStyleSheet(kScrollBarStyle);

  QVBoxLayout* pList = CreateColumn();
  pList->addWidget(CreateText("Select an iTunes Backup File of your iOS device below to scan.", 13, 75));
  pList->addSpacing(5);
  pList->addWidget(CreateiTunesTable());

  QVBoxLayout* pOther = CreateColumn();
  pOther->addWidget(
      CreateText("If your iOS device is not listed here, it's probably because your iOS device has not been "
                 "synchronized with iTunes.",
                 12, 50));
  auto* pSelectHolder = new QLabel;
  pSelectHolder->setMinimumHeight(40);
  QLabel* pSelectText = CreateText("Select the iTunes Backup File from other folder to recover your data.",
                                   12, 50, pSelectHolder);
  pSelectText->setObjectName("selectText");
  pSelectText->setWordWrap(true);  // the label is too narrow for some system fonts
  pSelectText->setGeometry(QRect(QPoint(0, 5), QPoint(374, 44)));
  QPushButton* pSelectButton =
      CreateActionButton("Select", QRect(QPoint(380, 5), QPoint(479, 39)), 75, pSelectHolder);
  pSelectButton->setObjectName("selectButton");
  connect(pSelectButton, &QPushButton::clicked, this, &DRUI::btnSlotSelect);
  pOther->addWidget(pSelectHolder);

  auto* pScanHolder = new QLabel;
  pScanHolder->setMinimumHeight(80);
  m_pScanButton = CreateActionButton("Scan", QRect(QPoint(800, 0), QPoint(949, 49)), 50, pScanHolder);
  m_pScanButton->setObjectName("m_pScanButton");
  connect(m_pScanButton, &QPushButton::clicked, this, &DRUI::btnSlotScan);
  SetMainButtonEnabled(m_pScanButton, m_pBackupTable->currentItem() != nullptr);

  auto* pLayout = new QVBoxLayout(m_pHomeScreen);
  pLayout->setSpacing(0);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(CreateTopBar());
  pLayout->addWidget(CreateGap());
  pLayout->addSpacing(20);
  pLayout->addLayout(pList);
  pLayout->addSpacing(20);
  pLayout->addLayout(pOther);
  pLayout->addWidget(pScanHolder);
  pLayout->addWidget(CreateFoot(1000));
  QWidget::setTabOrder(m_pBackupTable, pSelectButton);
  QWidget::setTabOrder(pSelectButton, m_pScanButton);
  QWidget::setTabOrder(m_pScanButton, m_pHomeScreen->findChild<QPushButton*>("helpButton"));
  return m_pHomeScreen;
}

void DRUI::InitLayout2Widget() {}

QTableWidget* DRUI::CreateiTunesTable() {
  m_pBackupTable = new BackupTable;
  m_pBackupTable->setObjectName("m_pBackupTable");
  m_pBackupTable->setAccessibleName("Backups");
  CellDelegate::Install(m_pBackupTable);
  FocusRing::Install(m_pBackupTable);
  m_pBackupTable->setFont(TextFont(10, 50));
  m_pBackupTable->setAttribute(Qt::WA_MouseTracking);
  m_pBackupTable->setIconSize(QSize(32, 32));
  m_pBackupTable->setColumnCount(3);
  m_pBackupTable->setHorizontalHeaderLabels({"Name", "Last Backup Data", "Serial Number"});
  m_pBackupTable->setColumnWidth(0, 200);
  m_pBackupTable->setColumnWidth(1, 300);
  m_pBackupTable->setColumnWidth(2, 200);
  m_pBackupTable->setMinimumSize(300, 225);
  m_pBackupTable->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
  m_pBackupTable->horizontalHeader()->setFixedHeight(30);
  m_pBackupTable->horizontalHeader()->setFont(TextFont(10, 50));
  m_pBackupTable->horizontalHeader()->setStretchLastSection(true);
  m_pBackupTable->verticalHeader()->setVisible(false);
  m_pBackupTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_pBackupTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_pBackupTable->setSelectionMode(QAbstractItemView::SingleSelection);
  connect(m_pBackupTable, &QTableWidget::cellClicked, this, &DRUI::iTunesTableItemPress);
  connect(m_pBackupTable, &QTableWidget::cellDoubleClicked, this, &DRUI::iTunesTableItemDoublePress);

  std::vector<__BACK_FILE_INFO__> backups;
  m_backupFile.GetBackFileInfo(backups);
  const int nRows = static_cast<int>(backups.size());
  m_pBackupTable->setRowCount(nRows);
  if (nRows == 0) m_pBackupTable->setAccessibleDescription(BackupTable::Hint());
  // From the last row up, because the session lists the folders in reverse.
  for (int i = 0; i < nRows; ++i) {
    const __BACK_FILE_INFO__& info = backups[static_cast<size_t>(i)];
    const int nRow = nRows - 1 - i;
    const std::string* const texts[] = {&info.strDisplayName, &info.strLastBackupDate, &info.strSerialNumber};
    for (int nColumn = 0; nColumn < 3; ++nColumn) {
      auto* pItem = new QTableWidgetItem(FromNarrow(*texts[nColumn]));
      pItem->setData(Qt::UserRole, QVariant::fromValue(info));
      if (nColumn == 0) {
        pItem->setFont(TextFont(10, 50));
        pItem->setIcon(QIcon(info.bEncrypted ? ":/image/iPhoneLock.png" : ":/image/iPhone.png"));
      } else {
        pItem->setTextAlignment(Qt::AlignCenter);
      }
      m_pBackupTable->setItem(nRow, nColumn, pItem);
    }
    m_pBackupTable->setRowHeight(nRow, kBackupRowHeight);
  }
  return m_pBackupTable;
}

bool DRUI::ChooseBackup(int nRow, int nColumn) {
  const QTableWidgetItem* pItem = m_pBackupTable->item(nRow, nColumn);
  if (!pItem) return false;
  SetMainButtonEnabled(m_pScanButton, true);
  m_curBackupInfo = pItem->data(Qt::UserRole).value<__BACK_FILE_INFO__>();
  return true;
}

void DRUI::iTunesTableItemPress(int nRow, int nColumn) {
  ChooseBackup(nRow, nColumn);
}

void DRUI::iTunesTableItemDoublePress(int nRow, int nColumn) {
  if (ChooseBackup(nRow, nColumn)) btnSlotScan();
}
