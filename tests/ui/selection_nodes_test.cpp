// The effect of a node's tick on its rows and its map.

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionNodes : public SelectionTest, public testing::WithParamInterface<PlainCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  QTableWidget* Rows() { return Table(GetParam().pszTable); }
  SelectionMap& Map() { return Selection(Number()); }
};

TEST_P(SelectionNodes, AWholeTickTicksAllRowsAndWritesThem) {
  OpenFilled();
  Map() = {{1, 999999}, {40, 5}};

  SetNode(Number(), kTicked);

  SelectionMap wanted = GetParam().whole;
  wanted[40] = 5;
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Rows()));
  EXPECT_EQ(wanted, Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
}

TEST_P(SelectionNodes, NoTickUnticksAllRowsAndRemovesThem) {
  OpenFilled();
  SetNode(Number(), kTicked);
  Map()[40] = 5;

  SetNode(Number(), kUnticked);

  SelectionMap wanted = GetParam().untickedNode;
  wanted[40] = 5;
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Rows()));
  EXPECT_EQ(wanted, Map());
  EXPECT_EQ(kUnticked, NodeState(Number()));
}

TEST_P(SelectionNodes, APartTickSetsTheRowsByTheMapAndLeavesTheMap) {
  OpenFilled();
  const SelectionMap map = {{0, 3}, {2, 4}, {40, 5}};
  Map() = map;

  SetNode(Number(), kPart);

  EXPECT_EQ(std::vector<int>({2, 0, 2}), States(Rows()));
  EXPECT_EQ(map, Map());
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(SelectionNodes, APartTickUnticksRowsThatTheMapLacks) {
  OpenScanned();
  Map() = {{1, 3}};

  SetNode(Number(), kPart);

  EXPECT_EQ(std::vector<int>({0, 2, 0}), States(Rows()));
  EXPECT_EQ(SelectionMap({{1, 3}}), Map());
}

TEST_P(SelectionNodes, RowsWithoutACellAreSkipped) {
  OpenScanned();
  delete Rows()->takeItem(1, 0);
  Map() = {};

  SetNode(Number(), kTicked);

  SelectionMap wanted = GetParam().whole;
  wanted.erase(1);
  EXPECT_EQ(wanted, Map());
  EXPECT_EQ(std::vector<int>({2, -1, 2}), States(Rows()));
  Map() = {{1, 6}};
  SetNode(Number(), kPart);
  SetNode(Number(), kUnticked);
  EXPECT_EQ(std::vector<int>({0, -1, 0}), States(Rows()));
  EXPECT_EQ(SelectionMap({{1, 6}}), Map());
}

TEST_P(SelectionNodes, AClickOnTheBoxOfAPartlyTickedOneTicksAllRows) {
  OpenFilled();
  ClickNode(Number());
  ClickRowBox(Rows(), 1);
  ASSERT_EQ(kPart, NodeState(Number()));

  ClickNodeBox(Number());

  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Rows()));
  EXPECT_EQ(GetParam().whole, Map());
  EXPECT_EQ(std::string("Select ") + GetParam().pszWholeSize + " in 3 files", SelectionLine());
}

TEST_P(SelectionNodes, AClickOnTheBoxOfTheSelectedOneReachesItsRows) {
  OpenFilled();
  ClickNode(Number());

  ClickNodeBox(Number());
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Rows()));
  EXPECT_EQ(GetParam().whole, Map());

  ClickNodeBox(Number());
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Rows()));
  EXPECT_EQ(GetParam().untickedNode, Map());
}

TEST_P(SelectionNodes, AClickOnTheBoxOfAnotherOneReachesItsRows) {
  OpenFilled();
  ClickNode((Number() + 1) % 11);

  ClickNodeBox(Number());

  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Rows()));
  EXPECT_EQ(GetParam().whole, Map());
  EXPECT_EQ(Node(Number()), WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ(std::string("Select ") + GetParam().pszWholeSize + " in 3 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_P(SelectionNodes, AClickOnTheTextKeepsItsState) {
  OpenScanned();

  ClickNode(Number());
  ClickNode(Number());

  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Rows()));
  EXPECT_EQ(GetParam().whole, Map());
}

TEST_P(SelectionNodes, OneTouchesNoOtherCategory) {
  OpenScanned();

  SetNode(Number(), kUnticked);

  for (const PlainCategory& other : kPlainCategories) {
    if (other.nNumber == Number()) continue;
    EXPECT_EQ(other.whole, Selection(other.nNumber)) << other.pszName;
    EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Table(other.pszTable))) << other.pszName;
    EXPECT_EQ(kTicked, NodeState(other.nNumber)) << other.pszName;
  }
  for (const AppCategory& apps : kAppCategories)
    EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}),
              AppSelection(apps.nNumber));
}

INSTANTIATE_TEST_SUITE_P(Of, SelectionNodes, testing::ValuesIn(kPlainCategories), NameOf<PlainCategory>);

class SelectionChats : public SelectionTest {
 protected:
  QTableWidget* Chats() { return Table("m_pWhatsappTable"); }
};

