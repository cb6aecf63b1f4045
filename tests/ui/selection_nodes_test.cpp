// The effect of a node's tick on its rows and its map, and the tick rule for trees of any depth.

#include <QTreeWidget>

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

using SelectionNodes = PlainSelectionTest;

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

using SelectionAppNodes = AppSelectionTest;

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

class SelectionLevels : public WindowTest {
 protected:
  SelectionLevels() {
    Open();
    m_tree.setColumnCount(1);
  }
  QTreeWidgetItem* Add(QTreeWidgetItem* pParent, int nState) {
    auto* pItem = pParent ? new QTreeWidgetItem(pParent) : new QTreeWidgetItem(&m_tree);
    pItem->setCheckState(0, static_cast<Qt::CheckState>(nState));
    return pItem;
  }
  static int StateOf(const QTreeWidgetItem* pItem) { return pItem->checkState(0); }

  QTreeWidget m_tree;
};

TEST_F(SelectionLevels, ChildrenOfAllLevelsTakeATick) {
  for (const int nState : {0, 1, 2}) {
    QTreeWidgetItem* pRoot = Add(nullptr, 1);
    QTreeWidgetItem* pChild = Add(pRoot, 2 - nState);
    QTreeWidgetItem* pSecondChild = Add(pRoot, 1);
    QTreeWidgetItem* pGrandchild = Add(pSecondChild, 2 - nState);
    QTreeWidgetItem* pBeside = Add(nullptr, 1);

    Window().SetTreeChildCheckState(pRoot, nState);

    const int nWanted = nState == 0 ? 0 : 2;
    EXPECT_EQ(1, StateOf(pRoot)) << nState;
    EXPECT_EQ(nWanted, StateOf(pChild)) << nState;
    EXPECT_EQ(nWanted, StateOf(pSecondChild)) << nState;
    EXPECT_EQ(nWanted, StateOf(pGrandchild)) << nState;
    EXPECT_EQ(1, StateOf(pBeside)) << nState;
  }
}

TEST_F(SelectionLevels, AParentSumsUpItsChildren) {
  struct Case {
    std::vector<int> children;
    int nWanted;
  };
  const Case cases[] = {{{0}, 0},       {{1}, 1},       {{2}, 2},       {{0, 0, 0}, 0}, {{2, 2, 2}, 2},
                        {{1, 1}, 1},    {{0, 2}, 1},    {{2, 0, 2}, 1}, {{0, 1}, 1},    {{1, 0, 0}, 1},
                        {{2, 1, 2}, 1}, {{0, 1, 2}, 1}, {{2, 2, 0}, 1}, {{0, 0, 2}, 1}};
  for (const Case& one : cases) {
    for (const int nBefore : {0, 1, 2}) {
      QTreeWidgetItem* pRoot = Add(nullptr, nBefore);
      for (const int nState : one.children) Add(pRoot, nState);

      Window().SetTreeParentCheckState(pRoot->child(0));

      EXPECT_EQ(one.nWanted, StateOf(pRoot)) << testing::PrintToString(one.children) << " from " << nBefore;
    }
  }
}

TEST_F(SelectionLevels, ASumGoesUpThroughAllLevels) {
  QTreeWidgetItem* pRoot = Add(nullptr, 0);
  QTreeWidgetItem* pOther = Add(pRoot, 2);
  QTreeWidgetItem* pMiddle = Add(pRoot, 0);
  QTreeWidgetItem* pLeaf = Add(pMiddle, 2);
  QTreeWidgetItem* pSecondLeaf = Add(pMiddle, 2);

  Window().SetTreeParentCheckState(pLeaf);
  EXPECT_EQ(2, StateOf(pMiddle));
  EXPECT_EQ(2, StateOf(pRoot));

  pSecondLeaf->setCheckState(0, Qt::Unchecked);
  Window().SetTreeParentCheckState(pLeaf);
  EXPECT_EQ(1, StateOf(pMiddle));
  EXPECT_EQ(1, StateOf(pRoot));

  pLeaf->setCheckState(0, Qt::Unchecked);
  Window().SetTreeParentCheckState(pLeaf);
  EXPECT_EQ(0, StateOf(pMiddle));
  EXPECT_EQ(1, StateOf(pRoot));

  pOther->setCheckState(0, Qt::Unchecked);
  Window().SetTreeParentCheckState(pLeaf);
  EXPECT_EQ(0, StateOf(pRoot));
}

