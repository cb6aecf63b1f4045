// A backup that is selected as a folder, up to the end of the password check.
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <chrono>
#include <filesystem>

#include "tests/app/encrypted_fixture.h"
#include "tests/cli/small_backup.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr char kNotFound[] = "Can not found the iTunes Backup file.";
constexpr char kEmpty[] = "The password can't be empty, please try again.";
constexpr char kWrong[] = "Your password is not correct! Please try again.";

// Scripts of the check. The wait at their end is killed long before it expires.
constexpr char kAccept[] = "echo Count:0; exec sleep 60";
constexpr char kRefuse[] = "echo 'Wrong password'; exec sleep 60";
constexpr std::chrono::seconds kSoon(30);

class EncryptedSelect : public EncryptedTest {
 protected:
  /// Selects an encrypted backup, enters a password, and cancels after it is rejected.
  void SelectAndBeRefused(const std::string& strPassword = "secret") {
    const std::string strBackup = WriteSealedBackup("one");
    Open();
    ModalSteps steps;
    ShownBox box;
    ChooseFolder(steps, strBackup);
    GivePassword(steps, strPassword);
    CloseBox(steps, box);
    GivePassword(steps, "", "Cancel");

    Select();

    EXPECT_EQ(kWrong, box.strText);
    ExpectHomeScreen();
    EXPECT_EQ("", WindowAccess::BackupPassword(Window()));
  }

  /// Selects an encrypted backup and enters an accepted password.
  void SelectAndPass(const std::string& strPassword = "secret") {
    const std::string strBackup = WriteSealedBackup("one");
    Open();

    SelectBackup(strBackup, strPassword);

    ExpectDataScreen();
    EXPECT_EQ(QString::fromStdString(strPassword), WindowAccess::BackupPassword(Window()));
  }
};

TEST_F(EncryptedSelect, AsksForAFolderAlone) {
  Open();
  ModalSteps steps;
  QFileDialog::FileMode mode{};
  bool bDirectories = false;
  QObject* pParent = nullptr;
  steps.Then("QFileDialog", [&](QWidget* pWidget) {
    auto* pDialog = qobject_cast<QFileDialog*>(pWidget);
    mode = pDialog->fileMode();
    bDirectories = pDialog->testOption(QFileDialog::ShowDirsOnly);
    pParent = pDialog->parent();
    QTest::keyClick(pDialog, Qt::Key_Escape);
  });

  Select();

  EXPECT_TRUE(bDirectories);
  EXPECT_NE(QFileDialog::ExistingFiles, mode);
  EXPECT_NE(QFileDialog::AnyFile, mode);
  EXPECT_EQ(&Window(), pParent);
}

TEST_F(EncryptedSelect, CancelledFolderDialogChangesNothing) {
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  {
    ModalSteps steps;
    ChooseFolder(steps, strBackup);
    GivePassword(steps, "", "Cancel");
    Select();
  }
  ModalSteps steps;
  CancelFolder(steps);

  Select();

  ExpectHomeScreen();
  EXPECT_EQ(strBackup, WindowAccess::ChosenBackup(Window()).strBackupPath);
  EXPECT_TRUE(Calls().empty());
}

TEST_F(EncryptedSelect, FolderWithoutInfoIsNoBackup) {
  const std::string strFolder = m_folder.MakeFolder("no backup");
  Open();
  ModalSteps steps;
  ShownBox box;
  ChooseFolder(steps, strFolder);
  CloseBox(steps, box);

  Select();

  EXPECT_EQ(kNotFound, box.strText);
  ExpectHomeScreen();
  EXPECT_EQ("", WindowAccess::ChosenBackup(Window()).strBackupPath);
}

TEST_F(EncryptedSelect, LeavesScanGrayWhereNoRowWasPressed) {
  const std::string strBackup = m_folder.Path("picked");
  WriteSmallBackup(strBackup, BackupBuilder::Layout::Db);
  Open();
  ModalSteps steps;
  ChooseFolder(steps, strBackup);

  Select();

  ExpectDataScreen();
  EXPECT_FALSE(Find<QPushButton>("m_pScanButton")->isEnabled());
  EXPECT_EQ(main_button_style_no_file, Find<QPushButton>("m_pScanButton")->styleSheet());
}

TEST_F(EncryptedSelect, PlainBackupIsScannedWithoutAPasswordAndWithoutTheTool) {
  WriteTool(kAccept);
  const std::string strBackup = m_folder.Path("elsewhere/my phone");
  WriteSmallBackup(strBackup, BackupBuilder::Layout::Db);
  Open();
  ModalSteps steps;
  ChooseFolder(steps, strBackup);

  Select();

  ExpectDataScreen();
  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_EQ(strBackup, WindowAccess::ChosenBackup(Window()).strBackupPath);
  EXPECT_FALSE(WindowAccess::ChosenBackup(Window()).bEncrypted);
  EXPECT_TRUE(Calls().empty());
}

