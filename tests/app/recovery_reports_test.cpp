// The reports of a recovery's worker, and their effect on the progress dialog.
#include <QProgressBar>
#include <QThread>
#include <atomic>

#include "tests/app/recovery_fixture.h"

using namespace orvandel;

namespace {

class RecoveryReports : public RecoveryTest {
 protected:
  /// Recovers and records the bar from the first report on. @return its values.
  std::vector<int> BarOfRecovery() {
    ReportRecorder recorder(Window(), 1);
    std::vector<int> values;
    ModalSteps steps;
    TypeFolder(steps, Out());
    steps.Then(
        "SCANUI",
        [&](QWidget* pDialog) {
          const auto* pBar = pDialog->findChild<QProgressBar*>("progressBar");
          QObject::connect(pBar, &QProgressBar::valueChanged, pBar,
                           [&values](int nValue) { values.push_back(nValue); });
          recorder.GoOn();
        },
        [&](QWidget*) { return recorder.IsWaiting(); });
    steps.Then(
        "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); }, IsFinished);
    Window().btnRecovery();
    return values;
  }
};

TEST_F(RecoveryReports, NothingTickedGivesSixMarksAndTheEnd) {
  ReportRecorder recorder(Window());
  std::string strText;
  DetailList detail;

  Recover([&](QWidget* pDialog) {
    strText = TextOf(pDialog->findChild<QLabel*>("m_pTextLabel"));
    detail = DetailOf(pDialog);
  });

  EXPECT_EQ(Reports({{2000, 1, 0, ""},
                     {4000, 1, 0, ""},
                     {5000, 1, 0, ""},
                     {7000, 1, 0, ""},
                     {8000, 1, 0, ""},
                     {9000, 1, 0, ""},
                     {10000, 1000, 0, ""}}),
            recorder.All());
  EXPECT_EQ("  Process: 100%\n  File recovery complete", strText);
  EXPECT_TRUE(detail.rows.empty());
  EXPECT_EQ("  Recovery Detail\n\n  Sucess:0 Failed:0\n", detail.strSummary);
  EXPECT_EQ(std::vector<std::string>(), NamesIn(Out()));
}

TEST_F(RecoveryReports, BarOfAnEmptyRecoveryStopsAtEachMark) {
  EXPECT_EQ(std::vector<int>({21, 41, 51, 71, 81, 91, 100}), BarOfRecovery());
}

TEST_F(RecoveryReports, BarRunsThroughAllCategoriesAndDocuments) {
  for (const RecoveryStep& step : kRecoverySteps) {
    for (const char* pszName : {"a", "b"}) {
      if (step.IsApps())
        AddAppFile(step.nCategory, pszName, "file.jpg");
      else
        AddFile(step.nCategory, pszName);
    }
  }
  AddDocuments();

  EXPECT_EQ(std::vector<int>({10, 20, 21, 30, 40, 41, 45, 50, 51, 60, 70, 71,
                              75, 80, 81, 85, 90, 91, 92, 93, 94, 96, 100}),
            BarOfRecovery());
}

TEST_F(RecoveryReports, BarStepsBackBetweenAMarkAndTheNextCategory) {
  AddFile(0, "photo.jpg");
  for (int i = 0; i < 1000; ++i) AddFile(1, std::to_string(i), i == 0 ? "bytes" : "");

  std::vector<int> expected = {20, 21};
  for (int i = 20; i <= 41; ++i) expected.push_back(i);
  expected.insert(expected.end(), {51, 71, 81, 91, 100});
  EXPECT_EQ(expected, BarOfRecovery());
}

TEST_F(RecoveryReports, ShowsTheDestinationOfTheCurrentFile) {
  AddFile(0, "a.jpg");
  AddFile(0, "b.jpg");
  ReportRecorder recorder(Window(), 2);
  std::vector<std::string> texts;
  const auto note = [&](QWidget* pDialog) {
    texts.push_back(TextOf(pDialog->findChild<QLabel*>("m_pTextLabel")));
  };
  ModalSteps steps;
  TypeFolder(steps, Out());
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        note(pDialog);
        recorder.GoOn();
      },
      [&](QWidget* pDialog) {
        return recorder.IsWaiting() && pDialog->findChild<QProgressBar*>("progressBar")->value() == 10;
      });
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        note(pDialog);
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);

  Window().btnRecovery();

  EXPECT_EQ(std::vector<std::string>({"  Process: 10%\n  Destination: " + Out() + "/Camera Roll/a.jpg",
                                      "  Process: 100%\n  File recovery complete"}),
            texts);
}

