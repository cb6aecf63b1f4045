#pragma once
#include "tests/ui/window_fixture.h"

/// A category whose rows are ticked one by one, and what its rows of SelectionTest come to.
struct PlainCategory {
  int nNumber;
  const char* pszName;
  const char* pszTable;
  void (DRUI::*pfnPress)(int nRow, int nColumn);
  SelectionMap whole;         ///< with all rows ticked
  const char* pszWholeSize;   ///< of all rows, as the line has it
  const char* pszMiddleGone;  ///< without row 1
  SelectionMap untickedNode;  ///< what the node's untick leaves of the whole
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

/// Tests of ticks: a data screen over three records of each category, and three apps in each of the two
/// categories of apps.
class SelectionTest : public WindowTest {
 protected:
  static constexpr int kUnticked = 0;
  static constexpr int kPart = 1;
  static constexpr int kTicked = 2;

  /// All tables empty and all nodes unticked, until a node is selected.
  DRUI& OpenFilled();
  /// As a scan leaves the screen: all nodes and rows ticked, and no node selected.
  DRUI& OpenScanned();
  /// Puts the records where a scan puts them.
  void PutRecords();
  /// Ticks a node and brings its table in line with it, as a scan does.
  void TickNode(int nCategory) { SetNode(nCategory, kTicked); }
  /// Brings a node's table in line with a state of the node, without showing it.
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

  /// As a double click comes to a table: a click, and the second press and release.
  void DoubleClickRow(QTableWidget* pTable, int nRow, int nColumn, bool bOnBox = false);
};

/// Files of the apps of SelectionTest: "Alpha" has three, "Beta" one and "Gamma" two.
extern const SelectionMap kAlpha, kBeta, kGamma;

/// Of a test's parameter, which has a pszName.
template <typename Case>
std::string NameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.pszName;
}
