#include "tests/ui/window_fixture.h"

#include <QTest>
#include <map>

namespace orvandel {

namespace {

/// Middle of the tick box of a cell.
QPoint BoxOf(const QAbstractItemView* pView, const QRect& cell) {
  QStyleOptionViewItem option;
  option.initFrom(pView);
  option.rect = cell;
  option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
  return pView->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, pView).center();
}

}  // namespace

WindowTest::WindowTest() {
  m_folder.MakeFolder("backups");
  SetPlaces(m_folder.Path("backups"), m_folder.Path("work"));
}

void WindowTest::WriteEmptyBackup(const std::string& strName, const BackupBuilder::Info& info) const {
  BackupBuilder backup(QString::fromStdString(BackupPath(strName)), BackupBuilder::Layout::Mbdb);
  backup.writeInfo(info);
  backup.finish();
}

DRUI& WindowTest::Open() {
  m_pWindow = std::make_unique<DRUI>();
  m_pWindow->setVisible(true);
  EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pWindow.get()));
  return *m_pWindow;
}

DRUI& WindowTest::OpenDataScreen() {
  Open();
  m_pWindow->InitLayout3Widget();
  QStackedLayout* pScreens = WindowAccess::ScreenStack(*m_pWindow);
  pScreens->addWidget(WindowAccess::DataScreen(*m_pWindow));
  pScreens->setCurrentWidget(WindowAccess::DataScreen(*m_pWindow));
  QCoreApplication::processEvents();
  return *m_pWindow;
}

void WindowTest::ClickRow(QTableWidget* pTable, int nRow, int nColumn) {
  ASSERT_NE(nullptr, pTable->item(nRow, nColumn));
  // To the right of the tick box, which would be toggled.
  const QRect rect = pTable->visualItemRect(pTable->item(nRow, nColumn));
  Click(pTable->viewport(), rect.center());
}

void WindowTest::ClickNode(int nCategory) {
  QTreeWidget* pTree = WindowAccess::Tree(*m_pWindow);
  Click(pTree->viewport(), pTree->visualItemRect(Node(nCategory)).center());
}

void WindowTest::ClickRowBox(QTableWidget* pTable, int nRow, int nColumn) {
  const QTableWidgetItem* pItem = pTable->item(nRow, nColumn);
  ASSERT_NE(nullptr, pItem);
  Click(pTable->viewport(), BoxOf(pTable, pTable->visualItemRect(pItem)));
}

void WindowTest::ClickNodeBox(int nCategory) {
  QTreeWidget* pTree = WindowAccess::Tree(*m_pWindow);
  Click(pTree->viewport(), BoxOf(pTree, pTree->visualItemRect(Node(nCategory))));
}

void WindowTest::ScanBackup(int nRow) {
  ClickRow(Table("m_pBackupTable"), nRow);
  Click(Find<QPushButton>("m_pScanButton"));
}

std::vector<std::string> WindowTest::Labels() {
  std::vector<std::string> labels;
  const QTreeWidget* pTree = WindowAccess::Tree(*m_pWindow);
  for (int i = 0; i < pTree->topLevelItemCount(); ++i)
    labels.push_back(pTree->topLevelItem(i)->text(0).toStdString());
  return labels;
}

std::vector<std::string> WindowTest::Cells(const QTableWidget* pTable, int nRow) {
  std::vector<std::string> cells;
  for (int i = 0; i < pTable->columnCount(); ++i) {
    const QTableWidgetItem* pItem = pTable->item(nRow, i);
    cells.push_back(pItem ? pItem->text().toStdString() : "(none)");
  }
  return cells;
}

std::string FontOf(const QFont& font) {
  const std::map<int, int> weights = {{QFont::Normal, 50}, {QFont::Bold, 75}, {QFont::Black, 87}};
  const auto weight = weights.find(font.weight());
  return QString("%1 %2/%3")
      .arg(font.family())
      .arg(font.pixelSize())
      .arg(weight == weights.end() ? -1 : weight->second)
      .toStdString();
}

std::string TextOf(const QLabel* pLabel) {
  return pLabel->text().toStdString();
}

QColor TextColour(const QWidget* pWidget) {
  return pWidget->palette().color(QPalette::WindowText);
}

std::vector<int> MarginsOf(const QLayout* pLayout) {
  const QMargins margins = pLayout->contentsMargins();
  return {margins.left(), margins.top(), margins.right(), margins.bottom()};
}

const std::vector<std::string> kZeroLabels = {
    "Camera Roll(0)",          "Photo Stream(0)", "App Photos(0)",   "App Videos(0)", "Message(0)",
    "Messages Attachments(0)", "Contacts(0)",     "Call History(0)", "Notes(0)",      "WhatsApp(0)",
    "WhatsApp Attachments(0)"};

const std::vector<std::string> kSmallBackupLabels = {
    "Camera Roll(2)",          "Photo Stream(1)", "App Photos(1)",   "App Videos(1)", "Message(1)",
    "Messages Attachments(1)", "Contacts(1)",     "Call History(1)", "Notes(1)",      "WhatsApp(0)",
    "WhatsApp Attachments(1)"};

}  // namespace orvandel
