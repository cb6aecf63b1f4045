// Presses on the rows of the two tables of apps, and in the file list of an app, which propagate to the app's
// row and the node.

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionApps : public AppSelectionTest {
 protected:
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

class SelectionAppFiles : public AppSelectionTest {
 protected:
  /// Opens the list of an app without a preceding press on the app's row.
  void OpenUnpressed(int nRow) {
    (Window().*GetParam().pfnOpen)(nRow, 0);
    QCoreApplication::processEvents();
  }
};

TEST_P(SelectionAppFiles, UntickedOneByOneTakeAppAndNodeDown) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  ASSERT_EQ(std::vector<int>({2, 2, 2}), States(Files()));

  ClickRowBox(Files(), 1);

  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Select 190 Bytes in 5 files", SelectionLine());
  ClickRowBox(Files(), 0);
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  ClickRowBox(Files(), 2);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ(std::vector<int>({0, 2, 2}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Select 150 Bytes in 3 files", SelectionLine());
}

TEST_P(SelectionAppFiles, TickedOneByOneTakeAppAndNodeUp) {
  OpenFilled();
  ClickNode(Number());
  DoubleClickRow(Apps(), 0, 0);
  ASSERT_EQ(std::vector<int>({0, 0, 0}), States(Files()));

  ClickRowBox(Files(), 2);

  EXPECT_EQ(AppSelectionMap({{"Alpha", {{2, 30}}}}), Map());
  EXPECT_EQ(std::vector<int>({1, 0, 0}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ("Select 30 Bytes in 1 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
  ClickRowBox(Files(), 0);
  ClickRowBox(Files(), 1);
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}}), Map());
  EXPECT_EQ(std::vector<int>({2, 0, 0}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ(AppSelectionMap(), AppSelection(Other()));
}

TEST_P(SelectionAppFiles, TheLastFileOfTheLastAppTakesTheNodeToItsEnds) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 1, 0);

  ClickRowBox(Files(), 0);
  EXPECT_EQ(kPart, NodeState(Number()));
  ClickRowBox(Files(), 0);
  EXPECT_EQ(kTicked, NodeState(Number()));

  ClickNode(Number());
  ClickRowBox(Apps(), 0);
  ClickRowBox(Apps(), 2);
  DoubleClickRow(Apps(), 1, 0);
  ClickRowBox(Files(), 0);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Apps()));
  EXPECT_EQ(kUnticked, NodeState(Number()));
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_P(SelectionAppFiles, AClickOnTheTextAppliesTheCurrentState) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  ClickRowBox(Files(), 2);
  Map()["Alpha"] = {{2, 5}};

  ClickRow(Files(), 0);
  ClickRow(Files(), 2);

  EXPECT_EQ(SelectionMap({{0, 10}}), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 2, 0}), States(Files()));
}

TEST_P(SelectionAppFiles, APressOnTheSecondColumnSelectsNothingAndRewritesTheLine) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  SetState(Files(), 1, kUnticked);
  Selection(8) = {{5, 5}};

  ClickRow(Files(), 1, 1);

  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ("Select 1.00 MB in 7 files", SelectionLine());
}

TEST_P(SelectionAppFiles, APressWithoutACellSelectsNothing) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  Map()["Alpha"][9] = 1;

  Window().appsTableItemPress(9, 0);

  EXPECT_EQ(SelectionMap({{0, 10}, {1, 20}, {2, 30}, {9, 1}}), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionAppFiles, APressMakesAMissingEntry) {
  OpenFilled();
  ClickNode(Number());
  DoubleClickRow(Apps(), 0, 0);
  Map().clear();

  ClickRow(Files(), 0, 1);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}}), Map());

  Map().clear();
  ClickRowBox(Files(), 1);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {{1, 20}}}}), Map());
}

