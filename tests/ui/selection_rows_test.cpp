// The effect of a row's tick on the map, the node and the line, by mouse and by the space key, and the button
// beside the line.

#include <QTest>

#include "sample/pictures.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionRows : public PlainSelectionTest {
 protected:
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

class SelectionLines : public SelectionTest {
 protected:
  std::string Refreshed() {
    Window().RefreshSelectFileInfo();
    return SelectionLine();
  }
};

TEST_F(SelectionLines, AFreshWindowHasNothingTicked) {
  Open();

  for (const PlainCategory& category : kPlainCategories)
    EXPECT_EQ(SelectionMap(), Selection(category.nNumber)) << category.pszName;
  for (const AppCategory& category : kAppCategories)
    EXPECT_EQ(AppSelectionMap(), AppSelection(category.nNumber)) << category.pszName;
  EXPECT_EQ(0, PressedCategory());
  EXPECT_EQ("", PressedApp());
  EXPECT_EQ(nullptr, WindowAccess::CurrentAppItem(Window()));
}

TEST_F(SelectionLines, NothingTickedIsAFileInTheSingularAndTurnsRecoveryOff) {
  OpenDataScreen();

  EXPECT_EQ("Select 0 Bytes in 0 file", Refreshed());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_F(SelectionLines, OnePhotoIsFilesInThePlural) {
  OpenDataScreen();
  Records().m_vecCamera = {{100, "a.JPG", u""}};
  TickNode(0);

  EXPECT_EQ("Select 100 Bytes in 1 files", Refreshed());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionLines, AScanOfOnePhotoWritesTheLine) {
  const QByteArray photo = sample_media::jpeg(1).leftJustified(300000, ' ', true);
  WritePhotos(BackupPath("one"), 1, photo);
  Open();

  ScanBackup();

  EXPECT_EQ(SelectionMap({{0, 300000}}), Selection(0));
  EXPECT_EQ("Select 292.97 KB in 1 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionLines, AScanThatFindsNothingTurnsRecoveryOff) {
  WriteEmptyBackup("one");
  Open();

  ScanBackup();

  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_F(SelectionLines, OneContactIsAMebibyte) {
  OpenDataScreen();
  Records().m_vecContact.assign(1, {});
  TickNode(6);

  EXPECT_EQ("Select 1.00 MB in 1 files", Refreshed());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionLines, ATextCategoryIsAMebibyteHoweverMuchIsTicked) {
  OpenDataScreen();
  int nCategories = 0;
  size_t nCount = 0;
  for (const int nCategory : {4, 6, 7, 8, 9}) {
    for (U32 i = 0; i < 700; ++i) Selection(nCategory)[i] = i;
    nCount += 700;
    ++nCategories;

    EXPECT_EQ("Select " + std::to_string(nCategories) + ".00 MB in " + std::to_string(nCount) + " files",
              Refreshed());
  }
}

TEST_F(SelectionLines, SizesOfAllOtherCategoriesAddUp) {
  OpenDataScreen();
  Selection(0) = {{0, 1}, {7, 2}};
  Selection(1) = {{0, 4}};
  AppSelection(2) = {{"a", {{0, 8}, {1, 16}}}, {"b", {{0, 32}}}, {"Folder", {}}};
  AppSelection(3) = {{"a", {{5, 64}}}, {"none", {}}};
  Selection(5) = {{9, 128}};
  Selection(10) = {{4, 256}, {5, 512}};

  EXPECT_EQ("Select 1023 Bytes in 10 files", Refreshed());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionLines, SumsPassFourGigabytes) {
  OpenDataScreen();
  for (U32 i = 0; i < 3; ++i) Selection(10)[i] = 0xFFFFFFFFu;
  AppSelection(3)["a"][0] = 3;

  EXPECT_EQ("Select 12.00 GB in 4 files", Refreshed());
}

TEST_F(SelectionLines, ASumOfFourGigabytesTurnsRecoveryOn) {
  OpenDataScreen();
  Selection(0) = {{0, 0x80000000u}, {1, 0x80000000u}};  // 0 in 32 bits

  EXPECT_EQ("Select 4.00 GB in 2 files", Refreshed());
  EXPECT_TRUE(RecoveryIsOn());
}

TEST_F(SelectionLines, EmptyFilesAreCountedAndLeaveRecoveryOff) {
  OpenDataScreen();
  Records().m_vecCamera = {{0, "a.JPG", u""}};
  TickNode(0);

  EXPECT_EQ("Select 0 Bytes in 1 files", Refreshed());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_F(SelectionLines, EntriesOfAppsWithoutFilesAreNoSelection) {
  OpenDataScreen();
  AppSelection(2) = {{"Folder", {}}, {"Alpha", {}}};

  EXPECT_EQ("Select 0 Bytes in 0 file", Refreshed());
  EXPECT_FALSE(RecoveryIsOn());
}

TEST_F(SelectionLines, RecoveryGoesOffAndOnWithTheTicks) {
  OpenFilled();

  ClickNodeBox(1);
  EXPECT_TRUE(RecoveryIsOn());

  ClickNodeBox(1);
  EXPECT_FALSE(RecoveryIsOn());

  ClickRowBox(Table("m_pPhotoStreamTable"), 2);
  EXPECT_TRUE(RecoveryIsOn());
  EXPECT_EQ("Select 9 Bytes in 1 files", SelectionLine());
}

}  // namespace