TEST_F(RecoveryReports, CategoriesComeInTheirOrder) {
  for (const RecoveryStep& step : kRecoverySteps) {
    if (step.IsApps())
      AddAppFile(step.nCategory, "App", "name.mov");
    else
      AddFile(step.nCategory, "name.mov");
  }
  AddDocuments();
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(Reports({{2000, 0, 0, Out() + "/Camera Roll/name.mov"},
                     {2000, 1, 0, ""},
                     {2000, 20, 0, Out() + "/Photo Stream/name.mov"},
                     {4000, 1, 0, ""},
                     {1000, 40, 0, Out() + "/App Photos/App/name.mov"},
                     {5000, 1, 0, ""},
                     {2000, 50, 0, Out() + "/App Video/App/name.mov"},
                     {7000, 1, 0, ""},
                     {1000, 70, 0, Out() + "/WhatsApp Attachments/name.mov"},
                     {8000, 1, 0, ""},
                     {1000, 80, 0, Out() + "/Message Attachments/name.mov"},
                     {9000, 1, 0, ""},
                     {9100, 1, 0, Out() + "/Message/sms.csv"},
                     {9200, 1, 0, Out() + "/Contacts/Contacts.html"},
                     {9300, 1, 0, Out() + "/CallHistory/CallHistory.html"},
                     {9500, 1, 0, Out() + "/Notes/Notes.html"},
                     {10000, 1000, 0, ""}}),
            recorder.All());
}

TEST_F(RecoveryReports, ComeFromAThreadOfTheirOwnAndReachTheDialogOnTheMainThread) {
  AddFile(0, "a.jpg");
  std::atomic<QThread*> pWorker{nullptr};
  QThread* pShows = nullptr;
  const auto connection = QObject::connect(
      &Window(), qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &Window(),
      [&] { pWorker = QThread::currentThread(); }, Qt::DirectConnection);
  ReportRecorder recorder(Window(), 1);
  ModalSteps steps;
  TypeFolder(steps, Out());
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        QObject::connect(
            pDialog->findChild<QProgressBar*>("progressBar"), &QProgressBar::valueChanged, pDialog,
            [&] { pShows = QThread::currentThread(); }, Qt::DirectConnection);
        recorder.GoOn();
      },
      [&](QWidget*) { return recorder.IsWaiting(); });
  steps.Then(
      "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); }, IsFinished);

  Window().btnRecovery();

  QObject::disconnect(connection);
  EXPECT_NE(nullptr, pWorker);
  EXPECT_NE(QThread::currentThread(), pWorker);
  EXPECT_EQ(QThread::currentThread(), pShows);
}

TEST_F(RecoveryReports, EachKindOfDocumentReportsForItself) {
  struct Case {
    int nCategory;
    Reports reports;
  };
  const Case cases[] = {
      {4, {{9100, 1, 0, Out() + "/Message/sms.csv"}}},
      {6, {{9200, 1, 0, Out() + "/Contacts/Contacts.html"}}},
      {7, {{9300, 1, 0, Out() + "/CallHistory/CallHistory.html"}}},
      {8, {{9500, 1, 0, Out() + "/Notes/Notes.html"}}},
      {9, {}},
  };
  AddDocuments();
  for (const Case& one : cases) {
    for (const int nCategory : {4, 6, 7, 8, 9}) Selection(nCategory).clear();
    Selection(one.nCategory) = {{0, 0}};
    ReportRecorder recorder(Window());

    Recover();

    EXPECT_EQ(WholeRecovery({}, one.reports), recorder.All()) << one.nCategory;
  }
}

