// The dialogs of a recovery: the folder dialog and the progress dialog.
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QTest>

#include "tests/app/recovery_fixture.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/url_recorder.h"

using namespace orvandel;

namespace {

using Names = std::vector<std::string>;

class RecoveryDialog : public RecoveryTest {
 protected:
  void AddFiles(int nFiles) {
    for (int i = 0; i < nFiles; ++i) AddFile(0, std::to_string(i), "bytes of " + std::to_string(i));
  }
  /// Presses a button of the progress dialog once the worker waits.
  static void PressWhileWaiting(ModalSteps& steps, const ReportRecorder& recorder, const char* pszButton) {
    const std::string strButton = pszButton;
    steps.Then(
        "SCANUI",
        [strButton](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>(strButton.c_str())); },
        [&recorder](QWidget*) { return recorder.IsWaiting(); });
  }
  static void CloseFinished(ModalSteps& steps) {
    steps.Then(
        "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); }, IsFinished);
  }
};

TEST_F(RecoveryDialog, NoFolderMeansNoRecovery) {
  AddFiles(1);
  const auto before = Ticks();
  ReportRecorder recorder(Window());
  ModalSteps steps;
  steps.Then("QFileDialog", [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); });

  Window().btnRecovery();

  EXPECT_TRUE(recorder.All().empty());
  EXPECT_TRUE(WindowAccess::RecoveryFolder(Window()).isNull());
  EXPECT_EQ(before, Ticks());
  EXPECT_EQ(Names(), NamesIn(Out()));
  EXPECT_FALSE(Window().m_bCancelRecovery);
}

TEST_F(RecoveryDialog, ARefusalForgetsTheFolderOfTheRecoveryBefore) {
  AddFiles(1);
  Recover();
  const std::string strFolder = WindowAccess::RecoveryFolder(Window()).toStdString();
  ModalSteps steps;
  steps.Then("QFileDialog", [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); });

  Window().btnRecovery();

  EXPECT_EQ(Out(), strFolder);
  EXPECT_TRUE(WindowAccess::RecoveryFolder(Window()).isNull());
}

TEST_F(RecoveryDialog, AsksForAFolderAlone) {
  bool bFoldersOnly = false;
  const QWidget* pParent = nullptr;
  ModalSteps steps;
  steps.Then("QFileDialog", [&](QWidget* pDialog) {
    const auto* pFileDialog = qobject_cast<QFileDialog*>(pDialog);
    bFoldersOnly = pFileDialog->testOption(QFileDialog::ShowDirsOnly);
    pParent = pDialog->parentWidget();
    QTest::keyClick(pDialog, Qt::Key_Escape);
  });

  Window().btnRecovery();

  EXPECT_TRUE(bFoldersOnly);
  EXPECT_EQ(&Window(), pParent);
}

TEST_F(RecoveryDialog, StartsInTheWorkingDirectoryWhateverTheLastDialogShowed) {
  QFileDialog().setDirectory(QString::fromStdString(m_folder.MakeFolder("elsewhere")));
  QString qstrFolder;
  ModalSteps steps;
  steps.Then("QFileDialog", [&](QWidget* pDialog) {
    qstrFolder = qobject_cast<QFileDialog*>(pDialog)->directory().absolutePath();
    QTest::keyClick(pDialog, Qt::Key_Escape);
  });

  Window().btnRecovery();

  EXPECT_EQ(QDir::currentPath(), qstrFolder);
}

TEST_F(RecoveryDialog, AFolderCanBeChosenByClicks) {
  AddFiles(1);
  ModalSteps steps;
  steps.Then("QFileDialog", [&](QWidget* pDialog) {
    auto* pName = pDialog->findChild<QLineEdit*>("fileNameEdit");
    pName->setText(QString::fromStdString(Out()));
    for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
      if (pButton->text().contains("Choose")) return Click(pButton);
    }
    FAIL() << "there is nothing to choose with";
  });
  CloseFinished(steps);

  Window().btnRecovery();

  EXPECT_EQ(Names({"Camera Roll/0"}), FilesBelow(Out()));
}

TEST_F(RecoveryDialog, TheRecoveryButtonBeginsIt) {
  AddFiles(1);
  Window().RefreshSelectFileInfo();
  ModalSteps steps;
  TypeFolder(steps, Out());
  CloseFinished(steps);

  Click(WindowAccess::RecoveryButton(Window()));

  EXPECT_EQ(Names({"Camera Roll/0"}), FilesBelow(Out()));
}