TEST_P(SelectionAppFiles, APartlyTickedRowDoesNothing) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  SetState(Files(), 1, kPart);
  SetState(Files(), 0, kUnticked);

  ClickRow(Files(), 1);

  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionAppFiles, APartlyTickedFileCountsForNeitherEndOfItsApp) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  SetState(Files(), 0, kPart);

  // With no file unticked, the app is ticked.
  ClickRow(Files(), 2);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));

  // With no file fully ticked, it isn't ticked.
  SetState(Files(), 1, kUnticked);
  ClickRowBox(Files(), 2);
  EXPECT_EQ(std::vector<int>({0, 2, 2}), States(Apps()));
}

TEST_P(SelectionAppFiles, APartlyTickedAppKeepsTheNodePartlyTickedEitherWay) {
  OpenFilled();
  ClickNode(Number());
  DoubleClickRow(Apps(), 1, 0);
  SetState(Apps(), 0, kPart);

  ClickRow(Files(), 0);
  EXPECT_EQ(std::vector<int>({1, 0, 0}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));

  SetState(Apps(), 2, kTicked);
  ClickRowBox(Files(), 0);
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(SelectionAppFiles, WithoutAnAppCellTheNodeStillFollowsTheAppsAsTheyStand) {
  OpenFilled();
  ClickNodeBox(Number());
  ASSERT_EQ(nullptr, WindowAccess::CurrentAppItem(Window()));
  OpenUnpressed(0);

  ClickRowBox(Files(), 1);

  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(kPart, NodeState(Number())) << "a file was unticked and an app is ticked";
  ClickRowBox(Files(), 1);
  EXPECT_EQ(kAlpha, Map()["Alpha"]);
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionAppFiles, WithoutASelectedNodeTheAppStillFollowsItsFiles) {
  OpenFilled();
  TickNode(Number());
  (Window().*GetParam().pfnPress)(0, 0);
  OpenUnpressed(0);
  ASSERT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));

  ClickRowBox(Files(), 1);

  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ("Select 190 Bytes in 5 files", SelectionLine());
  ClickRowBox(Files(), 1);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
}

TEST_P(SelectionAppFiles, AListOpenedByTheSecondColumnReportsToThatCell) {
  OpenFilled();
  ClickNodeBox(Number());

  DoubleClickRow(Apps(), 0, 1);
  EXPECT_EQ("Alpha", PressedApp());
  ClickRowBox(Files(), 1);

  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);
  EXPECT_EQ(SelectionMap(), Map()["Folder"]);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(Qt::PartiallyChecked, Apps()->item(0, 1)->checkState());
}

TEST_P(SelectionAppFiles, AListOpenedOnAPartlyTickedAppShowsItsEntry) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  ClickRowBox(Files(), 1);
  ClickNode(Number());

  // The first press of a double click on the name would empty the entry.
  DoubleClickRow(Apps(), 0, 1);

  EXPECT_EQ(std::vector<int>({2, 0, 2}), States(Files()));
  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), Map()["Alpha"]);
  ClickNode(Number());
  DoubleClickRow(Apps(), 0, 0);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Files()));
  EXPECT_EQ(SelectionMap(), Map()["Alpha"]);
  EXPECT_EQ(std::vector<int>({1, 2, 2}), States(Apps()));
}

TEST_P(SelectionAppFiles, AListTakesTheStateOfItsAppAndBringsTheEntryInLine) {
  OpenFilled();
  ClickNode(Number());
  Map()["Alpha"] = {{1, 5}};

  OpenUnpressed(0);
  OpenUnpressed(1);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", {}}}), Map());
  EXPECT_EQ(std::vector<int>({0}), States(Files()));

  SetState(Apps(), 2, kTicked);
  OpenUnpressed(2);
  EXPECT_EQ(kGamma, Map()["Gamma"]);
  EXPECT_EQ(std::vector<int>({2, 2}), States(Files()));

  SetState(Apps(), 0, kPart);
  OpenUnpressed(0);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Files()));
  EXPECT_EQ(Number(), PressedCategory());
  EXPECT_EQ("Alpha", PressedApp());
}

INSTANTIATE_TEST_SUITE_P(Of, SelectionAppFiles, testing::ValuesIn(kAppCategories), NameOf<AppCategory>);

}  // namespace
