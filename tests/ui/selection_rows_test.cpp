// The effect of a row's tick on the map, the node and the line.

#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionRows : public SelectionTest, public testing::WithParamInterface<PlainCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  QTableWidget* Rows() { return Table(GetParam().pszTable); }
  SelectionMap& Map() { return Selection(Number()); }
  void Press(int nRow, int nColumn) { (Window().*GetParam().pfnPress)(nRow, nColumn); }
  /// Of the category's map, without some rows.
  SelectionMap WholeWithout(const std::vector<U32>& rows) const {
    SelectionMap map = GetParam().whole;
    for (const U32 nRow : rows) map.erase(nRow);
    return map;
  }
};

TEST_P(SelectionRows, TickedOneByOneTakeTheNodeFromUntickedToPartlyToTicked) {
  OpenFilled();
  ClickNode(Number());
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Rows()));
  EXPECT_EQ(kUnticked, NodeState(Number()));

  ClickRowBox(Rows(), 1);

  EXPECT_EQ(WholeWithout({0, 2}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ(Number(), PressedCategory());
  ClickRowBox(Rows(), 0);
  EXPECT_EQ(WholeWithout({2}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
  ClickRowBox(Rows(), 2);
  EXPECT_EQ(GetParam().whole, Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::string("Select ") + GetParam().pszWholeSize + " in 3 files", SelectionLine());
}

TEST_P(SelectionRows, UntickedOneByOneTakeTheNodeFromTickedToPartlyToUnticked) {
  OpenScanned();
  ClickNode(Number());
  for (const PlainCategory& other : kPlainCategories) Selection(other.nNumber) = {};
  AppSelection(2) = AppSelection(3) = {};
  Map() = GetParam().whole;

  ClickRowBox(Rows(), 1);

  EXPECT_EQ(WholeWithout({1}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
  EXPECT_EQ(std::string("Select ") + GetParam().pszMiddleGone + " in 2 files", SelectionLine());
  ClickRowBox(Rows(), 0);
  EXPECT_EQ(WholeWithout({0, 1}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
  ClickRowBox(Rows(), 2);
  EXPECT_EQ(SelectionMap(), Map());
  EXPECT_EQ(kUnticked, NodeState(Number()));
  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_P(SelectionRows, KeepTheirTicksWhenTheNodeIsLeftAndSelectedAgain) {
  OpenScanned();
  ClickNode(Number());
  ClickRowBox(Rows(), 1);

  ClickNode((Number() + 1) % 11);
  ClickNode(Number());

  EXPECT_EQ(std::vector<int>({2, 0, 2}), States(Rows()));
  EXPECT_EQ(WholeWithout({1}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(SelectionRows, AClickOnTheTextAppliesTheCurrentState) {
  OpenScanned();
  ClickNode(Number());
  ClickRowBox(Rows(), 2);
  Map() = {{2, 77}};

  ClickRow(Rows(), 0);
  ClickRow(Rows(), 2);

  EXPECT_EQ(std::vector<int>({2, 2, 0}), States(Rows()));
  EXPECT_EQ(WholeWithout({1, 2}), Map());
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(SelectionRows, APressOnAnotherColumnIsRememberedAndSelectsNothing) {
  OpenScanned();
  const int nElsewhere = Number() == 0 ? 1 : 0;
  ClickNode(nElsewhere);
  ClickRow(Table(nElsewhere == 0 ? "m_pCameraTable" : "m_pPhotoStreamTable"), 0);
  ClickNode(Number());
  ASSERT_EQ(nElsewhere, PressedCategory());
  SetState(Rows(), 1, kUnticked);

  for (int nColumn = 1; nColumn < Rows()->columnCount(); ++nColumn) {
    Rows()->scrollToItem(Rows()->item(1, nColumn));
    ClickRow(Rows(), 1, nColumn);

    EXPECT_EQ(GetParam().whole, Map()) << nColumn;
    EXPECT_EQ(std::vector<int>({2, 0, 2}), States(Rows())) << nColumn;
    EXPECT_EQ(kTicked, NodeState(Number())) << nColumn;
    EXPECT_EQ(Number(), PressedCategory()) << nColumn;
  }
}

TEST_P(SelectionRows, EachPressRewritesTheLine) {
  OpenFilled();
  ClickNode(Number());
  Selection(8)[50] = 50;

  ClickRow(Rows(), 0, 1);

  EXPECT_EQ("Select 1.00 MB in 1 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_P(SelectionRows, APressWithoutACellSelectsNothing) {
  OpenScanned();
  ClickNode(Number());
  Map()[9] = 9;
  const SelectionMap before = Map();
  delete Rows()->takeItem(0, 0);

  Press(9, 0);
  Press(0, 0);
  Press(-1, 0);

  EXPECT_EQ(before, Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(Number(), PressedCategory());
}

TEST_P(SelectionRows, ChangeTheMapAndTheLineBeforeAnyNodeIsSelected) {
  OpenFilled();
  TickNode(Number());
  ASSERT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  SetState(Rows(), 1, kUnticked);

  Press(1, 0);

  EXPECT_EQ(WholeWithout({1}), Map());
  EXPECT_EQ(std::string("Select ") + GetParam().pszMiddleGone + " in 2 files", SelectionLine());
  EXPECT_EQ(kTicked, NodeState(Number()));
  SetState(Rows(), 1, kTicked);
  Press(1, 0);
  EXPECT_EQ(GetParam().whole, Map());
  EXPECT_EQ(std::string("Select ") + GetParam().pszWholeSize + " in 3 files", SelectionLine());
  for (int i = 0; i < 11; ++i) EXPECT_EQ(i == Number() ? kTicked : kUnticked, NodeState(i)) << i;
}

TEST_P(SelectionRows, APartlyTickedOneDoesNothing) {
  OpenScanned();
  ClickNode(Number());
  Map() = {{2, 5}};
  SetState(Rows(), 1, kPart);

  Press(1, 0);

  EXPECT_EQ(SelectionMap({{2, 5}}), Map());
  EXPECT_EQ(kTicked, NodeState(Number()));
  EXPECT_EQ(std::vector<int>({2, 1, 2}), States(Rows()));
}

TEST_P(SelectionRows, APartlyTickedOneElsewhereKeepsTheNodePartlyTicked) {
  OpenScanned();
  ClickNode(Number());
  SetState(Rows(), 0, kUnticked);
  SetState(Rows(), 1, kPart);
  SetState(Rows(), 2, kUnticked);

  Press(0, 0);
  EXPECT_EQ(kPart, NodeState(Number()));

  SetState(Rows(), 0, kTicked);
  SetState(Rows(), 2, kTicked);
  Press(0, 0);
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(SelectionRows, WithoutACellAreSkipped) {
  OpenScanned();
  ClickNode(Number());
  delete Rows()->takeItem(1, 0);

  Press(0, 0);
  EXPECT_EQ(kTicked, NodeState(Number()));

  SetState(Rows(), 0, kUnticked);
  SetState(Rows(), 2, kUnticked);
  Press(2, 0);
  EXPECT_EQ(kUnticked, NodeState(Number()));
}

TEST_P(SelectionRows, ReportToTheSelectedNodeWhateverItIs) {
  OpenScanned();
  const int nSelected = (Number() + 5) % 11;
  ClickNode(nSelected);
  SetState(Rows(), 1, kUnticked);

  Press(1, 0);

  EXPECT_EQ(kPart, NodeState(nSelected));
  EXPECT_EQ(kTicked, NodeState(Number()));
}

INSTANTIATE_TEST_SUITE_P(Of, SelectionRows, testing::ValuesIn(kPlainCategories), NameOf<PlainCategory>);

using SelectionBlankRow = SelectionTest;

TEST_F(SelectionBlankRow, TakesAClickAndSelectsNothing) {
  OpenDataScreen();
  Records().m_mapMessage = {{1, {}}, {2, {{}}}};
  TickNode(4);
  ClickNode(4);
  QTableWidget* pTable = Table("m_pMessageTable");
  ASSERT_EQ(std::vector<int>({-1, 2}), States(pTable));

  Click(pTable->viewport(), QPoint(60, pTable->rowViewportPosition(0) + 15));

  EXPECT_EQ(SelectionMap({{1, 1}}), Selection(4));
  EXPECT_EQ(kTicked, NodeState(4));
  EXPECT_EQ(4, PressedCategory());
}

using SelectionCamera = SelectionTest;

TEST_F(SelectionCamera, TakesClicksOnTheFirstPageBeforeAnyNodeIsSelected) {
  OpenFilled();
  TickNode(0);

  ClickRowBox(Table("m_pCameraTable"), 1);

  EXPECT_EQ(SelectionMap({{0, 100}, {2, 30}}), Selection(0));
  EXPECT_EQ("Select 130 Bytes in 2 files", SelectionLine());
  EXPECT_EQ(kTicked, NodeState(0));
}

}  // namespace
