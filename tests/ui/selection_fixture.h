#pragma once
#include "tests/ui/window_fixture.h"

namespace orvandel {

/// A category whose rows are ticked individually, with the expectations for its rows in SelectionTest.
struct PlainCategory {
  int nNumber;
  const char* pszName;
  const char* pszTable;
  void (DRUI::*pfnPress)(int nRow, int nColumn);
  SelectionMap whole;         ///< with all rows ticked
  const char* pszWholeSize;   ///< of all rows, as shown in the line
  const char* pszMiddleGone;  ///< without row 1
  SelectionMap untickedNode;  ///< the map after unticking the node
};

inline void PrintTo(const PlainCategory& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

/// The nine of them.
extern const std::vector<PlainCategory> kPlainCategories;

/// A category of apps.
struct AppCategory {
  int nNumber;
  const char* pszName;
  const char* pszTable;
  void (DRUI::*pfnPress)(int nRow, int nColumn);
  void (DRUI::*pfnOpen)(int nRow, int nColumn);
};

inline void PrintTo(const AppCategory& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

/// The two of them.
extern const std::vector<AppCategory> kAppCategories;

/// Tests of ticks: a data screen with three records of each category, and three apps in both app categories.
class SelectionTest : public WindowTest {
 protected:
  static constexpr int kUnticked = 0;
  static constexpr int kPart = 1;
  static constexpr int kTicked = 2;

  /// All tables empty and all nodes unticked, until a node is selected.
  DRUI& OpenFilled();
  /// The state after a scan: all nodes and rows ticked, and no node selected.
  DRUI& OpenScanned();
  /// Fills the records, as a scan does.
  void PutRecords();
  /// Ticks a node and updates its table, as a scan does.
  void TickNode(int nCategory) { SetNode(nCategory, kTicked); }
  /// Builds a new data screen in place of the last, as a scan does.
  void ReplaceDataScreen();
  /// Updates a node's table to a state of the node, without showing it.
  void SetNode(int nCategory, int nState);

  BackupRecords& Records() { return WindowAccess::Records(*m_pWindow); }
  SelectionMap& Selection(int nCategory) { return WindowAccess::Selection(*m_pWindow, nCategory); }
  AppSelectionMap& AppSelection(int nCategory) { return WindowAccess::AppSelection(*m_pWindow, nCategory); }
  int PressedCategory() { return WindowAccess::PressedCategory(*m_pWindow); }
  std::string PressedApp() { return WindowAccess::PressedApp(*m_pWindow).toStdString(); }
  int NodeState(int nCategory) { return Node(nCategory)->checkState(0); }
  /// States of all rows from the top, -1 for one without a cell.
  static std::vector<int> States(const QTableWidget* pTable);
  static void SetState(QTableWidget* pTable, int nRow, int nState);
  QTableWidget* Files() { return Table("m_pAppsTable"); }
  bool RecoveryIsOn();

  /// The events of a double click: a click, then the second press and release.
  void DoubleClickRow(QTableWidget* pTable, int nRow, int nColumn, bool bOnBox = false);
};

/// Files of the apps of SelectionTest: "Alpha" has three, "Beta" one and "Gamma" two.
extern const SelectionMap kAlpha, kBeta, kGamma;

/// Tests of each category whose rows are ticked individually.
class PlainSelectionTest : public SelectionTest, public testing::WithParamInterface<PlainCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  QTableWidget* Rows() { return Table(GetParam().pszTable); }
  SelectionMap& Map() { return Selection(Number()); }
};

/// Tests of each category of apps.
class AppSelectionTest : public SelectionTest, public testing::WithParamInterface<AppCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  int Other() const { return 5 - Number(); }
  QTableWidget* Apps() { return Table(GetParam().pszTable); }
  AppSelectionMap& Map() { return AppSelection(Number()); }
};

/// Of a test's parameter, which has a pszName.
template <typename Case>
std::string NameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.pszName;
}

}  // namespace orvandel
