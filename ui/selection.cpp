// Ticks: from a row to the maps and its node, from a node to its rows, and the text of the selection line.
// The maps outlive a scan; row numbers of an earlier scan that the latest didn't tick stay in them.

#include <QSignalBlocker>

#include "common/format.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr qint64 kTextCategoryBytes =
    0x100000;  // nominal size of a category without sizes, however much is ticked

/// Returns true if any row of a table has one of the given states.
bool HasRowIn(const QTableWidget* pTable, std::initializer_list<int> states) {
  for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
    const QTableWidgetItem* pItem = pTable->item(nRow, 0);
    if (!pItem) continue;
    for (int nState : states) {
      if (pItem->checkState() == nState) return true;
    }
  }
  return false;
}

/// Calls visit for each row that has a cell; the view is updated once at the end.
template <typename Visit>
void ForEachRow(QTableWidget* pTable, Visit visit) {
  {
    const QSignalBlocker blocker(pTable->model());
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
      if (QTableWidgetItem* pItem = pTable->item(nRow, 0)) visit(nRow, pItem);
    }
  }
  pTable->viewport()->update();
}

/// The value stored for a row: its size in bytes, or the row number for categories without sizes.
U32 SelectionValue(const TableSpec& spec, int nRow, const QTableWidgetItem* pItem) {
  return spec.pfnSize ? spec.pfnSize(pItem->data(Qt::UserRole)) : static_cast<U32>(nRow);
}

qint64 SumOf(const SelectionMap& selection) {
  qint64 nSum = 0;
  for (const auto& [nRow, nBytes] : selection) nSum += nBytes;
  return nSum;
}

}  // namespace

void DRUI::SetNodeState(int nState) {
  m_pCurrentTreeItem->setCheckState(0, static_cast<Qt::CheckState>(nState));
}

void DRUI::SelectApp(const TableSpec& spec, const QString& qstrApp, SelectionMap& selection) const {
  const AppFileMap& apps = m_records.*Categories()[spec.nNumber].pApps;
  const auto it = apps.find(ToNarrow(qstrApp));
  if (it == apps.end()) return;
  for (size_t i = 0; i < it->second.size(); ++i) selection[static_cast<U32>(i)] = it->second[i].uFileSize;
}

void DRUI::tableItemPress(int nRow, int nColumn, QTableWidget* pTable, SelectionMap& tableMap) {
  const QTableWidgetItem* pItem = nColumn == 0 ? pTable->item(nRow, nColumn) : nullptr;
  if (!pItem) return;
  const TableSpec& spec = TableSpec::Of(m_nPressedCategory);
  switch (pItem->checkState()) {
    case Qt::Unchecked:
      if (!spec.IsAppTable())
        tableMap.erase(static_cast<U32>(nRow));  // the caller passes an empty map for an app
      if (!m_pCurrentTreeItem) return;
      SetNodeState(HasRowIn(pTable, {Qt::Checked, Qt::PartiallyChecked}) ? Qt::PartiallyChecked
                                                                         : Qt::Unchecked);
      break;
    case Qt::Checked:
      if (spec.IsAppTable())
        SelectApp(spec, pItem->text(), tableMap);
      else
        tableMap[static_cast<U32>(nRow)] = SelectionValue(spec, nRow, pItem);
      if (!m_pCurrentTreeItem) return;
      SetNodeState(HasRowIn(pTable, {Qt::Unchecked, Qt::PartiallyChecked}) ? Qt::PartiallyChecked
                                                                           : Qt::Checked);
      break;
    default:
      return;
  }
  SetTreeParentCheckState(m_pCurrentTreeItem);
}

void DRUI::PressPlainTable(CategoryNumber nNumber, int nRow, int nColumn) {
  m_nPressedCategory = nNumber;
  const TableSpec& spec = TableSpec::Of(nNumber);
  tableItemPress(nRow, nColumn, this->*spec.pTable, this->*spec.pSelection);
  RefreshSelectFileInfo();
}

void DRUI::cameraTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kCameraRoll, nRow, nColumn);
}
void DRUI::photoStreamTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kPhotoStream, nRow, nColumn);
}
void DRUI::messageTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kMessages, nRow, nColumn);
}
void DRUI::messageAttachTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kMessageAttachments, nRow, nColumn);
}
void DRUI::contactsTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kContacts, nRow, nColumn);
}
void DRUI::callHistoryTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kCallHistory, nRow, nColumn);
}
void DRUI::notesTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kNotes, nRow, nColumn);
}
void DRUI::whatsappTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kWhatsApp, nRow, nColumn);
}
void DRUI::whatsappAttachTableItemPress(int nRow, int nColumn) {
  PressPlainTable(kWhatsAppAttachments, nRow, nColumn);
}