TEST_F(EncryptedSelect, CountsTheFilesOfTheFolderAndOfTheFoldersInIt) {
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("one", 10);
  WriteFile(strBackup + "/more/below/it", "not counted, and its folder neither");
  Open();

  SelectBackup(strBackup, "secret");

  EXPECT_EQ(10, WindowAccess::TotalFileCount(Window()));
}

TEST_F(EncryptedSelect, EmptyPasswordBringsTheDialogBackWithoutAskingTheTool) {
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  ModalSteps steps;
  ShownBox box;
  ChooseFolder(steps, strBackup);
  GivePassword(steps, "");
  CloseBox(steps, box);
  GivePassword(steps, "", "Cancel");

  Select();

  EXPECT_EQ(kEmpty, box.strText);
  EXPECT_TRUE(Calls().empty());
  ExpectHomeScreen();
}

TEST_F(EncryptedSelect, CancelledPasswordKeepsTheRecordAndScansNothing) {
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("one", 10);
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); },
      [](QWidget* pDialog) { pDialog->close(); },
      [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); },
      [](QWidget* pDialog) {
        QTest::mouseClick(pDialog, Qt::RightButton, Qt::NoModifier, {300, 10});
      },
  };
  for (const auto& way : ways) {
    Open();
    ModalSteps steps;
    ChooseFolder(steps, strBackup);
    steps.Then("CPasswordUI", [&](QWidget* pDialog) {
      QTest::keyClicks(pDialog->findChild<QLineEdit*>(), "secret");
      way(pDialog);
    });

    Select();

    ExpectHomeScreen();
    EXPECT_EQ(strBackup, WindowAccess::ChosenBackup(Window()).strBackupPath);
    EXPECT_TRUE(WindowAccess::ChosenBackup(Window()).bEncrypted);
    EXPECT_EQ(10, WindowAccess::TotalFileCount(Window()));
    EXPECT_EQ("", WindowAccess::BackupPassword(Window()));
    EXPECT_TRUE(Calls().empty());
  }
}

TEST_F(EncryptedSelect, BoxesAreAThirdInFromTheWindow) {
  WriteTool(kRefuse);
  const std::string strFolder = m_folder.MakeFolder("no backup");
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  Window().move(37, 21);
  ModalSteps steps;
  ShownBox notFound, empty, wrong;
  ChooseFolder(steps, strFolder);
  CloseBox(steps, notFound);

  Select();
  ChooseFolder(steps, strBackup);
  GivePassword(steps, "");
  CloseBox(steps, empty);
  GivePassword(steps, "secret");
  CloseBox(steps, wrong);
  GivePassword(steps, "", "Cancel");
  Select();

  // A third of 1000 and of 680.
  const QRect place(Window().x() + 333, Window().y() + 226, 400, 150);
  EXPECT_EQ(place, notFound.geometry);
  EXPECT_EQ(place, empty.geometry);
  EXPECT_EQ(place, wrong.geometry);
  EXPECT_EQ(kWrong, wrong.strText);
}

TEST_F(EncryptedSelect, RefusedPasswordBringsTheDialogBackUntilOneFits) {
  WriteTool("if [ \"$3\" = right ]; then " + std::string(kAccept) + "; else " + kRefuse + "; fi");
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  ModalSteps steps;
  ShownBox first, second;
  ChooseFolder(steps, strBackup);
  GivePassword(steps, "wrong");
  CloseBox(steps, first);
  GivePassword(steps, "worse");
  CloseBox(steps, second);
  GivePassword(steps, "right");

  Select();

  ExpectDataScreen();
  EXPECT_EQ(kWrong, first.strText);
  EXPECT_EQ(kWrong, second.strText);
  EXPECT_EQ("right", WindowAccess::BackupPassword(Window()));
  EXPECT_EQ(0, WindowAccess::DecryptStatus(Window()));
}

TEST_F(EncryptedSelect, ToolIsKilledAtTheFirstCount) {
  WriteTool(kAccept);
  const auto start = std::chrono::steady_clock::now();

  SelectAndPass();

  EXPECT_LT(std::chrono::steady_clock::now() - start, kSoon);
  EXPECT_TRUE(ToolHasEnded());
}

TEST_F(EncryptedSelect, ToolIsKilledAtTheRefusal) {
  WriteTool(kRefuse);
  const auto start = std::chrono::steady_clock::now();

  SelectAndBeRefused();

  EXPECT_LT(std::chrono::steady_clock::now() - start, kSoon);
  EXPECT_TRUE(ToolHasEnded());
}

TEST_F(EncryptedSelect, LineWithBothWordsIsARefusal) {
  WriteTool("echo 'Count:1 Wrong password'");
  SelectAndBeRefused();
}

TEST_F(EncryptedSelect, RefusalAnywhereInALineCounts) {
  WriteTool("echo 'tool: Wrong password, sorry'");
  SelectAndBeRefused();
}

TEST_F(EncryptedSelect, CountAnywhereInALineIsAProof) {
  WriteTool("echo 'done so far, Count:1 of many'; exec sleep 60");
  const auto start = std::chrono::steady_clock::now();

  SelectAndPass();

  EXPECT_LT(std::chrono::steady_clock::now() - start, kSoon);
}

