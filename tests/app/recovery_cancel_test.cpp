// Recoveries whose cancel was confirmed: they never return.
#include "tests/app/recovery_child.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

constexpr int kWatch = 3000;  // milliseconds for which a wait must not end
constexpr int kLimit = 60000;

class RecoveryCancel : public testing::Test {
 protected:
  RecoveryCancel() : m_strOut(m_folder.MakeFolder("out")) {}
  ~RecoveryCancel() override {
    if (m_process.state() == QProcess::NotRunning) return;
    m_process.kill();
    m_process.waitForFinished(kLimit);
  }

  bool Says(const char* pszWord) {
    return WaitFor([&] { return Output().contains(pszWord); }, kLimit);
  }
  const QByteArray& Output() { return m_output += m_process.readAllStandardOutput(); }
  /// Names of the reports, from below the destination.
  std::vector<std::string> Reported() {
    std::vector<std::string> names;
    for (const QByteArray& line : Output().split('\n')) {
      if (!line.startsWith("report ")) continue;
      const std::string strName = line.mid(7).toStdString();
      names.push_back(strName.empty() ? strName : strName.substr(m_strOut.size()));
    }
    return names;
  }
  void ExpectAllFiles() {
    for (int i = 0; i < kChildFiles; ++i) {
      const std::string strNumber = std::to_string(i);
      EXPECT_EQ("bytes of " + strNumber, ReadFile(m_strOut + "/Camera Roll/" + strNumber));
    }
    EXPECT_EQ(static_cast<size_t>(kChildFiles), NamesIn(m_strOut + "/Camera Roll").size());
    EXPECT_EQ(std::vector<std::string>(
                  {"CallHistory", "Camera Roll", "Contacts", "Message", "Notes", "WhatsApp Message"}),
              NamesIn(m_strOut));
  }
  /// Number of files of a complete recovery: the photos, three pages, two files for each of two
  /// conversations and three for each of two chats.
  static constexpr size_t kAllFiles = kChildFiles + 3 + 2 * 2 + 2 * 3;
  bool AllFilesAreThere() {
    return WaitFor([&] { return FilesBelow(m_strOut).size() == kAllFiles; }, kLimit);
  }
  bool EndsWithin(int nMilliseconds) { return m_process.waitForFinished(nMilliseconds); }

  TemporaryFolder m_folder;
  std::string m_strOut;
  QProcess m_process;

 private:
  QByteArray m_output;
};

TEST_F(RecoveryCancel, ConfirmedLetsTheWorkerFinishUnseenAndNeverReturns) {
  StartRecoveryChild(m_process, RecoveryChildKind::kCancelled, m_strOut, m_folder.MakeFolder("tmp"));
  ASSERT_TRUE(Says("cancelled")) << Output().toStdString();

  const bool bAll = AllFilesAreThere();
  const bool bEnded = EndsWithin(kWatch);

  EXPECT_TRUE(bAll) << FilesBelow(m_strOut).size();
  EXPECT_FALSE(bEnded);
  EXPECT_FALSE(Output().contains("ended"));
  EXPECT_EQ(std::vector<std::string>({"/Camera Roll/0", "/Camera Roll/1", "/Camera Roll/2"}), Reported());
  ExpectAllFiles();
}

TEST_F(RecoveryCancel, ConfirmedAfterTheEndOfTheRecoveryNeverReturnsEither) {
  StartRecoveryChild(m_process, RecoveryChildKind::kLateYes, m_strOut, m_folder.MakeFolder("tmp"));
  ASSERT_TRUE(Says("cancelled")) << Output().toStdString();

  const bool bEnded = EndsWithin(kWatch);

  EXPECT_FALSE(bEnded);
  EXPECT_FALSE(Output().contains("ended"));
  // Photos, six marks, four documents and the end.
  EXPECT_EQ(static_cast<size_t>(kChildFiles) + 6 + 4 + 1, Reported().size());
  EXPECT_EQ(kAllFiles, FilesBelow(m_strOut).size());
  ExpectAllFiles();
}

}  // namespace
