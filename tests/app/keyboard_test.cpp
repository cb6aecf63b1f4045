// The whole road by keys alone: no test here clicks.
#include <QAccessible>
#include <QApplication>

#include "app/password_dialog.h"
#include "tests/app/recovery_fixture.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/url_recorder.h"
#include "ui/focus_ring.h"
#include "ui/message_box.h"

using namespace orvandel;

namespace {

/// Presses a key where the keyboard is.
void Press(int nKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QWidget* pWidget = QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
  ASSERT_NE(nullptr, pWidget);
  QTest::keyClick(pWidget, static_cast<Qt::Key>(nKey), modifiers);
}

std::string FocusName() {
  const QWidget* pWidget = QApplication::focusWidget();
  return pWidget ? pWidget->objectName().toStdString() : "";
}

/// Presses Tab until a widget has the focus. @return false when it doesn't get it.
bool TabTo(const std::string& strName) {
  for (int i = 0; i < 20 && FocusName() != strName; ++i) Press(Qt::Key_Tab);
  return FocusName() == strName;
}

/// True if the ring of the focus is on view and around the widget that has it.
bool IsFocusMarked() {
  const QWidget* pWidget = QApplication::focusWidget();
  const auto* pRing = pWidget->window()->findChild<FocusRing*>();
  const QRect place(pWidget->mapTo(pWidget->window(), QPoint(0, 0)), pWidget->size());
  return pRing && pRing->isVisible() && pRing->geometry().contains(place & pWidget->window()->rect());
}

class Keyboard : public WindowTest {
 protected:
  void OpenWithKeys() {
    Open();
    Activate();
  }
  /// As a window manager does, also when a dialog over the window has closed.
  void Activate() {
    QApplication::setActiveWindow(m_pWindow.get());
    ASSERT_TRUE(WaitFor([&] { return m_pWindow->isActiveWindow(); }));
  }
  /// Picks the only backup, and scans it.
  void ScanByKeys() {
    WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
    OpenWithKeys();
    ASSERT_TRUE(TabTo("m_pBackupTable"));
    Press(Qt::Key_Return);
    ASSERT_TRUE(TabTo("m_pScanButton"));
    Press(Qt::Key_Space);
    ASSERT_EQ(kSmallBackupLabels, Labels());
    Activate();
  }
};

TEST_F(Keyboard, TabGoesRoundTheHomeScreen) {
  WriteEmptyBackup("one");
  OpenWithKeys();
  ASSERT_TRUE(TabTo("m_pBackupTable"));
  Press(Qt::Key_Space);
  std::vector<std::string> names;

  for (int i = 0; i < 4; ++i) {
    Press(Qt::Key_Tab);
    EXPECT_TRUE(IsFocusMarked()) << FocusName();
    names.push_back(FocusName());
  }

  EXPECT_EQ(std::vector<std::string>({"selectButton", "m_pScanButton", "helpButton", "m_pBackupTable"}),
            names);
}

class KeyboardPick : public Keyboard, public testing::WithParamInterface<int> {};

TEST_P(KeyboardPick, ChoosesTheCurrentBackup) {
  WriteEmptyBackup("one");
  WriteEmptyBackup("two");
  OpenWithKeys();
  ASSERT_TRUE(TabTo("m_pBackupTable"));
  Press(Qt::Key_Down);
  const int nRow = Table("m_pBackupTable")->currentRow();
  const auto info = Table("m_pBackupTable")->item(nRow, 0)->data(Qt::UserRole).value<__BACK_FILE_INFO__>();

  Press(GetParam());

  EXPECT_EQ(1, nRow);
  EXPECT_TRUE(Find<QPushButton>("m_pScanButton")->isEnabled());
  EXPECT_EQ(info.strBackupPath, WindowAccess::ChosenBackup(Window()).strBackupPath);
}

INSTANTIATE_TEST_SUITE_P(Keys, KeyboardPick, testing::Values(Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space));

TEST_F(Keyboard, NothingIsChosenInAnEmptyList) {
  OpenWithKeys();
  ASSERT_TRUE(TabTo("m_pBackupTable"));

  Press(Qt::Key_Return);

  EXPECT_FALSE(Find<QPushButton>("m_pScanButton")->isEnabled());
}

TEST_F(Keyboard, TabGoesRoundTheDataScreen) {
  ScanByKeys();
  ASSERT_TRUE(TabTo("m_pCategoryTree"));
  std::vector<std::string> names;

  for (int i = 0; i < 5; ++i) {
    Press(Qt::Key_Tab);
    EXPECT_TRUE(IsFocusMarked()) << FocusName();
    names.push_back(FocusName());
  }

  EXPECT_EQ(std::vector<std::string>(
                {"m_pCameraTable", "homeButton", "m_pRecoveryButton", "helpButton", "m_pCategoryTree"}),
            names);
}

TEST_F(Keyboard, WalksTheTreeAndTicks) {
  ScanByKeys();
  ASSERT_TRUE(TabTo("m_pCategoryTree"));
  for (int i = 0; i < 6; ++i) Press(Qt::Key_Down);
  QTreeWidget* pTree = WindowAccess::Tree(Window());
  const int nCategory = pTree->indexOfTopLevelItem(pTree->currentItem());
  EXPECT_TRUE(IsFocusMarked()) << "other pages have come and gone";

  Press(Qt::Key_Space);

  ASSERT_LT(0, nCategory);
  EXPECT_EQ(Qt::Unchecked, Node(nCategory)->checkState(0));
  EXPECT_TRUE(WindowAccess::Selection(Window(), nCategory).empty());
  ASSERT_TRUE(
      TabTo(Find<QTableWidget>("m_pContactsTable")->isVisible() ? "m_pContactsTable" : "m_pMessAttachTable"));
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);
  EXPECT_EQ(1u, WindowAccess::Selection(Window(), nCategory).size());
}