void DRUI::PressAppTable(CategoryNumber nNumber, int nRow, int nColumn) {
  m_nPressedCategory = nNumber;
  const TableSpec& spec = TableSpec::Of(nNumber);
  QTableWidget* pTable = this->*spec.pTable;
  m_pCurrentAppItem = pTable->item(nRow, nColumn);
  m_strPressedApp = m_pCurrentAppItem ? m_pCurrentAppItem->text() : QString();
  // Deliberate: the app's entry is replaced on every press. Unticking empties it and ticking fills it, but a
  // press on a partly ticked row also empties it, and one on the second column adds an empty entry "Folder".
  SelectionMap selection;
  tableItemPress(nRow, nColumn, pTable, selection);
  (this->*spec.pAppSelection)[m_strPressedApp] = std::move(selection);
  RefreshSelectFileInfo();
}

void DRUI::appPhotosTableItemPress(int nRow, int nColumn) {
  PressAppTable(kAppPhotos, nRow, nColumn);
}
void DRUI::appVideosTableItemPress(int nRow, int nColumn) {
  PressAppTable(kAppVideos, nRow, nColumn);
}

void DRUI::appsTableItemPress(int nRow, int nColumn) {
  const TableSpec& spec = TableSpec::Of(m_nPressedCategory);
  if (!spec.IsAppTable()) return;  // the list is opened only from an app table
  SelectionMap& selection = (this->*spec.pAppSelection)[m_strPressedApp];
  tableAppsItemPress(nRow, nColumn, m_pAppsTable, selection, this->*spec.pTable);
  RefreshSelectFileInfo();
}

void DRUI::tableAppsItemPress(int nRow, int nColumn, QTableWidget* pTable, SelectionMap& tableMap,
                              QTableWidget* pAppParentTable) {
  const QTableWidgetItem* pItem = nColumn == 0 ? pTable->item(nRow, nColumn) : nullptr;
  if (!pItem) return;
  int nWhole = Qt::Unchecked;  // state of app and node if all their children agree
  switch (pItem->checkState()) {
    case Qt::Unchecked:
      tableMap.erase(static_cast<U32>(nRow));
      if (m_pCurrentAppItem)
        m_pCurrentAppItem->setCheckState(HasRowIn(pTable, {Qt::Checked}) ? Qt::PartiallyChecked
                                                                         : Qt::Unchecked);
      if (HasRowIn(pAppParentTable, {Qt::Checked, Qt::PartiallyChecked})) nWhole = Qt::PartiallyChecked;
      break;
    case Qt::Checked:
      tableMap[static_cast<U32>(nRow)] = SelectionValue(TableSpec::Of(TableSpec::kAppFiles), nRow, pItem);
      if (m_pCurrentAppItem)
        m_pCurrentAppItem->setCheckState(HasRowIn(pTable, {Qt::Unchecked}) ? Qt::PartiallyChecked
                                                                           : Qt::Checked);
      nWhole = HasRowIn(pAppParentTable, {Qt::Unchecked, Qt::PartiallyChecked}) ? Qt::PartiallyChecked
                                                                                : Qt::Checked;
      break;
    default:
      return;
  }
  if (!m_pCurrentTreeItem) return;
  SetNodeState(nWhole);
  SetTreeParentCheckState(m_pCurrentTreeItem);
}

void DRUI::ApplyNodeState(const TableSpec& spec, QTreeWidgetItem* pItem) {
  const int nState = pItem->checkState(0);
  if (nState != Qt::PartiallyChecked) {
    SetTreeChildCheckState(pItem, nState);
    SetTreeParentCheckState(pItem);
  }
  if (spec.IsAppTable()) return ApplyAppNodeState(spec, nState);

  SelectionMap& selection = this->*spec.pSelection;
  QTableWidget* pTable = this->*spec.pTable;
  switch (nState) {
    case Qt::Unchecked:
      ForEachRow(pTable, [&](int nRow, QTableWidgetItem* pCell) {
        pCell->setCheckState(Qt::Unchecked);
        // Deliberate: for WhatsApp the chat's key is removed rather than the row, so entries remain and
        // count.
        const bool bByChat = spec.nNumber == kWhatsApp;
        selection.erase(bByChat ? pCell->data(Qt::UserRole).toUInt() : static_cast<U32>(nRow));
      });
      return;
    case Qt::Checked:
      ForEachRow(pTable, [&](int nRow, QTableWidgetItem* pCell) {
        pCell->setCheckState(Qt::Checked);
        selection[static_cast<U32>(nRow)] = SelectionValue(spec, nRow, pCell);
      });
      return;
    default:
      ForEachRow(pTable, [&](int nRow, QTableWidgetItem* pCell) {
        pCell->setCheckState(selection.count(static_cast<U32>(nRow)) ? Qt::Checked : Qt::Unchecked);
      });
  }
}

