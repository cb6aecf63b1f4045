// Presses on the rows of the two tables of apps.

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionApps : public SelectionTest, public testing::WithParamInterface<AppCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  int Other() const { return 5 - Number(); }
  QTableWidget* Apps() { return Table(GetParam().pszTable); }
  AppSelectionMap& Map() { return AppSelection(Number()); }
  void Press(int nRow, int nColumn) { (Window().*GetParam().pfnPress)(nRow, nColumn); }
};

TEST_P(SelectionApps, TickedOneByOneTakeTheNodeFromUntickedToPartlyToTicked) {
  OpenFilled();
  ClickNode(Number());

  ClickRowBox(Apps(), 2);

  EXPECT_EQ(AppSelectionMap({{"Gamma", kGamma}}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Select 110 Bytes in 2 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
  EXPECT_EQ(Number(), PressedCategory());
  EXPECT_EQ("Gamma", PressedApp());
  EXPECT_EQ(Apps()->item(2, 0), WindowAccess::CurrentAppItem(Window()));
  ClickRowBox(Apps(), 0);
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Alpha", PressedApp());
  ClickRowBox(Apps(), 1);
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ("Select 210 Bytes in 6 files", SelectionLine());
  EXPECT_EQ(AppSelectionMap(), AppSelection(Other()));
}

TEST_P(SelectionApps, UntickedKeepAnEmptyEntry) {
  OpenFilled();
  ClickNodeBox(Number());

  ClickRowBox(Apps(), 0);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));

  ClickRowBox(Apps(), 1);
  ClickRowBox(Apps(), 2);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", {}}, {"Gamma", {}}}), Map());
  EXPECT_EQ(kUnticked, NodeState(Number()));
  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_P(SelectionApps, AClickOnTheTextOfATickedOneWritesTheWholeEntryAnew) {
  OpenFilled();
  ClickNodeBox(Number());
  Map()["Alpha"] = {{1, 1}, {9, 9}};

  ClickRow(Apps(), 0);

  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionApps, AClickOnTheTextOfAnUntickedOneEmptiesItsEntryOrMakesOne) {
  OpenFilled();
  ClickNode(Number());
  Map()["Alpha"] = {{1, 1}};

  ClickRow(Apps(), 0);
  ClickRow(Apps(), 1);

  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", {}}}), Map());
  EXPECT_EQ(kUnticked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Apps()));
}

TEST_P(SelectionApps, AClickOnTheTextOfAPartlyTickedOneLosesItsFilesAndKeepsItsState) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  ClickRowBox(Files(), 1);
  ClickNode(Number());
  ASSERT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  ASSERT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);

  ClickRow(Apps(), 0);

  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Select 150 Bytes in 3 files", SelectionLine());
}

TEST_P(SelectionApps, AClickOnTheBoxOfAPartlyTickedOneTakesAllItsFiles) {
  OpenFilled();
  ClickNode(Number());
  DoubleClickRow(Apps(), 0, 0);
  ClickRowBox(Files(), 1);
  ClickNode(Number());
  ASSERT_EQ(std::vector<int>({1, 0, 0}), States(Apps()));

  ClickRowBox(Apps(), 0);
  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 0, 0}), States(Apps()));

  ClickRowBox(Apps(), 0);
  EXPECT_EQ(SelectionMap(), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Apps()));
}

TEST_P(SelectionApps, APressOnTheSecondColumnMakesAnEmptyEntryOfItsText) {
  OpenFilled();
  ClickNodeBox(Number());

  ClickRow(Apps(), 1, 1);

  EXPECT_EQ("Folder", PressedApp());
  EXPECT_EQ(Apps()->item(1, 1), WindowAccess::CurrentAppItem(Window()));
  EXPECT_EQ(Number(), PressedCategory());
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Folder", {}}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ("Select 210 Bytes in 6 files", SelectionLine());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
}

TEST_P(SelectionApps, APressOnTheSecondColumnEmptiesAnAppOfThatName) {
  OpenDataScreen();
  Records().m_mapAppPhotoFiles = {{"Beta", {{40, "Beta", "a", u""}}}, {"Folder", {{7, "Folder", "b", u""}}}};
  Records().m_mapAppVideoFiles = Records().m_mapAppPhotoFiles;
  ClickNodeBox(Number());
  ASSERT_EQ(AppSelectionMap({{"Beta", kBeta}, {"Folder", {{0, 7}}}}), Map());

  ClickRow(Apps(), 0, 1);

  EXPECT_EQ(AppSelectionMap({{"Beta", kBeta}, {"Folder", {}}}), Map());
  EXPECT_EQ(std::vector<int>({2, 2}), States(Apps()));
}

TEST_P(SelectionApps, APressWithoutACellLeavesAppsAndNode) {
  OpenScanned();
  ClickNode(Number());

  Press(7, 0);

  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ(kBeta, Map()["Beta"]);
  EXPECT_EQ(kGamma, Map()["Gamma"]);
  EXPECT_EQ(nullptr, WindowAccess::CurrentAppItem(Window()));
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionApps, ChangeTheMapAndTheLineBeforeAnyNodeIsSelected) {
  OpenFilled();
  TickNode(Number());
  SetState(Apps(), 0, kUnticked);

  Press(0, 0);

  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ("Select 150 Bytes in 3 files", SelectionLine());
  EXPECT_EQ(kTicked, NodeState(Number()));
  SetState(Apps(), 0, kTicked);
  Press(0, 0);
  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ("Select 210 Bytes in 6 files", SelectionLine());
}

TEST_P(SelectionApps, APartlyTickedOneElsewhereKeepsTheNodePartlyTicked) {
  OpenScanned();
  ClickNode(Number());
  SetState(Apps(), 0, kUnticked);
  SetState(Apps(), 1, kPart);
  SetState(Apps(), 2, kUnticked);

  Press(0, 0);
  EXPECT_EQ(kPart, NodeState(Number()));

  SetState(Apps(), 0, kTicked);
  SetState(Apps(), 2, kTicked);
  Press(2, 0);
  EXPECT_EQ(kPart, NodeState(Number()));
}

INSTANTIATE_TEST_SUITE_P(Of, SelectionApps, testing::ValuesIn(kAppCategories), NameOf<AppCategory>);

}  // namespace
