// The data screen: tree, pages and the strip below them. Rebuilt for each scan.

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <vector>

#include "ui/category_tables.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

// Page order, which differs from tree order.
constexpr int kPageOrder[] = {
    kCameraRoll,  kPhotoStream, kAppPhotos,          kAppVideos, TableSpec::kAppFiles, kMessages, kContacts,
    kCallHistory, kNotes,       kMessageAttachments, kWhatsApp,  kWhatsAppAttachments};

}  // namespace

QWidget* DRUI::CreatePage(const TableSpec& spec) {
  auto* pPage = new QWidget(this);
  pPage->setObjectName(spec.pszPageName);
  auto* pLayout =
      new QBoxLayout(spec.bHorizontalPage ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, pPage);
  pLayout->setContentsMargins(0, 0, 2, 0);
  QTableWidget* pTable = CreateTable(spec);
  AddPreview(spec.preview, pLayout, pTable);
  return pPage;
}

void DRUI::InitLayout3Widget() {
  // Reset pointers into the previous screen.
  m_pCurrentTreeItem = nullptr;
  m_pCurrentAppItem = nullptr;
  delete m_pDataScreen;
  m_pDataScreen = new QWidget;
  m_pDataScreen->setObjectName("m_pDataScreen");
  m_pDataScreen->setStyleSheet(kScrollBarStyle);
  m_pPageStack = new QStackedLayout;
  m_pPageStack->setObjectName("m_pPageStack");
  for (int nNumber : kPageOrder) m_pPageStack->addWidget(CreatePage(TableSpec::Of(nNumber)));

  auto* pPages = new QVBoxLayout;
  pPages->addLayout(m_pPageStack);
  auto* pMiddle = new QHBoxLayout;
  pMiddle->setContentsMargins(2, 0, 2, 0);
  pMiddle->addWidget(CreateTree());
  pMiddle->addLayout(pPages);

  auto* pStrip = new QLabel;
  pStrip->setObjectName("bottomStrip");
  pStrip->setMinimumHeight(50);
  QPushButton* pHomeButton = CreateActionButton("Home", QRect(QPoint(50, 5), QPoint(149, 44)), 75, pStrip);
  pHomeButton->setObjectName("homeButton");
  connect(pHomeButton, &QPushButton::clicked, this, &DRUI::btnSlotBack);
  m_pSelectInfoLabel = new QLabel("Select 0 Bytes in 0 file", pStrip);
  m_pSelectInfoLabel->setObjectName("m_pSelectInfoLabel");
  m_pSelectInfoLabel->setGeometry(QRect(QPoint(400, 15), QPoint(649, 74)));
  m_pSelectInfoLabel->setAlignment(Qt::AlignLeft);
  m_pSelectInfoLabel->setFont(TextFont(12, 50));
  QPalette palette = m_pSelectInfoLabel->palette();
  palette.setColor(QPalette::WindowText, Qt::black);
  m_pSelectInfoLabel->setPalette(palette);
  m_pRecoveryButton = CreateActionButton("Recovery", QRect(QPoint(850, 5), QPoint(949, 44)), 75, pStrip);
  m_pRecoveryButton->setObjectName("m_pRecoveryButton");
  connect(m_pRecoveryButton, &QPushButton::clicked, this, &DRUI::btnRecovery);

  auto* pLayout = new QVBoxLayout(m_pDataScreen);
  pLayout->setSpacing(0);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(CreateTopBar());
  pLayout->addWidget(CreateGap());
  pLayout->addLayout(pMiddle);
  pLayout->addStretch(5);
  pLayout->addWidget(pStrip);
  pLayout->addWidget(CreateFoot(999));
  std::vector<QWidget*> order = {m_pCategoryTree};
  for (int nNumber : kPageOrder) order.push_back(this->*TableSpec::Of(nNumber).pTable);
  order.insert(order.end(),
               {pHomeButton, m_pRecoveryButton, m_pDataScreen->findChild<QPushButton*>("helpButton")});
  for (size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}