void DRUI::ApplyAppNodeState(const TableSpec& spec, int nState) {
  if (nState == Qt::PartiallyChecked) return;
  AppSelectionMap& selection = this->*spec.pAppSelection;
  ForEachRow(this->*spec.pTable, [&](int, QTableWidgetItem* pCell) {
    pCell->setCheckState(static_cast<Qt::CheckState>(nState));
    const auto it = selection.find(pCell->text());
    if (nState == Qt::Checked)
      SelectApp(spec, pCell->text(), selection[pCell->text()]);
    else if (it != selection.end())
      it->second.clear();
  });
}

void DRUI::ApplyAppRowState(const TableSpec& spec, int nState) {
  AppSelectionMap& selections = this->*spec.pAppSelection;
  if (nState == Qt::PartiallyChecked) {
    const auto it = selections.find(m_strPressedApp);
    ForEachRow(m_pAppsTable, [&](int nRow, QTableWidgetItem* pCell) {
      const bool bTicked = it != selections.end() && it->second.count(static_cast<U32>(nRow)) != 0;
      pCell->setCheckState(bTicked ? Qt::Checked : Qt::Unchecked);
    });
    return;
  }
  SelectionMap& selection = selections[m_strPressedApp];
  if (nState == Qt::Unchecked) selection.clear();
  const TableSpec& fileSpec = TableSpec::Of(TableSpec::kAppFiles);
  ForEachRow(m_pAppsTable, [&](int nRow, QTableWidgetItem* pCell) {
    pCell->setCheckState(static_cast<Qt::CheckState>(nState));
    if (nState == Qt::Checked) selection[static_cast<U32>(nRow)] = SelectionValue(fileSpec, nRow, pCell);
  });
}

void DRUI::SetTreeChildCheckState(QTreeWidgetItem* pItem, int nState) {
  for (int i = 0; i < pItem->childCount(); ++i) {
    pItem->child(i)->setCheckState(0, nState == Qt::Unchecked ? Qt::Unchecked : Qt::Checked);
    SetTreeChildCheckState(pItem->child(i), nState);
  }
}

void DRUI::SetTreeParentCheckState(QTreeWidgetItem* pItem) {
  QTreeWidgetItem* pParent = pItem->parent();
  if (!pParent) return;
  bool bHas[3] = {false, false, false};
  for (int i = 0; i < pParent->childCount(); ++i) bHas[pParent->child(i)->checkState(0)] = true;
  const bool bPart = bHas[Qt::PartiallyChecked] || (bHas[Qt::Checked] && bHas[Qt::Unchecked]);
  pParent->setCheckState(0, bPart ? Qt::PartiallyChecked : bHas[Qt::Checked] ? Qt::Checked : Qt::Unchecked);
  SetTreeParentCheckState(pParent);
}

void DRUI::SetTreeParentCheckState(QTreeWidgetItem* pItem, int nState, int& nCount) {
  QTreeWidgetItem* pParent = pItem->parent();
  if (!pParent) return;
  int nParentState = nState;
  if (nState == Qt::Unchecked) {
    for (int i = 0; i < pParent->childCount(); ++i) {
      if (nCount == 0 && pParent->child(i) == pItem) continue;
      if (pParent->child(i)->checkState(0) == Qt::Checked) nParentState = Qt::Checked;
    }
  }
  pParent->setCheckState(0, static_cast<Qt::CheckState>(nParentState));
  SetTreeParentCheckState(pParent, nState, nCount);
}

void DRUI::RefreshSelectFileInfo() {
  qint64 nBytes = 0;
  size_t nCount = 0;
  for (const TableSpec& spec : TableSpec::All()) {
    if (spec.IsAppTable()) {
      for (const auto& [qstrApp, selection] : this->*spec.pAppSelection) {
        nBytes += SumOf(selection);
        nCount += selection.size();
      }
    } else if (spec.pSelection) {
      const SelectionMap& selection = this->*spec.pSelection;
      nCount += selection.size();
      if (spec.pfnSize)
        nBytes += SumOf(selection);
      else if (!selection.empty())
        nBytes += kTextCategoryBytes;
    }
  }
  SetMainButtonEnabled(m_pRecoveryButton, nBytes != 0);
  // Deliberate: the singular is used for zero only; one item is "files", too.
  const std::string strSize = GetFileSizeString(nBytes);
  const int nFiles = static_cast<int>(nCount);
  m_pSelectInfoLabel->setText(nFiles == 0
                                  ? QString::asprintf("Select %s in %d file", strSize.c_str(), nFiles)
                                  : QString::asprintf("Select %s in %d files", strSize.c_str(), nFiles));
}
