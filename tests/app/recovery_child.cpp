#include "tests/app/recovery_child.h"

#include <QCoreApplication>
#include <cstdio>
#include <thread>

#include "tests/app/recovery_fixture.h"

namespace orvandel {

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
    AddWork();
    QObject::connect(
        &Window(), qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &Window(),
        [](int, int, int, const QString& qstrName) { Say("report " + qstrName.toStdString()); },
        Qt::DirectConnection);
    ReportRecorder recorder(Window(), kCancelAt);
    ModalSteps steps;
    TypeFolder(steps, qEnvironmentVariable(kFolderVariable).toStdString());
    Cancel(steps, recorder);

    Window().btnRecovery();

    Say("ended");
  }

 private:
  void AddWork() {
    for (int i = 0; i < kChildFiles; ++i) AddFile(0, std::to_string(i), "bytes of " + std::to_string(i));
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
          std::thread([pWindow = &Window()] {  // runs until the process ends
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

// The test is registered only in the child.
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

}  // namespace orvandel
