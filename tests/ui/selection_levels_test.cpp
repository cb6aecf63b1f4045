// The tick rule for trees of any depth.

#include <QTreeWidget>

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

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