TEST_F(EncryptedSelect, OtherLinesAreIgnored) {
  WriteTool("echo hello; echo; echo 'wrong password'; echo 'count:1'; echo 'Wrong password'");
  SelectAndBeRefused();
}

TEST_F(EncryptedSelect, ToolThatPrintsNeitherAccepts) {
  WriteTool("echo hello; echo 'wrong Password'; exit 3");
  SelectAndPass();
}

TEST_F(EncryptedSelect, RefusalOnStandardErrorCounts) {
  WriteTool("echo 'Wrong password' >&2");
  SelectAndBeRefused();
}

TEST_F(EncryptedSelect, LineThatComesInPiecesIsReadAsOne) {
  // The pause makes the first piece arrive separately.
  WriteTool("printf 'Wrong pass'; sleep 0.2; printf 'word\\n'; exec sleep 60");
  SelectAndBeRefused();
}

TEST_F(EncryptedSelect, LineThatNeverEndsIsNotRead) {
  WriteTool("printf 'Wrong password'");
  SelectAndPass();
}

TEST_F(EncryptedSelect, ToolGetsBothFoldersAndThePasswordAndTheMode) {
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("my old  phone");
  Open();

  SelectBackup(strBackup, "secret");

  ASSERT_EQ(2u, Calls().size());
  EXPECT_EQ(std::vector<std::string>({strBackup, DecryptedArgument(), "secret", "CheckPasswd"}), Calls()[0]);
  EXPECT_EQ(std::vector<std::string>({strBackup, DecryptedArgument(), "secret"}), Calls()[1]);
}

struct PasswordCase {
  const char* pszPassword;
  std::vector<std::string> arguments;
};

TEST_F(EncryptedSelect, PasswordIsSplitAsPartOfACommand) {
  // Spaces separate arguments, double quotes group and are removed, three of them give one. Nothing else is
  // special.
  const std::vector<PasswordCase> cases = {
      {"geh heim", {"geh", "heim"}},  {" a  b ", {"a", "b"}}, {"\"geh heim\"", {"geh heim"}},
      {"ge\"h he\"im", {"geh heim"}}, {"a\"\"\"b", {"a\"b"}}, {"$HOME;`id`|'x'\\*", {"$HOME;`id`|'x'\\*"}},
      {"Grüße–文", {"Grüße–文"}},
  };
  WriteTool(kAccept);
  const std::string strBackup = WriteSealedBackup("one");
  for (const PasswordCase& one : cases) {
    std::filesystem::remove(ToolFolder() + "/calls");
    Open();

    SelectBackup(strBackup, one.pszPassword);

    std::vector<std::string> expected = {strBackup, DecryptedArgument()};
    expected.insert(expected.end(), one.arguments.begin(), one.arguments.end());
    ASSERT_EQ(2u, Calls().size()) << one.pszPassword;
    EXPECT_EQ(expected, Calls()[1]) << one.pszPassword;
    expected.push_back("CheckPasswd");
    EXPECT_EQ(expected, Calls()[0]) << one.pszPassword;
  }
}

TEST_F(EncryptedSelect, NextCheckRemovesTheProcessOfTheLastOne) {
  WriteTool("if [ \"$3\" = right ]; then " + std::string(kAccept) + "; else " + kRefuse + "; fi");
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  ModalSteps steps;
  ShownBox box;
  QPointer<QProcess> first, second;
  ChooseFolder(steps, strBackup);
  GivePassword(steps, "wrong");
  steps.Then("CMessageBox", [&](QWidget* pBox) {
    first = WindowAccess::DecryptProcess(Window());
    Click(pBox->findChild<QPushButton*>("OK"));
  });
  steps.Then("CPasswordUI", [&](QWidget* pDialog) {
    EXPECT_FALSE(first.isNull());
    QTest::keyClicks(pDialog->findChild<QLineEdit*>(), "worse");
    Click(pDialog->findChild<QPushButton*>("OK"));
  });
  steps.Then("CMessageBox", [&](QWidget* pBox) {
    second = WindowAccess::DecryptProcess(Window());
    EXPECT_TRUE(first.isNull());
    EXPECT_FALSE(second.isNull());
    Click(pBox->findChild<QPushButton*>("OK"));
  });
  GivePassword(steps, "", "Cancel");

  Select();

  EXPECT_EQ(second, WindowAccess::DecryptProcess(Window())) << "it stays until the next one";
  SelectBackup(strBackup, "right");
  EXPECT_TRUE(second.isNull());
}

TEST_F(EncryptedSelect, NextFolderForgetsPasswordAndCountOfTheLastOne) {
  WriteTool(kAccept);
  const std::string strSealed = WriteSealedBackup("one", 10);
  WriteEmptyBackup("two");  // "Info.plist" and a manifest
  Open();
  SelectBackup(strSealed, "secret");
  ModalSteps steps;
  ChooseFolder(steps, BackupPath("two"));

  Window().btnSlotSelect();

  EXPECT_EQ("", WindowAccess::BackupPassword(Window()));
  EXPECT_EQ(2, WindowAccess::TotalFileCount(Window()));
}

}  // namespace