TEST_F(SelectionChats, UntickingTheNodeLeavesEntriesThatAreCounted) {
  OpenFilled();
  ClickNodeBox(9);
  ASSERT_EQ(SelectionMap({{0, 0}, {1, 1}, {2, 2}}), Selection(9));

  ClickNodeBox(9);

  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Chats()));
  EXPECT_EQ(SelectionMap({{0, 0}, {2, 2}}), Selection(9));
  EXPECT_EQ("Select 1.00 MB in 2 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionChats, APressOnARowRemovesTheRow) {
  OpenFilled();
  ClickNodeBox(9);

  ClickRowBox(Chats(), 0);
  EXPECT_EQ(SelectionMap({{1, 1}, {2, 2}}), Selection(9));

  ClickRowBox(Chats(), 1);
  ClickRowBox(Chats(), 2);
  EXPECT_EQ(SelectionMap(), Selection(9));
}

TEST_F(SelectionChats, EntriesLeftByTheNodeComeBackAsTicksWithItsPartTick) {
  OpenFilled();
  ClickNodeBox(9);
  ClickNodeBox(9);

  ClickRowBox(Chats(), 1);
  EXPECT_EQ(kPart, NodeState(9));
  EXPECT_EQ(std::vector<int>({0, 2, 0}), States(Chats()));

  ClickNode(0);
  ClickNode(9);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Chats()));
  EXPECT_EQ(kPart, NodeState(9));
}

TEST_F(SelectionChats, EachSelectionOfTheUntickedNodeRemovesTheKeysAgain) {
  OpenFilled();
  ClickNode(9);
  Selection(9) = {{0, 0}, {1, 1}, {7, 7}, {8, 8}, {9, 9}};

  ClickNode(9);

  EXPECT_EQ(SelectionMap({{0, 0}, {8, 8}}), Selection(9));
}

class SelectionAppNodes : public SelectionTest, public testing::WithParamInterface<AppCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  int Other() const { return 5 - Number(); }
  QTableWidget* Apps() { return Table(GetParam().pszTable); }
  AppSelectionMap& Map() { return AppSelection(Number()); }
};

TEST_P(SelectionAppNodes, AWholeTickWritesAllFilesOfAllApps) {
  OpenFilled();
  Map() = {{"Beta", {{0, 1}, {7, 5}}}, {"Gone", {{0, 3}}}};

  SetNode(Number(), kTicked);

  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(AppSelectionMap(
                {{"Alpha", kAlpha}, {"Beta", {{0, 40}, {7, 5}}}, {"Gamma", kGamma}, {"Gone", {{0, 3}}}}),
            Map());
  EXPECT_EQ(AppSelectionMap(), AppSelection(Other()));
}

TEST_P(SelectionAppNodes, NoTickEmptiesTheEntriesThatAreThere) {
  OpenFilled();
  SetNode(Number(), kTicked);
  Map().erase("Beta");
  Map()["Gone"] = {{0, 3}};

  SetNode(Number(), kUnticked);

  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Apps()));
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Gamma", {}}, {"Gone", {{0, 3}}}}), Map());
}

TEST_P(SelectionAppNodes, APartTickLeavesRowsAndMap) {
  OpenScanned();
  SetState(Apps(), 0, kPart);
  SetState(Apps(), 1, kUnticked);
  Map() = {{"Alpha", {{2, 30}}}};

  SetNode(Number(), kPart);

  EXPECT_EQ(std::vector<int>({1, 0, 2}), States(Apps()));
  EXPECT_EQ(AppSelectionMap({{"Alpha", {{2, 30}}}}), Map());
}

TEST_P(SelectionAppNodes, APartTickGivesFreshRowsNoBox) {
  OpenFilled();

  SetNode(Number(), kPart);

  ASSERT_EQ(3, Apps()->rowCount());
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(Apps()->item(i, 0)->data(Qt::CheckStateRole).isValid()) << i;
  EXPECT_EQ(AppSelectionMap(), Map());
}

TEST_P(SelectionAppNodes, RowsWithoutACellAreSkipped) {
  OpenScanned();
  delete Apps()->takeItem(1, 0);
  Map() = {};

  SetNode(Number(), kTicked);
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Gamma", kGamma}}), Map());

  SetNode(Number(), kUnticked);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Gamma", {}}}), Map());
}

TEST_P(SelectionAppNodes, AClickOnTheBoxUnticksATickedOneAndTicksAnyOther) {
  OpenFilled();

  ClickNodeBox(Number());
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
  EXPECT_EQ("Select 210 Bytes in 6 files", SelectionLine());

  ClickNodeBox(Number());
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}, {"Beta", {}}, {"Gamma", {}}}), Map());
  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());

  ClickRowBox(Apps(), 0);
  ASSERT_EQ(kPart, NodeState(Number()));
  ClickNodeBox(Number());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Apps()));
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}), Map());
}

INSTANTIATE_TEST_SUITE_P(Of, SelectionAppNodes, testing::ValuesIn(kAppCategories), NameOf<AppCategory>);

}  // namespace
