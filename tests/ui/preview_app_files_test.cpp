// The file list of an app, which opens on a double click.

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

class PreviewAppFiles : public PreviewTest, public testing::WithParamInterface<AppCategory> {
 protected:
  int Number() const { return GetParam().nNumber; }
  int Other() const { return 5 - Number(); }
  QTableWidget* Apps() { return Table(GetParam().pszTable); }
  AppFileMap& AppFiles() {
    return Number() == 2 ? Records().m_mapAppPhotoFiles : Records().m_mapAppVideoFiles;
  }
  void OpenList(int nRow) { (Window().*GetParam().pfnOpen)(nRow, 0); }
  QWidget* PageOnView() { return WindowAccess::PageStack(Window())->currentWidget(); }
  QSize ShownFile() { return PictureSize(Find<QLabel>("m_pAppFilePreview")); }
  std::u16string Picture(const char* pszName, const QSize& size) {
    return QString::fromStdString(WritePicture(pszName, size)).toStdU16String();
  }
};

TEST_P(PreviewAppFiles, ListsTheFilesOfTheAppThatWasPressed) {
  OpenFilled();
  AppFiles()["Gamma"] = {{50, "Gamma", "first.jpg", u""}, {6000, "Gamma", "second.mov", u""}};
  AppFiles()["Beta"].clear();
  ClickNode(Number());

  DoubleClickRow(Apps(), 2, 0);

  ASSERT_EQ(2, Files()->rowCount());
  EXPECT_EQ(std::vector<std::string>({"first.jpg", "50 Bytes"}), Cells(Files(), 0));
  EXPECT_EQ(std::vector<std::string>({"second.mov", "5.86 KB"}), Cells(Files(), 1));
  for (int nRow = 0; nRow < 2; ++nRow) {
    EXPECT_EQ(30, Files()->rowHeight(nRow));
    EXPECT_FALSE(Files()->item(nRow, 0)->icon().isNull());
    EXPECT_EQ(QIcon(":/image/FileIcon/image.png").pixmap(16).toImage(),
              Files()->item(nRow, 0)->icon().pixmap(16).toImage());
  }
  EXPECT_EQ("second.mov",
            Files()->item(1, 0)->data(Qt::UserRole).value<_IPHONE_APP_FILE_INFO_>().strFileName);
  DoubleClickRow(Apps(), 1, 0);
  EXPECT_EQ(0, Files()->rowCount()) << "an app without files";
}

TEST_P(PreviewAppFiles, CrossesTheNumbersOfTheTwoCategories) {
  OpenFilled();
  ClickNode(0);
  ClickNode(Number());

  DoubleClickRow(Apps(), 0, 0);

  EXPECT_EQ(Number(), PressedCategory());
  EXPECT_EQ("Alpha", PressedApp());
  EXPECT_EQ(Other(), WindowAccess::CurrentCategory(Window()));
  EXPECT_EQ(Files()->parentWidget(), PageOnView());
}

TEST_P(PreviewAppFiles, PreviewsTheFirstFileAndThenTheSelectedOne) {
  OpenFilled();
  AppFiles()["Alpha"] = {{1, "Alpha", "a", Picture("a.png", {10, 11})},
                         {1, "Alpha", "b", Picture("b.png", {20, 21})}};
  AppFiles()["Beta"] = {{1, "Beta", "c", Picture("c.png", {30, 31})}};
  ClickNode(Number());

  DoubleClickRow(Apps(), 0, 0);
  EXPECT_EQ(QSize(10, 11), ShownFile());
  ClickRow(Files(), 1);
  EXPECT_EQ(QSize(20, 21), ShownFile());
  PressKey(Files(), Qt::Key_Up);
  EXPECT_EQ(QSize(10, 11), ShownFile());
  ClickNode(Number());
  DoubleClickRow(Apps(), 1, 0);
  EXPECT_EQ(QSize(30, 31), ShownFile());
}

TEST_P(PreviewAppFiles, TheCaptionAboveThePictureIsEmpty) {
  OpenFilled();
  ClickNode(Number());

  DoubleClickRow(Apps(), 0, 0);

  EXPECT_EQ("", TextOf(Find<QLabel>("m_pAppFileCaption")));
  EXPECT_TRUE(Find<QLabel>("m_pAppFileCaption")->isVisible());
  EXPECT_EQ(QSize(750, 200), Find<QLabel>("m_pAppFilePreview")->size());
}

