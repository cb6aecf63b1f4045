// Presses in the file list of an app, which propagate to the app's row and the node.

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionAppFiles : public SelectionTest, public testing::WithParamInterface<AppCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  int Other() const { return 5 - Number(); }
  QTableWidget* Apps() { return Table(GetParam().pszTable); }
  AppSelectionMap& Map() { return AppSelection(Number()); }
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
