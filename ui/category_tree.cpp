// The category tree, and the link between a node and its table.

#include <cstring>

#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/cell_delegate.h"
#include "ui/focus_ring.h"
#include "ui/key_ticks.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

/// Returns the category whose name a label contains; null if none.
const Category* CategoryOfLabel(const QString& qstrLabel) {
  const std::string strLabel = ToNarrow(qstrLabel);
  // "Message(" and "WhatsApp(" aren't substrings of the longer labels, so the first match is the right one.
  for (const Category& category : Categories()) {
    if (strLabel.find(std::string(category.pszLabel) + "(") != std::string::npos) return &category;
  }
  return nullptr;
}

}  // namespace

QTreeWidget* DRUI::CreateTree() {
  m_pCategoryTree = new KeyTickTree(this);
  m_pCategoryTree->setObjectName("m_pCategoryTree");
  m_pCategoryTree->setAccessibleName("Categories");
  CellDelegate::Install(m_pCategoryTree);
  FocusRing::Install(m_pCategoryTree);
  m_pCategoryTree->setColumnCount(1);
  m_pCategoryTree->setHeaderLabels({""});
  m_pCategoryTree->setStyleSheet("QTreeWidget::item{height:30px};");
  for (const Category& category : Categories()) {
    auto* pItem = new QTreeWidgetItem(m_pCategoryTree);
    pItem->setText(0, FromNarrow(CategoryLabel(category, category.pfnCount(m_records))));
    pItem->setCheckState(0, Qt::Unchecked);
    pItem->setIcon(0, QIcon(TableSpec::Of(category.nNumber).pszNodeIcon));
    pItem->setFont(0, TextFont(10, 50));
  }
  connect(m_pCategoryTree, &QTreeWidget::itemClicked, this, &DRUI::treeItemClick);
  connect(m_pCategoryTree, &QTreeWidget::itemSelectionChanged, this, &DRUI::treeItemSelectChanged);
  m_pCategoryTree->setMinimumSize(250, 430);
  m_pCategoryTree->setItemsExpandable(true);
  m_pCategoryTree->expandAll();
  return m_pCategoryTree;
}

void DRUI::UpdateTreeInfo(QTreeWidgetItem* pItem, int, bool bNoShow) {
  const Category* pCategory = CategoryOfLabel(pItem->text(0));
  if (!pCategory) return;
  const TableSpec& spec = TableSpec::Of(pCategory->nNumber);
  // App tables don't change the number, because their rows have no preview.
  if (!spec.IsAppTable()) m_nCurrentCategory = spec.nNumber;
  QTableWidget* pTable = this->*spec.pTable;
  if (pTable->rowCount() == 0) FillTable(spec);  // only once per data screen, to preserve ticks
  if (!bNoShow) {
    m_pPageStack->setCurrentWidget(pTable->parentWidget());
    if (!spec.IsAppTable() && pTable->rowCount() > 0) tableItemClick(pTable->item(0, 0));
  }
  ApplyNodeState(spec, pItem);
}

void DRUI::treeItemSelectChanged() {
  const QList<QTreeWidgetItem*> selected = m_pCategoryTree->selectedItems();
  if (!selected.isEmpty()) {
    UpdateTreeInfo(selected.first(), 0, false);
    m_pCurrentTreeItem = selected.first();
  }
  RefreshSelectFileInfo();
}

void DRUI::treeItemClick(QTreeWidgetItem* pItem, int) {
  // Clicking the check box of the current node doesn't change the selection.
  if (pItem == m_pCurrentTreeItem) treeItemSelectChanged();
  m_pCategoryTree->setCurrentItem(pItem);
  RefreshSelectFileInfo();
}

void DRUI::diskItemClick(QTreeWidgetItem* pItem, int) {
  if (pItem) SetMainButtonEnabled(m_pScanButton, pItem->childCount() == 0);
}

void DRUI::diskItemDoubleClick(QTreeWidgetItem*, int) {
  btnSlotScan();
}

void DRUI::RefreshAppFileNode() {
  GroupAppFiles(m_records.m_vecAppFile, m_records.m_mapAppPhotoFiles, m_records.m_mapAppVideoFiles,
                m_records.m_nAppPhotoCount, m_records.m_nAppVideoCount);
}
