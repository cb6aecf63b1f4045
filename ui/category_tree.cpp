// The category tree, and the one routine that ties a node to its table.

#include <cstring>

#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/key_ticks.h"
#include "ui/styles.h"

namespace {

/// The category whose name stands in a label; null when there is none.
const Category* CategoryOfLabel(const QString& qstrLabel) {
  const std::string strLabel = ToNarrow(qstrLabel);
  // "Message(" and "WhatsApp(" aren't parts of the longer labels, so that the first hit is the right one.
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
  // The app tables leave the number as it is: their rows have no preview of their own.
  if (!spec.IsAppTable()) m_nCurrentCategory = spec.nNumber;
  QTableWidget* pTable = this->*spec.pTable;
  if (pTable->rowCount() == 0) FillTable(spec);  // once for each data screen, so that ticks survive
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
  // A click on the box of the node that is selected already changes no selection.
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