TEST_F(RecoveryReports, CancelFlagEndsReportsWithAnAnswerOfOne) {
  ReportRecorder recorder(Window());

  const int nBefore = Window().RecoveryCallBack(12, 3, 7, u"/out/ä");
  const int nStaticBefore = DRUI::RecoveryCallBack(&Window(), 13, 4, 0, u"");
  Window().m_bCancelRecovery = true;
  const int nAfter = Window().RecoveryCallBack(14, 5, 0, u"/out/b");
  const int nStaticAfter = DRUI::RecoveryCallBack(&Window(), 15, 6, 0, u"/out/b");

  EXPECT_EQ(0, nBefore);
  EXPECT_EQ(0, nStaticBefore);
  EXPECT_EQ(1, nAfter);
  EXPECT_EQ(1, nStaticAfter);
  EXPECT_EQ(Reports({{12, 3, 7, "/out/ä"}, {13, 4, 0, ""}}), recorder.All());
}

TEST_F(RecoveryReports, FlagOfARecoveryBeforeIsClearedAndSetAgain) {
  Window().m_bCancelRecovery = true;
  AddFile(0, "a.jpg");
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(8u, recorder.All().size());
  EXPECT_TRUE(Window().m_bCancelRecovery);
  EXPECT_FALSE(Window().m_bRecoveryFinished);
}

using CountCase = std::tuple<RecoveryStep, int>;

/// A category of files with a number of rows, or apps.
class RecoveryCounts : public RecoveryTest, public testing::WithParamInterface<CountCase> {};

std::string NumberedName(int nNumber) {
  const std::string strNumber = std::to_string(nNumber);
  return std::string(4 - strNumber.size(), '0') + strNumber;
}

TEST_P(RecoveryCounts, EachRowReportsItsShareOfTheCategory) {
  const auto& [step, nCount] = GetParam();
  Reports expected;
  for (int i = 1; i <= nCount; ++i) {
    const std::string strName = NumberedName(i);
    const int nProgress = i * step.nNumerator / nCount;
    const std::string strFolder = Out() + step.pszFolder;
    if (!step.IsApps()) {
      AddFile(step.nCategory, strName, "x");
      expected.push_back({nProgress, step.nPercent, 0, strFolder + strName});
      continue;
    }
    // All files of an app report the same.
    const int nFiles = i % 3 + 1;
    for (int nFile = 0; nFile < nFiles; ++nFile) {
      AddAppFile(step.nCategory, strName, NumberedName(nFile), "x");
      expected.push_back({nProgress, step.nPercent, 0, strFolder + strName + "/" + NumberedName(nFile)});
    }
  }
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(WholeRecovery({{step.nCategory, expected}}), recorder.All());
  EXPECT_EQ(expected.size(), Written().size());
}

INSTANTIATE_TEST_SUITE_P(Steps, RecoveryCounts,
                         testing::Combine(testing::ValuesIn(kRecoverySteps), testing::Values(1, 3, 7, 1000)),
                         [](const testing::TestParamInfo<CountCase>& info) {
                           return std::get<0>(info.param).pszName + std::to_string(std::get<1>(info.param));
                         });

TEST_F(RecoveryReports, FirstOfAThousandRowsReportsTwo) {
  for (int i = 0; i < 1000; ++i) AddFile(0, std::to_string(i), "");
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ((Report{2, 0, 0, Out() + "/Camera Roll/0"}), recorder.All().front());
}

TEST_F(RecoveryReports, AnAppWithoutFilesCountsAmongTheApps) {
  AddAppFile(2, "Beta", "b.jpg");
  AddAppFile(2, "Delta", "d.jpg");
  AppSelection(2)["Alpha"] = {{0, 0}};  // no such app
  AppSelection(2)["Folder"];            // as added by a press on the second column
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(WholeRecovery({{2,
                            {{500, 40, 0, Out() + "/App Photos/Beta/b.jpg"},
                             {750, 40, 0, Out() + "/App Photos/Delta/d.jpg"}}}}),
            recorder.All());
}

TEST_F(RecoveryReports, AppsWithoutTickedFilesGiveTheMarkAlone) {
  AddAppFile(3, "Alpha", "a.mov");
  AppSelection(3)["Alpha"].clear();
  AppSelection(3)["Folder"] = {{0, 0}, {7, 7}};
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(WholeRecovery({}), recorder.All());
  EXPECT_EQ(std::vector<std::string>(), NamesIn(Out()));
}

}  // namespace