TEST_P(PreviewAppFiles, AnAppThatIsGoneHasAnEmptyList) {
  OpenFilled();
  ClickNode(Number());
  DoubleClickRow(Apps(), 0, 0);
  ASSERT_EQ(3, Files()->rowCount());
  ClickNode(Number());
  AppFiles().erase("Beta");

  DoubleClickRow(Apps(), 1, 0);

  EXPECT_EQ(0, Files()->rowCount());
  EXPECT_EQ(Files()->parentWidget(), PageOnView());
  EXPECT_EQ("Beta", PressedApp());
}

TEST_P(PreviewAppFiles, TheListTakesTheStateOfItsApp) {
  OpenFilled();
  ClickNode(Number());
  AppSelectionMap& map = AppSelection(Number());

  map["Alpha"] = {{1, 20}};
  SetState(Apps(), 0, kUnticked);
  OpenList(0);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Files()));
  EXPECT_EQ(SelectionMap(), map["Alpha"]);

  map.clear();
  SetState(Apps(), 0, kUnticked);
  OpenList(0);
  EXPECT_EQ(AppSelectionMap({{"Alpha", {}}}), map) << "the entry is made";

  map.clear();
  SetState(Apps(), 0, kTicked);
  OpenList(0);
  EXPECT_EQ(std::vector<int>({2, 2, 2}), States(Files()));
  EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}}), map);

  map["Alpha"] = {{0, 10}, {2, 30}};
  SetState(Apps(), 0, kPart);
  OpenList(0);
  EXPECT_EQ(std::vector<int>({2, 0, 2}), States(Files()));
  EXPECT_EQ(SelectionMap({{0, 10}, {2, 30}}), map["Alpha"]);

  map.clear();
  OpenList(0);
  EXPECT_EQ(std::vector<int>({0, 0, 0}), States(Files())) << "a missing entry";
  EXPECT_EQ(AppSelectionMap(), AppSelection(Other()));
}

TEST_P(PreviewAppFiles, ATickedAppShowsAllItsFilesTickedAndFollowsTheUntick) {
  OpenFilled();
  ClickNodeBox(Number());
  DoubleClickRow(Apps(), 0, 0);
  ASSERT_EQ(std::vector<int>({2, 2, 2}), States(Files()));

  ClickRowBox(Files(), 1);

  EXPECT_EQ(kPart, Apps()->item(0, 0)->checkState());
  EXPECT_EQ(kPart, NodeState(Number()));
}

TEST_P(PreviewAppFiles, AnyNodeLeavesTheList) {
  OpenFilled();
  for (int nCategory = 0; nCategory < 11; ++nCategory) {
    ClickNode(Number());
    DoubleClickRow(Apps(), 0, 0);
    ASSERT_EQ(Files()->parentWidget(), PageOnView());

    ClickNode(nCategory);

    EXPECT_NE(Files()->parentWidget(), PageOnView()) << nCategory;
    EXPECT_FALSE(Files()->isVisible()) << nCategory;
  }
}

TEST_P(PreviewAppFiles, OnlyTheTableOfPhotosKeepsTheSelectedCell) {
  OpenFilled();
  ClickNode(Number());

  Apps()->selectRow(1);
  EXPECT_EQ(Number() == 2 ? Apps()->item(1, 0) : nullptr, WindowAccess::CurrentAppItem(Window()));
  PressKey(Apps(), Qt::Key_Down);
  EXPECT_EQ(Number() == 2 ? Apps()->item(2, 0) : nullptr, WindowAccess::CurrentAppItem(Window()));
  Apps()->clearSelection();
  EXPECT_EQ(Number() == 2 ? Apps()->item(2, 0) : nullptr, WindowAccess::CurrentAppItem(Window()));
}

INSTANTIATE_TEST_SUITE_P(Of, PreviewAppFiles, testing::ValuesIn(kAppCategories), NameOf<AppCategory>);

}  // namespace
