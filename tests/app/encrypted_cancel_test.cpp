// A scan that is cancelled while the decrypt tool runs.
#include <QApplication>
#include <QProgressBar>
#include <chrono>
#include <thread>

#include "tests/app/encrypted_fixture.h"

using namespace orvandel;

namespace {

constexpr char kAccept[] = "echo Count:0; exec sleep 60";
constexpr char kPassword[] = "secret";
// Waits for a file from the test, at most a minute.
constexpr char kAwaitSign[] =
    "n=0; until [ -e \"$dir/go\" ] || [ $n -gt 6000 ]; do sleep 0.01; n=$((n+1)); done\n";
constexpr std::chrono::seconds kSoon(30);

/// Counts the listings of a decrypted folder.
class CountingParser : public CLocalBuckupRecovery {
 public:
  explicit CountingParser(int& nScans) : m_nScans(nScans) {}
  int Scan(QString qstrFolder) override {
    ++m_nScans;
    return CLocalBuckupRecovery::Scan(qstrFolder);
  }

 private:
  int& m_nScans;
};

class EncryptedCancel : public EncryptedTest {
 protected:
  void GiveSign() { WriteFile(ToolFolder() + "/go", ""); }

  /// Opens an encrypted backup, up to the tool's work on it.
  void BeginScan(ModalSteps& steps, const std::string& strDecrypt) {
    WriteTool(kAccept, strDecrypt);
    const std::string strBackup = WriteSealedBackup("one", 10);
    Open();
    ChooseFolder(steps, strBackup);
    GivePassword(steps, kPassword);
  }

  static std::function<bool(QWidget*)> Shows(int nValue) {
    return [nValue](QWidget* pDialog) {
      return pDialog->findChild<QProgressBar*>("progressBar")->value() == nValue;
    };
  }

  /// Presses "Cancel" when the bar shows a value, confirms it, and lets the tool continue once the window
  /// waits.
  void CancelAt(ModalSteps& steps, int nValue) {
    steps.Then(
        "SCANUI",
        [this](QWidget* pDialog) {
          // On another thread, because the main thread will be blocked.
          m_sign = std::thread([this] {
            for (int i = 0; i < 30000 && !Window().m_bCancelScan; ++i)
              std::this_thread::sleep_for(std::chrono::milliseconds(1));
            GiveSign();
          });
          Click(pDialog->findChild<QPushButton*>("Cancel"));
        },
        Shows(nValue));
    steps.ThenClick("CMessageBox", "OK");
  }
  ~EncryptedCancel() override {
    if (m_sign.joinable()) m_sign.join();
  }

  std::thread m_sign;
};

TEST_F(EncryptedCancel, CountHandledAfterItKillsTheTool) {
  ModalSteps steps;
  BeginScan(steps, WritePhoto(1) + "echo Count:1\n" + kAwaitSign + "echo Count:2; exec sleep 60");
  const auto start = std::chrono::steady_clock::now();
  steps.Then(
      "SCANUI",
      [this](QWidget*) {
        Window().m_bCancelScan = true;
        GiveSign();
      },
      Shows(2));
  // The dialog stays open: no 100 is reported after a cancel.
  int nBar = -1;
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        nBar = pDialog->findChild<QProgressBar*>("progressBar")->value();
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      [this](QWidget*) { return Window().m_bScanFinished.load(); });
  steps.ThenClick("CMessageBox", "OK");

  Select();

  ExpectDataScreen();
  EXPECT_LT(std::chrono::steady_clock::now() - start, kSoon);
  EXPECT_TRUE(ToolHasEnded());
  EXPECT_EQ(2, nBar) << "neither the count nor anything behind it is reported";
}

TEST_F(EncryptedCancel, ConfirmedInTheDialogLetsTheToolRunToItsEnd) {
  ModalSteps steps;
  BeginScan(steps, WritePhoto(1) + "echo Count:1\n" + kAwaitSign +
                       "seq -f Count:%.0f 500; sleep 0.3; echo Count:9; echo ended >\"$dir/ended\"");
  CancelAt(steps, 2);

  Select();

  ExpectDataScreen();
  EXPECT_EQ("ended\n", Told("ended")) << "nothing kills it while the window waits";
  EXPECT_TRUE(Window().m_bCancelScan);
  EXPECT_TRUE(ToolHasEnded());
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
}

TEST_F(EncryptedCancel, WrongPasswordIsIgnoredWhileTheWindowWaits) {
  ModalSteps steps;
  BeginScan(steps, "echo Count:1\n" + std::string(kAwaitSign) +
                       "echo 'Wrong password'; sleep 0.3; echo ended >\"$dir/ended\"");
  CancelAt(steps, 2);
  int nScans = 0;
  WindowAccess::ParserMaker(Window()) = [&](CIphoneBackupFile& backupFile) {
    auto pParser = std::make_unique<CountingParser>(nScans);
    pParser->Init(&backupFile);
    return pParser;
  };

  Select();
  const int nStatus = WindowAccess::DecryptStatus(Window());
  QCoreApplication::processEvents();  // the line may still be in the queue

  ExpectDataScreen();
  EXPECT_EQ("ended\n", Told("ended")) << "nothing kills the tool";
  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0, WindowAccess::DecryptStatus(Window()));
  EXPECT_TRUE(Window().m_bCancelScan);
  EXPECT_EQ(1, nScans) << "the scan goes on with what the tool has written";
}

TEST_F(EncryptedCancel, LinesOfACancelledScanDoNotReachTheNextOne) {
  {
    ModalSteps steps;
    BeginScan(steps, "if [ -e \"$dir/again\" ]; then echo Count:10; " + WritePhoto(1) +
                         "else echo Count:1\n" + kAwaitSign +
                         "seq -f Count:%.0f 500; echo 'Wrong password'; fi");
    CancelAt(steps, 2);
    Select();
  }
  m_sign.join();
  WriteFile(ToolFolder() + "/again", "");
  const ToolProgress progress(Window());

  Window().btnSlotScan();

  ExpectDataScreen();
  EXPECT_FALSE(Window().m_bCancelScan);
  EXPECT_EQ(std::vector<int>({11}), progress.values);
  EXPECT_EQ("Camera Roll(1)", Labels()[0]);
}

TEST_F(EncryptedCancel, NoOnTheQuestionLetsToolAndScanRunOn) {
  ModalSteps steps;
  BeginScan(steps, WritePhoto(1) + "echo Count:1\n" + kAwaitSign + "echo Count:10");
  steps.Then(
      "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); }, Shows(2));
  steps.ThenClick("CMessageBox", "NO");
  steps.Then("SCANUI", [this](QWidget*) { GiveSign(); });
  const ToolProgress progress(Window());

  Select();

  ExpectDataScreen();
  EXPECT_EQ(std::vector<int>({2, 11}), progress.values);
  EXPECT_EQ("Camera Roll(1)", Labels()[0]);
  EXPECT_FALSE(Window().m_bCancelScan);
}

}  // namespace