TEST_F(Keyboard, OpensAndLeavesTheListOfAnApp) {
  ScanByKeys();
  ASSERT_TRUE(TabTo("m_pCategoryTree"));
  while (WindowAccess::Tree(Window())->currentItem() != Node(2)) Press(Qt::Key_Down);
  ASSERT_TRUE(TabTo("m_pAppPhotosTable"));

  Press(Qt::Key_Return);

  EXPECT_EQ("m_pAppsTable", FocusName());
  EXPECT_TRUE(IsFocusMarked());
  EXPECT_EQ("appFilesPage", WindowAccess::PageStack(Window())->currentWidget()->objectName().toStdString());
  EXPECT_EQ(1, Table("m_pAppsTable")->rowCount());
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);
  EXPECT_EQ(Qt::Unchecked, Node(2)->checkState(0)) << "its only file was unticked";
  Press(Qt::Key_Backspace);
  EXPECT_EQ("m_pAppPhotosTable", FocusName());
  EXPECT_TRUE(IsFocusMarked());
  EXPECT_EQ("appPhotosPage", WindowAccess::PageStack(Window())->currentWidget()->objectName().toStdString());
}

TEST_F(Keyboard, ReturnOnTheNodeLeavesTheListOfAnApp) {
  ScanByKeys();
  ASSERT_TRUE(TabTo("m_pCategoryTree"));
  while (WindowAccess::Tree(Window())->currentItem() != Node(3)) Press(Qt::Key_Down);
  ASSERT_TRUE(TabTo("m_pAppVideosTable"));
  Press(Qt::Key_Return);
  ASSERT_EQ("m_pAppsTable", FocusName());

  Press(Qt::Key_Tab, Qt::ShiftModifier);
  ASSERT_EQ("m_pCategoryTree", FocusName());
  Press(Qt::Key_Return);

  EXPECT_EQ("appVideosPage", WindowAccess::PageStack(Window())->currentWidget()->objectName().toStdString());
}

TEST_F(Keyboard, RecoversShowsTheDetailAndOpensTheFolder) {
  const std::string strOut = m_folder.MakeFolder("out");
  ScanByKeys();
  ASSERT_TRUE(TabTo("m_pRecoveryButton"));
  UrlRecorder urls;
  int nRows = 0;
  bool bMarked = false;
  ModalSteps steps;
  TypeFolder(steps, strOut);
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        ASSERT_TRUE(TabTo("Detail"));
        bMarked = IsFocusMarked();
        ModalSteps inner;
        inner.Then("CDetail", [&](QWidget* pDetail) {
          nRows = pDetail->findChild<QTableWidget*>("m_pTable")->rowCount();
          ASSERT_TRUE(TabTo("OK"));
          Press(Qt::Key_Space);
        });
        Press(Qt::Key_Space);
        QApplication::setActiveWindow(pDialog);
        ASSERT_TRUE(TabTo("Open Folder"));
        Press(Qt::Key_Space);
        ASSERT_TRUE(TabTo("Cancel"));
        Press(Qt::Key_Space);
      },
      IsFinished);

  Press(Qt::Key_Space);

  EXPECT_TRUE(bMarked);
  EXPECT_LT(8, nRows);
  EXPECT_EQ(QStringList(QUrl::fromLocalFile(QString::fromStdString(strOut)).toString()), urls.m_opened);
  EXPECT_FALSE(FilesBelow(strOut).empty());
}

