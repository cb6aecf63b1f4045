#include "tests/app/recovery_child.h"

#include <sys/resource.h>

#include <QCoreApplication>
#include <cstdio>
#include <thread>

#include "tests/app/recovery_fixture.h"

namespace {

constexpr char kKindVariable[] = "ORVANDEL_RECOVERY_CHILD";
constexpr char kFolderVariable[] = "ORVANDEL_RECOVERY_CHILD_FOLDER";
constexpr char kSuite[] = "RecoveryChild";
constexpr size_t kCancelAt = 3;

void Say(const std::string& strLine) {
  std::puts(strLine.c_str());
  std::fflush(stdout);
}

class RecoveryChild : public RecoveryTest {
 public:
  void TestBody() override {
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    AddWork();
    QObject::connect(
        &Window(), qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &Window(),
        [](int, int, int, const QString& qstrName) { Say("report " + qstrName.toStdString()); },
        Qt::DirectConnection);
    const bool bCancels = m_kind == RecoveryChildKind::kCancelled || m_kind == RecoveryChildKind::kLateYes;
    ReportRecorder recorder(Window(), bCancels ? kCancelAt : 0);
    ModalSteps steps;
    TypeFolder(steps, qEnvironmentVariable(kFolderVariable).toStdString());
    if (bCancels) Cancel(steps, recorder);

    Window().btnRecovery();

    Say("ended");
  }

 private:
  void AddWork() {
    if (m_kind == RecoveryChildKind::kAppFileBeyondList) {
      AddAppFile(2, "App", "0");
      AddAppFile(2, "App", "1");
      AppSelection(2)["App"][7] = 0;
      return;
    }
    const int nFiles = m_kind == RecoveryChildKind::kFileBeyondList ? 2 : kChildFiles;
    for (int i = 0; i < nFiles; ++i) AddFile(0, std::to_string(i), "bytes of " + std::to_string(i));
    if (m_kind == RecoveryChildKind::kFileBeyondList)
      Selection(0)[2] = 0;
    else
      AddDocuments();
  }

  void Cancel(ModalSteps& steps, ReportRecorder& recorder) {
    steps.Then(
        "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); },
        [&](QWidget*) { return recorder.IsWaiting(); });
    const bool bLate = m_kind == RecoveryChildKind::kLateYes;
    if (bLate) steps.Then("CMessageBox", [&](QWidget*) { recorder.GoOn(); });
    steps.Then(
        "CMessageBox",
        [this](QWidget* pBox) {
          std::thread([pWindow = &Window()] {  // lives as long as the process
            while (!pWindow->m_bCancelRecovery) std::this_thread::yield();
            Say("cancelled");
          })
              .detach();
          Click(pBox->findChild<QPushButton*>("OK"));
        },
        [this, bLate](QWidget*) { return !bLate || Window().m_bCancelRecovery; });
  }

  const RecoveryChildKind m_kind =
      static_cast<RecoveryChildKind>(qEnvironmentVariableIntValue(kKindVariable));
};

// The test exists in the child alone.
[[maybe_unused]] const bool kRegistered = [] {
  if (qEnvironmentVariableIsEmpty(kKindVariable)) return false;
  testing::RegisterTest(kSuite, "Runs", nullptr, nullptr, __FILE__, __LINE__,
                        []() -> testing::Test* { return new RecoveryChild; });
  return true;
}();

}  // namespace

void StartRecoveryChild(QProcess& process, RecoveryChildKind kind, const std::string& strOut,
                        const std::string& strTemporary) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(kKindVariable, QString::number(static_cast<int>(kind)));
  environment.insert(kFolderVariable, QString::fromStdString(strOut));
  environment.insert("TMPDIR", QString::fromStdString(strTemporary));
  process.setProcessEnvironment(environment);
  process.start(QCoreApplication::applicationFilePath(), {QString("--gtest_filter=%1.*").arg(kSuite)});
}
