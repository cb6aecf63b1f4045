// The line under the tables and the button beside it.

#include "sample/pictures.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

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