TEST_F(Keyboard, AClickTakesTheMarkAway) {
  WriteEmptyBackup("one");
  OpenWithKeys();
  ASSERT_TRUE(TabTo("m_pBackupTable"));
  ASSERT_TRUE(IsFocusMarked());

  ClickRow(Table("m_pBackupTable"), 0);

  EXPECT_FALSE(m_pWindow->findChild<FocusRing*>()->isVisible()) << "the table had the focus before";
}

TEST_F(Keyboard, WhoUsesTheMouseSeesNoMark) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  OpenWithKeys();
  ScanBackup();
  Activate();
  ClickNode(2);
  QTableWidget* pTable = Table("m_pAppPhotosTable");

  ClickRow(pTable, 0);
  QTest::mouseDClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier,
                     pTable->visualItemRect(pTable->item(0, 0)).center());

  EXPECT_EQ("m_pAppsTable", FocusName());
  const auto* pRing = m_pWindow->findChild<FocusRing*>();
  EXPECT_TRUE(!pRing || !pRing->isVisible());
}

TEST_F(Keyboard, TheMarkedBackupIsTheChosenOne) {
  WriteEmptyBackup("one");
  WriteEmptyBackup("two");
  OpenWithKeys();
  ASSERT_TRUE(TabTo("m_pBackupTable"));
  Press(Qt::Key_Space);
  const std::string strFirst = WindowAccess::ChosenBackup(Window()).strBackupPath;

  Press(Qt::Key_Down);

  const QTableWidget* pTable = Table("m_pBackupTable");
  const auto info = pTable->selectedItems().value(0)->data(Qt::UserRole).value<__BACK_FILE_INFO__>();
  EXPECT_EQ(info.strBackupPath, WindowAccess::ChosenBackup(Window()).strBackupPath);
  EXPECT_NE(strFirst, info.strBackupPath);
}

// What an assistive tool is given.

/// Roles and object names of the controls in a subtree that have no name.
void CollectNameless(QAccessibleInterface* pInterface, std::vector<std::string>& nameless) {
  const auto* pWidget = qobject_cast<QWidget*>(pInterface->object());
  if (pWidget && pWidget->focusPolicy() != Qt::NoFocus && pInterface->text(QAccessible::Name).isEmpty())
    nameless.push_back(std::string(pWidget->metaObject()->className()) + " " +
                       pWidget->objectName().toStdString());
  for (int i = 0; pWidget && i < pInterface->childCount(); ++i) {
    QAccessibleInterface* pChild = pInterface->child(i);
    if (pChild && pChild->object() && pChild->object()->isWidgetType()) CollectNameless(pChild, nameless);
  }
}

std::vector<std::string> NamelessIn(QWidget* pWidget) {
  std::vector<std::string> nameless;
  CollectNameless(QAccessible::queryAccessibleInterface(pWidget), nameless);
  return nameless;
}

TEST_F(Keyboard, EveryControlHasANameForAssistiveTools) {
  ScanByKeys();
  std::vector<std::string> inDialogs;
  int nDialogs = 0;
  ModalSteps steps;
  TypeFolder(steps, m_folder.MakeFolder("out"));
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        ModalSteps inner;
        inner.Then("CDetail", [&](QWidget* pDetail) {
          for (const std::string& strOne : NamelessIn(pDetail)) inDialogs.push_back(strOne);
          ++nDialogs;
          Click(pDetail->findChild<QPushButton*>("OK"));
        });
        for (const std::string& strOne : NamelessIn(pDialog)) inDialogs.push_back(strOne);
        ++nDialogs;
        Click(pDialog->findChild<QPushButton*>("Detail"));
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);
  Window().btnRecovery();

  CPasswordUI password;
  CMessageBox question;
  question.InitQuestionDialog("?");
  for (QWidget* pDialog : {static_cast<QWidget*>(&password), static_cast<QWidget*>(&question)}) {
    pDialog->show();
    for (const std::string& strOne : NamelessIn(pDialog)) inDialogs.push_back(strOne);
  }
  EXPECT_EQ(2, nDialogs);
  EXPECT_EQ(std::vector<std::string>(), inDialogs);
  EXPECT_EQ(std::vector<std::string>(), NamelessIn(m_pWindow.get()));
}

TEST_F(Keyboard, AWidgetWithoutANameIsNoticed) {
  QWidget window;
  QTableWidget table(&window);
  table.setObjectName("nameless");

  EXPECT_EQ(std::vector<std::string>({"QTableWidget nameless"}), NamelessIn(&window));
}

}  // namespace
