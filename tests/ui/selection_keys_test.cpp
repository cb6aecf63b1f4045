// Ticks by the space key: they update the map, the node and the line like a click.

#include <QTest>

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionKeys : public SelectionTest {
 protected:
  /// Gives a cell the keyboard focus, and presses the space key.
  static void PressSpace(QTableWidget* pTable, int nRow, int nColumn = 0) {
    pTable->setFocus();
    pTable->setCurrentCell(nRow, nColumn);
    QTest::keyClick(pTable, Qt::Key_Space);
  }
};

class SelectionKeysOf : public SelectionKeys, public testing::WithParamInterface<PlainCategory> {};

TEST_P(SelectionKeysOf, SpaceOnARowUnticksAndTicksIt) {
  OpenScanned();
  ClickNode(GetParam().nNumber);
  QTableWidget* pTable = Table(GetParam().pszTable);
  SelectionMap without = GetParam().whole;
  without.erase(1);

  PressSpace(pTable, 1);

  EXPECT_EQ(std::vector<int>({2, 0, 2}), States(pTable));
  EXPECT_EQ(without, Selection(GetParam().nNumber));
  EXPECT_EQ(kPart, NodeState(GetParam().nNumber));
  PressSpace(pTable, 1);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(pTable));
  EXPECT_EQ(GetParam().whole, Selection(GetParam().nNumber));
  EXPECT_EQ(kTicked, NodeState(GetParam().nNumber));
}

INSTANTIATE_TEST_SUITE_P(Categories, SelectionKeysOf, testing::ValuesIn(kPlainCategories),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(SelectionKeys, SpaceOnANodeUnticksAndTicksItsRows) {
  OpenScanned();
  ClickNode(kContacts);
  QTreeWidget* pTree = WindowAccess::Tree(Window());
  pTree->setFocus();

  QTest::keyClick(pTree, Qt::Key_Space);

  EXPECT_EQ(kUnticked, NodeState(kContacts));
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Table("m_pContactsTable")));
  EXPECT_EQ(SelectionMap(), Selection(kContacts));
  QTest::keyClick(pTree, Qt::Key_Space);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Table("m_pContactsTable")));
  EXPECT_EQ(3u, Selection(kContacts).size());
}

TEST_F(SelectionKeys, SpaceOnAnAppTicksAllItsFiles) {
  OpenFilled();
  ClickNode(kAppPhotos);
  QTableWidget* pTable = Table("m_pAppPhotosTable");

  PressSpace(pTable, 0);

  EXPECT_EQ(kTicked, pTable->item(0, 0)->checkState());
  EXPECT_NE(0u, AppSelection(kAppPhotos)[pTable->item(0, 0)->text()].size());
}

TEST_F(SelectionKeys, OtherCellsAndKeysChangeNoSelection) {
  OpenScanned();
  ClickNode(kAppPhotos);
  const AppSelectionMap before = AppSelection(kAppPhotos);

  PressSpace(Table("m_pAppPhotosTable"), 0, 1);
  QTest::keyClick(Table("m_pAppPhotosTable"), Qt::Key_Down);

  EXPECT_EQ(before, AppSelection(kAppPhotos)) << "no entry of the text in the second column";
}

}  // namespace
