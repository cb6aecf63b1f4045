#include "app/detail_dialog.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "app/dialog_parts.h"
#include "ui/cell_delegate.h"
#include "ui/drag.h"
#include "ui/focus_ring.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {
constexpr int kRowHeight = 22;
}

CDetail::CDetail(QDialog*, Qt::WindowFlags flags) : QDialog(nullptr, flags) {
  m_ui.setupUi(this);
  setWindowTitle("Orvandel");
  setWindowIcon(QIcon(":/image/logo.ico"));
  setFixedSize(600, 400);

  QLabel* pBand = CreateHeadBand(60, 40, m_pTextLabel);
  m_pTextLabel->setObjectName("m_pTextLabel");
  m_pTextLabel->setFont(TextFont(11, 50));
  m_pTextLabel->setText(QString::asprintf("  Recovery Detail\n\n  Sucess:%d Failed:%d\n", 0, 0));

  m_pTable = new QTableWidget(0, 2);
  m_pTable->setObjectName("m_pTable");
  m_pTable->setAccessibleName("Recovered files");
  m_pTable->setTabKeyNavigation(false);
  m_pTable->setFont(TextFont(11, 50));
  CellDelegate::Install(m_pTable);
  FocusRing::Install(m_pTable);
  m_pTable->setHorizontalHeaderLabels({"Name", "Status"});
  // Left, since the second column is wider than what is in view of it.
  m_pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  m_pTable->horizontalHeader()->setFont(TextFont(11, 50));
  m_pTable->setColumnWidth(0, 400);
  m_pTable->setColumnWidth(1, 300);
  m_pTable->horizontalHeader()->setStretchLastSection(true);
  m_pTable->verticalHeader()->setVisible(false);
  m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  m_pTable->verticalHeader()->setMinimumSectionSize(kRowHeight);
  m_pTable->verticalHeader()->setDefaultSectionSize(kRowHeight);
  // Long paths are elided in the middle, so that the file name stays visible.
  m_pTable->setWordWrap(false);
  m_pTable->setTextElideMode(Qt::ElideMiddle);
  m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);

  QPushButton* pButton = CreateDialogButton("OK", nullptr);
  pButton->setObjectName("OK");
  pButton->setFixedSize(80, 25);
  connect(pButton, &QPushButton::clicked, this, &CDetail::btnSlot);

  auto* pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 5);
  pLayout->addWidget(pBand);
  pLayout->addWidget(m_pTable);
  pLayout->addWidget(pButton, 0, Qt::AlignCenter);
}

void CDetail::AddTableItem(const QString& qstrName, int nStatus) {
  const int nRow = m_pTable->rowCount();
  const bool bSuccess = nStatus == 0;
  m_pTable->setRowCount(nRow + 1);
  auto* pStatus = new QTableWidgetItem(bSuccess ? "Success" : "Failed");
  if (!bSuccess) pStatus->setForeground(QColor(255, 0, 0));
  ++(bSuccess ? m_nSuccess : m_nFailed);
  auto* pName = new QTableWidgetItem(qstrName);
  pName->setToolTip(qstrName);
  m_pTable->setItem(nRow, 0, pName);
  m_pTable->setItem(nRow, 1, pStatus);
  // One line break after the title; the initial text has two.
  m_pTextLabel->setText(
      QString::asprintf("  Recovery Detail\n  Sucess:%d Failed:%d\n", m_nSuccess, m_nFailed));
}

void CDetail::btnSlot() {
  close();
}

void CDetail::mousePressEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::RightButton)
    close();
  else
    BeginDrag(this, pEvent, m_ptDrag);
}

void CDetail::mouseMoveEvent(QMouseEvent* pEvent) {
  ContinueDrag(this, pEvent, m_ptDrag);
}

void CDetail::paintEvent(QPaintEvent*) {}