TEST_F(RecoveryDialog, ShowsWhatItDoesAndStaysUntilItIsClosed) {
  AddFiles(3);
  ReportRecorder recorder(Window(), 1);
  std::string strHead, strButton, strTitle;
  ModalSteps steps;
  TypeFolder(steps, Out());
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        strHead = TextOf(pDialog->findChild<QLabel*>("headText"));
        strButton = pDialog->findChild<QPushButton*>("Cancel")->text().toStdString();
        strTitle = pDialog->windowTitle().toStdString();
        recorder.GoOn();
      },
      [&](QWidget*) { return recorder.IsWaiting(); });
  bool bVisible = false;
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        bVisible = pDialog->isVisible();
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);

  Window().btnRecovery();

  EXPECT_EQ("  Recovering \n  Recover iTunes backup files to folder", strHead);
  EXPECT_EQ("Cancel", strButton);
  EXPECT_EQ("Orvandel", strTitle);
  EXPECT_TRUE(bVisible);
  EXPECT_TRUE(Window().isVisible());
}

TEST_F(RecoveryDialog, OnceFinishedEachWayOfClosingAsksNothing) {
  AddFiles(1);
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); },
      [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); },
      [](QWidget* pDialog) {
        QTest::mouseClick(pDialog, Qt::RightButton, Qt::NoModifier, {250, 120});
      },
      [](QWidget* pDialog) { pDialog->close(); },
  };
  for (const auto& way : ways) {
    bool bClosed = false;
    ModalSteps steps;
    TypeFolder(steps, Out());
    steps.Then(
        "SCANUI",
        [&](QWidget* pDialog) {
          way(pDialog);  // a question would block here, unanswered
          bClosed = !pDialog->isVisible();
        },
        IsFinished);

    Window().btnRecovery();

    EXPECT_TRUE(bClosed);
  }
}

TEST_F(RecoveryDialog, DetailListsAllDocumentsWithTheirReportedPaths) {
  AddFiles(2);
  AddDocuments();
  DetailList detail;

  Recover([&](QWidget* pDialog) { detail = DetailOf(pDialog); });

  const std::vector<Names> expected = {{Out() + "/Camera Roll/0", "Success"},
                                       {Out() + "/Camera Roll/1", "Success"},
                                       {Out() + "/Message/sms.csv", "Success"},
                                       {Out() + "/Contacts/Contacts.html", "Success"},
                                       {Out() + "/CallHistory/CallHistory.html", "Success"},
                                       {Out() + "/Notes/Notes.html", "Success"}};
  EXPECT_EQ(expected, detail.rows);
  EXPECT_EQ("  Recovery Detail\n  Sucess:6 Failed:0\n", detail.strSummary);
}

TEST_F(RecoveryDialog, DetailOpenedWhileItRunsGoesOnFilling) {
  AddFiles(40);
  ReportRecorder recorder(Window(), 5);
  std::vector<int> rows;
  const auto count = [](QWidget* pDetail) {
    return pDetail->findChild<QTableWidget*>("m_pTable")->rowCount();
  };
  ModalSteps steps;
  TypeFolder(steps, Out());
  PressWhileWaiting(steps, recorder, "Detail");
  steps.Then(
      "CDetail",
      [&](QWidget* pDetail) {
        rows.push_back(count(pDetail));
        recorder.GoOn();
      },
      [&](QWidget* pDetail) { return count(pDetail) == 4; });
  steps.Then(
      "CDetail",
      [&](QWidget* pDetail) {
        rows.push_back(count(pDetail));
        Click(pDetail->findChild<QPushButton*>("OK"));
      },
      [&](QWidget* pDetail) { return count(pDetail) == 40 && recorder.HasEnd(); });
  CloseFinished(steps);

  Window().btnRecovery();

  EXPECT_EQ(std::vector<int>({4, 40}), rows);
}

TEST_F(RecoveryDialog, OpenFolderWorksWhileItRunsAndAtItsEnd) {
  const std::string strOut = m_folder.MakeFolder("My Files");
  UrlRecorder browser;
  AddFiles(1);
  ReportRecorder recorder(Window(), 1);
  ModalSteps steps;
  TypeFolder(steps, strOut);
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        Click(pDialog->findChild<QPushButton*>("Open Folder"));
        recorder.GoOn();
      },
      [&](QWidget*) { return recorder.IsWaiting(); });
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        Click(pDialog->findChild<QPushButton*>("Open Folder"));
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);

  Window().btnRecovery();

  const QString qstrUrl = QString::fromStdString("file://" + strOut);
  EXPECT_EQ(QStringList({qstrUrl, qstrUrl}), browser.m_opened);
}