TEST_F(SelectionLevels, AnItemAtTheTopHasNoParentToUpdate) {
  QTreeWidgetItem* pTop = Add(nullptr, 1);
  QTreeWidgetItem* pBeside = Add(nullptr, 0);
  Add(pTop, 2);
  int nCount = 0;

  Window().SetTreeParentCheckState(pTop);
  Window().SetTreeParentCheckState(pTop, 2, nCount);

  EXPECT_EQ(1, StateOf(pTop));
  EXPECT_EQ(2, StateOf(pTop->child(0)));
  EXPECT_EQ(0, StateOf(pBeside));
}

TEST_F(SelectionLevels, TheOlderFormGivesATickToAllParents) {
  for (const int nState : {1, 2}) {
    for (int nCount : {0, 1}) {
      QTreeWidgetItem* pRoot = Add(nullptr, 0);
      QTreeWidgetItem* pMiddle = Add(pRoot, 0);
      QTreeWidgetItem* pLeaf = Add(pMiddle, 0);
      Add(pMiddle, 0);

      Window().SetTreeParentCheckState(pLeaf, nState, nCount);

      EXPECT_EQ(nState, StateOf(pMiddle)) << nState;
      EXPECT_EQ(nState, StateOf(pRoot)) << nState;
      EXPECT_EQ(0, StateOf(pLeaf)) << nState;
      EXPECT_EQ(0, StateOf(pMiddle->child(1))) << nState;
    }
  }
}

TEST_F(SelectionLevels, TheOlderFormUnticksAParentUnlessAChildIsTicked) {
  struct Case {
    std::vector<int> children;  // of which the first is the item
    int nCount;
    int nWanted;
  };
  const Case cases[] = {
      {{0, 0}, 0, 0}, {{0, 1}, 0, 0}, {{0, 2}, 0, 2},    {{2, 0}, 0, 0}, {{2, 1}, 0, 0},    {{2, 2}, 0, 2},
      {{2, 0}, 1, 2}, {{2, 1}, 1, 2}, {{0, 1}, 1, 0},    {{0, 2}, 1, 2}, {{2}, 0, 0},       {{2}, 1, 2},
      {{1, 1}, 1, 0}, {{1}, 0, 0},    {{0, 0, 2}, 0, 2}, {{2}, 5, 2},    {{0, 2, 0}, 0, 2}, {{0, 2, 1}, 0, 2},
  };
  for (const Case& one : cases) {
    for (const int nBefore : {0, 1, 2}) {
      QTreeWidgetItem* pRoot = Add(nullptr, nBefore);
      for (const int nState : one.children) Add(pRoot, nState);
      int nCount = one.nCount;

      Window().SetTreeParentCheckState(pRoot->child(0), 0, nCount);

      EXPECT_EQ(one.nWanted, StateOf(pRoot))
          << testing::PrintToString(one.children) << " with " << one.nCount << " from " << nBefore;
    }
  }
}

TEST_F(SelectionLevels, TheOlderFormLeavesTheItemOfEachLevelOut) {
  struct Case {
    int nCount;
    int nBeside;  // state of a child of the top beside the item's parent
    int nMiddle, nRoot;
  };
  // Besides the item, the parent has a ticked child, so it becomes ticked. That affects its own parent only
  // with a count.
  const Case cases[] = {{0, 0, 2, 0}, {0, 2, 2, 2}, {1, 0, 2, 2}, {1, 1, 2, 2}, {0, 1, 2, 0}};
  for (const Case& one : cases) {
    QTreeWidgetItem* pRoot = Add(nullptr, 1);
    QTreeWidgetItem* pMiddle = Add(pRoot, 1);
    Add(pRoot, one.nBeside);
    QTreeWidgetItem* pLeaf = Add(pMiddle, 0);
    Add(pMiddle, 2);
    int nCount = one.nCount;

    Window().SetTreeParentCheckState(pLeaf, 0, nCount);

    EXPECT_EQ(one.nMiddle, StateOf(pMiddle)) << one.nCount << ", " << one.nBeside;
    EXPECT_EQ(one.nRoot, StateOf(pRoot)) << one.nCount << ", " << one.nBeside;
  }
}

}  // namespace
