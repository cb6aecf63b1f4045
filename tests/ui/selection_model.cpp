#include "tests/ui/selection_model.h"

#include <cstdio>

namespace orvandel {

std::map<std::string, int> SelectionModel::happened;

namespace {

std::string SizeText(quint64 uBytes) {
  struct Unit {
    quint64 uBytes;
    const char* pszText;
  };
  const Unit units[] = {{1ull << 40, " TB"}, {1ull << 30, " GB"}, {1ull << 20, " MB"}, {1ull << 10, " KB"}};
  for (const Unit& unit : units) {
    if (uBytes < unit.uBytes) continue;
    const double dNumber = static_cast<double>(uBytes) / static_cast<double>(unit.uBytes);
    char szNumber[32];
    std::snprintf(szNumber, sizeof szNumber, "%.2f", dNumber);  // rounds half to even
    return szNumber + std::string(unit.pszText);
  }
  return std::to_string(uBytes) + " Bytes";
}

}  // namespace

void SelectionModel::BuildAnew(const ModelContent& content) {
  if (Count() != 0) ++happened["ticks outlive a screen"];
  m_content = content;
  m_selected.reset();
  current.reset();
  appCell.reset();
  nView = 0;
  for (int i = 0; i < 11; ++i) {
    nodes[i] = 0;
    m_filled[i] = false;
  }
  for (std::vector<Row>& table : rows) table.clear();
}

void SelectionModel::Scan(int nCategory, bool bTick) {
  if (bTick) nodes[nCategory] = 2;
  UpdateNode(nCategory);
}

void SelectionModel::Fill(int nCategory) {
  if (m_filled[nCategory]) return;
  m_filled[nCategory] = true;
  std::vector<Row>& table = rows[nCategory];
  if (IsApps(nCategory)) {
    for (const auto& app : m_content.apps[nCategory]) {
      Row row;
      row.qstrApp = app.first;
      table.push_back(row);
    }
    return;
  }
  for (const bool bDeleted : {true, false}) {
    for (const ModelContent::Record& record : m_content.records[nCategory]) {
      if (record.bDeleted != bDeleted) continue;
      Row row;
      row.bCell = !record.bEmpty;
      row.nNumber = record.nKey;
      row.uSize = record.uSize;
      table.push_back(row);
    }
  }
}

void SelectionModel::UpdateNode(int nCategory) {
  Fill(nCategory);
  const int nState = nodes[nCategory];
  std::vector<Row>& table = rows[nCategory];
  if (IsApps(nCategory)) {
    for (Row& row : table) {
      if (nState == 1) continue;
      row.nState = nState;
      if (nState == 2) {
        Map& entry = appMaps[nCategory][row.qstrApp];
        for (const auto& file : AllFilesOf(nCategory, row.qstrApp)) entry[file.first] = file.second;
      } else if (appMaps[nCategory].count(row.qstrApp)) {
        appMaps[nCategory][row.qstrApp].clear();
      }
    }
    return;
  }
  Map& map = maps[nCategory];
  for (quint32 i = 0; i < table.size(); ++i) {
    Row& row = table[i];
    if (!row.bCell) continue;
    if (nState == 0) {
      const bool bHad = map.count(i) != 0;
      map.erase(nCategory == 9 ? row.nNumber : i);
      if (nCategory == 9 && bHad && map.count(i)) ++happened["an unticked chat stays selected"];
      row.nState = 0;
    } else if (nState == 2) {
      map[i] = HasSize(nCategory) ? row.uSize : i;
      row.nState = 2;
    } else {
      const int nNew = map.count(i) ? 2 : 0;
      if (nNew != row.nState) ++happened["a part tick changes a row"];
      row.nState = nNew;
    }
  }
}

void SelectionModel::PressNode(int nCategory, bool bBox) {
  const auto select = [&] {
    m_selected = nCategory;
    UpdateNode(nCategory);
    current = nCategory;
  };
  // A press on the text selects the node immediately, one on the box only on release.
  if (!bBox && m_selected != nCategory) select();
  if (bBox) {
    const int nBefore = nodes[nCategory];
    nodes[nCategory] = nBefore == 2 ? 0 : 2;
    ++happened["node's box from " + std::to_string(nBefore)];
  } else {
    ++happened["node's text at " + std::to_string(nodes[nCategory])];
  }
  if (current == nCategory) UpdateNode(nCategory);
  if (m_selected != nCategory) select();
  nView = nCategory;
  Refresh();
}

bool SelectionModel::HasRowIn(int nTable, bool bNought, bool bPart, bool bWhole) const {
  for (const Row& row : rows[nTable]) {
    if (!row.bCell) continue;
    if ((row.nState == 0 && bNought) || (row.nState == 1 && bPart) || (row.nState == 2 && bWhole))
      return true;
  }
  return false;
}

SelectionModel::Map SelectionModel::AllFilesOf(int nCategory, const QString& qstrApp) const {
  Map all;
  for (const quint32 uSize : m_content.apps[nCategory].at(qstrApp))
    all[static_cast<quint32>(all.size())] = uSize;
  return all;
}

void SelectionModel::SetNode(int nState, const std::string& strBy) {
  ++happened[strBy + " takes the node from " + std::to_string(nodes[*current]) + " to " +
             std::to_string(nState)];
  nodes[*current] = nState;
}

void SelectionModel::PressTable(int nCategory, int nRow, Place place, Map& map) {
  const Row& row = rows[nCategory][static_cast<size_t>(nRow)];
  if (place == Place::kSecondColumn || !row.bCell) {
    ++happened[row.bCell ? "second column of a row" : "blank row"];
    return;
  }
  if (row.nState == 1) return;
  const auto nKey = static_cast<quint32>(nRow);
  if (row.nState == 0) {
    if (!IsApps(nCategory)) map.erase(nKey);
  } else if (IsApps(nCategory)) {
    map = AllFilesOf(nCategory, row.qstrApp);
  } else {
    map[nKey] = HasSize(nCategory) ? row.uSize : nKey;
  }
  if (!current) {
    ++happened["a row without a selected node"];
    return;
  }
  const std::string strBy = IsApps(nCategory) ? "an app" : "a row";
  if (row.nState == 0)
    SetNode(HasRowIn(nCategory, false, true, true) ? 1 : 0, strBy);
  else
    SetNode(HasRowIn(nCategory, true, true, false) ? 1 : 2, strBy);
}

void SelectionModel::PressRow(int nRow, Place place) {
  const int nTable = nView;
  Row& row = rows[nTable][static_cast<size_t>(nRow)];
  if (place == Place::kBox && row.bCell) row.nState = row.nState == 2 ? 0 : 2;
  nPressed = nTable;
  IsApps(nTable) ? PressAppRow(nRow, place) : PressTable(nTable, nRow, place, maps[nTable]);
  Refresh();
}

void SelectionModel::PressAppRow(int nRow, Place place) {
  const int nTable = nView;
  const Row& row = rows[nTable][static_cast<size_t>(nRow)];
  const bool bSecond = place == Place::kSecondColumn;
  appCell = Cell{nTable, nRow, bSecond ? 1 : 0};
  qstrPressedApp = bSecond ? QString("Folder") : row.qstrApp;
  Map local;
  PressTable(nTable, nRow, place, local);
  Map& entry = appMaps[nTable][qstrPressedApp];
  if (bSecond && !entry.empty()) ++happened["an app called Folder is emptied"];
  if (!bSecond && row.nState == 1 && !entry.empty()) ++happened["a partly ticked app loses its files"];
  entry = local;
}

void SelectionModel::OpenApp(int nRow, Place place) {
  PressRow(nRow, place);
  const int nTable = nView;
  const Row& app = rows[nTable][static_cast<size_t>(nRow)];
  qstrPressedApp = app.qstrApp;
  nView = kFileList;
  rows[kFileList].clear();
  Map& entry = appMaps[nTable][qstrPressedApp];  // existing, or created by the rows' ticks below
  if (app.nState == 0) entry.clear();
  if (app.nState == 1 && !entry.empty()) ++happened["a list shows part of an app"];
  ++happened["a list opens at " + std::to_string(app.nState)];
  for (const auto& file : AllFilesOf(nTable, qstrPressedApp)) {
    if (app.nState == 2) entry[file.first] = file.second;
    Row row;
    row.uSize = file.second;
    row.nState = entry.count(file.first) ? 2 : 0;
    rows[kFileList].push_back(row);
  }
}

void SelectionModel::PressFile(int nRow, Place place) {
  Row& row = rows[kFileList][static_cast<size_t>(nRow)];
  if (place == Place::kBox) row.nState = row.nState == 2 ? 0 : 2;
  Map& entry = appMaps[nPressed][qstrPressedApp];
  if (place == Place::kSecondColumn) {
    ++happened["second column of a file"];
    return Refresh();
  }
  int nApp, nNode;
  if (row.nState == 0) {
    entry.erase(static_cast<quint32>(nRow));
    nApp = HasRowIn(kFileList, false, false, true) ? 1 : 0;
  } else {
    entry[static_cast<quint32>(nRow)] = row.uSize;
    nApp = HasRowIn(kFileList, true, false, false) ? 1 : 2;
  }
  Row& app = rows[appCell->nCategory][static_cast<size_t>(appCell->nRow)];
  if (appCell->nColumn == 0) {
    ++happened["a file takes the app from " + std::to_string(app.nState) + " to " + std::to_string(nApp)];
    app.nState = nApp;
  } else {
    ++happened["a file gives the second column a box"];
    app.secondState = nApp;
  }
  if (row.nState == 0)
    nNode = HasRowIn(nPressed, false, true, true) ? 1 : 0;
  else
    nNode = HasRowIn(nPressed, true, true, false) ? 1 : 2;
  SetNode(nNode, "a file");
  Refresh();
}

void SelectionModel::MoveTo(int nRow) {
  if (nView == 2) appCell = Cell{2, nRow, 0};  // the video table keeps the pressed cell
  ++happened["a key moves in category " + std::to_string(nView)];
}

quint64 SelectionModel::Bytes() const {
  quint64 uBytes = 0;
  for (int i = 0; i < 11; ++i) {
    if (IsApps(i)) continue;
    if (!HasSize(i) && !maps[i].empty()) uBytes += 1048576;
    if (!HasSize(i)) continue;
    for (const auto& entry : maps[i]) uBytes += entry.second;
  }
  for (const int i : {2, 3}) {
    for (const auto& app : appMaps[i]) {
      for (const auto& entry : app.second) uBytes += entry.second;
    }
  }
  return uBytes;
}

quint64 SelectionModel::Count() const {
  quint64 uCount = 0;
  for (const Map& map : maps) uCount += map.size();
  for (const int i : {2, 3}) {
    for (const auto& app : appMaps[i]) uCount += app.second.size();
  }
  return uCount;
}

void SelectionModel::Refresh() {
  const quint64 uCount = Count();
  const std::string strSize = SizeText(Bytes());
  ++happened[uCount == 0 ? "nothing is ticked" : "something is ticked"];
  ++happened["a size in" + strSize.substr(strSize.find(' '))];
  strLine = "Select " + strSize + " in " + std::to_string(uCount) + (uCount == 0 ? " file" : " files");
  bRecovery = Bytes() != 0;
}

}  // namespace orvandel