TEST_F(RecoveryDialog, NoOnTheQuestionLetsItGoOnToItsEnd) {
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); },
      [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); },
      [](QWidget* pDialog) {
        QTest::mouseClick(pDialog, Qt::RightButton, Qt::NoModifier, {250, 120});
      },
      [](QWidget* pDialog) { pDialog->close(); },
  };
  AddFiles(20);
  size_t nFiles = 0;
  for (const auto& way : ways) {
    ReportRecorder recorder(Window(), 3);
    std::string strQuestion;
    bool bFlag = true;
    ModalSteps steps;
    TypeFolder(steps, Out());
    steps.Then("SCANUI", way, [&](QWidget*) { return recorder.IsWaiting(); });
    steps.Then("CMessageBox", [&](QWidget* pBox) {
      strQuestion = TextOf(pBox->findChild<QLabel*>("m_pTextLabel"));
      Click(pBox->findChild<QPushButton*>("NO"));
    });
    steps.Then("SCANUI", [&](QWidget*) {
      bFlag = Window().m_bCancelRecovery;
      recorder.GoOn();
    });
    CloseFinished(steps);

    Window().btnRecovery();

    nFiles += 20;
    EXPECT_EQ("Are you sure to cancel the recoverying?", strQuestion);
    EXPECT_FALSE(bFlag);
    EXPECT_EQ(27u, recorder.All().size());
    EXPECT_EQ(nFiles, FilesBelow(Out()).size());
  }
}

TEST_F(RecoveryDialog, AQuestionThatOutlivesTheRecoveryMayBeAnsweredWithNo) {
  AddFiles(20);
  ReportRecorder recorder(Window(), 3);
  const QWidget* pProgress = nullptr;
  int nRows = 0;
  ModalSteps steps;
  TypeFolder(steps, Out());
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        pProgress = pDialog;
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      [&](QWidget*) { return recorder.IsWaiting(); });
  steps.Then("CMessageBox", [&](QWidget*) { recorder.GoOn(); });
  steps.Then(
      "CMessageBox", [](QWidget* pBox) { Click(pBox->findChild<QPushButton*>("NO")); },
      [&](QWidget*) { return IsFinished(pProgress); });
  steps.Then("SCANUI", [&](QWidget* pDialog) {
    nRows = static_cast<int>(DetailOf(pDialog).rows.size());
    Click(pDialog->findChild<QPushButton*>("Cancel"));
  });

  Window().btnRecovery();

  EXPECT_EQ(20, nRows);
  EXPECT_EQ(20u, FilesBelow(Out()).size());
}

TEST_F(RecoveryDialog, ManyRecoveriesInOneWindowEachFinish) {
  constexpr int kRecoveries = 30;
  AddFiles(2);
  AddDocuments();
  for (int i = 1; i <= kRecoveries; ++i) {
    ReportRecorder recorder(Window());

    Recover();

    ASSERT_TRUE(recorder.HasEnd());
    ASSERT_EQ(13u, recorder.All().size()) << i;
  }
  EXPECT_EQ(2u * kRecoveries, FilesBelow(Out() + "/Camera Roll").size());
}

TEST_F(RecoveryDialog, TwoThousandFilesWithTheDetailListOpen) {
  constexpr int kFiles = 2000;
  AddFiles(kFiles);
  ReportRecorder recorder(Window(), 1);
  DetailList detail;
  ModalSteps steps;
  TypeFolder(steps, Out());
  PressWhileWaiting(steps, recorder, "Detail");
  steps.Then("CDetail", [&](QWidget*) { recorder.GoOn(); });
  steps.Then(
      "CDetail",
      [&](QWidget* pDetail) {
        const auto* pTable = pDetail->findChild<QTableWidget*>("m_pTable");
        for (int i = 0; i < pTable->rowCount(); ++i) detail.rows.push_back(Cells(pTable, i));
        detail.strSummary = TextOf(pDetail->findChild<QLabel*>("m_pTextLabel"));
        Click(pDetail->findChild<QPushButton*>("OK"));
      },
      [&](QWidget* pDetail) {
        return pDetail->findChild<QTableWidget*>("m_pTable")->rowCount() == kFiles && recorder.HasEnd();
      });
  CloseFinished(steps);

  Window().btnRecovery();

  ASSERT_EQ(static_cast<size_t>(kFiles), detail.rows.size());
  for (int i = 0; i < kFiles; ++i) {
    const std::string strName = Out() + "/Camera Roll/" + std::to_string(i);
    ASSERT_EQ(Names({strName, "Success"}), detail.rows[static_cast<size_t>(i)]);
    ASSERT_EQ("bytes of " + std::to_string(i), ReadFile(strName));
  }
  EXPECT_EQ("  Recovery Detail\n  Sucess:2000 Failed:0\n", detail.strSummary);
}

}  // namespace
