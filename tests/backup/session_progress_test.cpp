#include <gmock/gmock.h>

#include "backup/categories.h"
#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Layout = BackupBuilder::Layout;

namespace {

/// One step of a scan.
struct Step {
  const char* pszName;
  int (*pfnRun)(CIphoneBackupFile& session, BackupRecords& records);
};

// In the order of a scan.
const Step kSteps[] = {
    {"Camera", [](CIphoneBackupFile& s,
                  BackupRecords& r) { return s.GetBackupCameraFile(r.m_vecCamera, r.m_vecPhotoStream); }},
    {"Messages",
     [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetBackupFileMessageInfo(r.m_mapMessage); }},
    {"Attachments", [](CIphoneBackupFile& s,
                       BackupRecords& r) { return s.GetBackupMsgAttachments(r.m_vecMessageAttachment); }},
    {"Contacts",
     [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetBackupFilePersonContent(r.m_vecContact); }},
    {"Calls",
     [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetBackupFileHistoryCallInfo(r.m_vecCall); }},
    {"Notes", [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetBackupFileNotes(r.m_vecNote); }},
    {"AppFiles", [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetAppFileInfo(r.m_vecAppFile); }},
    {"WhatsApp",
     [](CIphoneBackupFile& s, BackupRecords& r) { return s.GetWhatsappMessageInfo(r.m_mapWhatsApp); }},
    {"WhatsAppAttachments",
     [](CIphoneBackupFile& s, BackupRecords& r) {
       return s.GetWhatsAppAttachment(r.m_vecWhatsAppAttachment);
     }},
};

/// The reports of each step.
struct ProgressCase {
  const char* pszName;
  bool bEncrypted;
  std::vector<int> scan;
  std::vector<std::vector<int>> steps;  // as in kSteps
  std::vector<int> shares;              // progress of the session after each step
};

void PrintTo(const ProgressCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class SessionProgress : public testing::TestWithParam<ProgressCase> {
 protected:
  SessionProgress() : m_records(m_session.GetMessageMap()) {
    // Four entries: one for each walk over the manifest, and one for none.
    for (const char* pszName : {"backup", "decrypted"}) {
      BackupBuilder backup(FromNarrow(m_folder.Path(pszName)), Layout::Mbdb);
      backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", sample_media::jpeg(1, 64, 48));
      backup.addFile("MediaDomain", "Library/SMS/Attachments/00/IMG_0002.JPG", sample_media::jpeg(2, 64, 48));
      backup.addFile("AppDomain-com.example.Snap", "Documents/a.jpg", sample_media::jpeg(3, 64, 48));
      backup.addFile("HomeDomain", "Library/a.plist", "plain");
      backup.finish();
    }
  }

  /// Selects the backup and starts recording.
  void Init(bool bWithCallback = true) {
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"), GetParam().bEncrypted);
    m_session.Init(&info);
    m_session.InitCallback(bWithCallback ? ProgressLog::Receive : nullptr, &m_log);
  }

  int Scan() {
    return m_session.Scan(GetParam().bEncrypted ? FromNarrow(m_folder.Path("decrypted")) : QString());
  }

  int Run(size_t nStep) { return kSteps[nStep].pfnRun(m_session, m_records); }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
  BackupRecords m_records;
  ProgressLog m_log;
};

const ProgressCase kCases[] = {
    // 34 = 12 + 2 * 11, and within: 12 + 11 * i * 2 / 4. Messages: base + 11/5, + 11/4, + 11, then half a
    // step.
    {"Plain",
     false,
     {1, 12},
     {{17, 23, 28, 34, 34},
      {36, 36, 45, 39},
      {41, 44, 47, 50, 50},
      {55},
      {60},
      {65},
      {70, 76, 81, 87, 76},
      {87},
      {98}},
     {34, 39, 50, 55, 60, 65, 76, 87, 98}},
    {"Encrypted",
     true,
     {11},
     {{16, 21, 26, 31, 31},
      {33, 33, 41, 36},
      {38, 41, 43, 46, 46},
      {51},
      {56},
      {61},
      {66, 71, 76, 81, 71},
      {81},
      {91}},
     {31, 36, 46, 51, 56, 61, 71, 81, 91}},
};

std::string CaseName(const testing::TestParamInfo<ProgressCase>& info) {
  return info.param.pszName;
}

}  // namespace

TEST_P(SessionProgress, StepsReportTheirSharesInOrder) {
  Init();
  std::vector<std::vector<int>> reported;
  std::vector<int> reached;

  Scan();
  const std::vector<int> scan = std::move(m_log.values);
  for (size_t i = 0; i < std::size(kSteps); ++i) {
    m_log.values.clear();
    Run(i);
    reported.push_back(m_log.values);
    reached.push_back(m_session.GetProgress());
  }

  EXPECT_EQ(GetParam().scan, scan);
  EXPECT_EQ(GetParam().steps, reported);
  EXPECT_EQ(GetParam().shares, reached);
}

TEST_P(SessionProgress, SecondScanBeginsAtTheStartAgain) {
  Init();
  Scan();
  for (size_t i = 0; i < std::size(kSteps); ++i) Run(i);
  m_log.values.clear();

  Init();
  Scan();
  Run(0);

  std::vector<int> expected = GetParam().scan;
  expected.insert(expected.end(), GetParam().steps[0].begin(), GetParam().steps[0].end());
  EXPECT_EQ(expected, m_log.values);
}

TEST_P(SessionProgress, SharesAddUpWithoutACallback) {
  Init(false);
  std::vector<int> reached, answers;

  Scan();
  for (size_t i = 0; i < std::size(kSteps); ++i) {
    answers.push_back(Run(i));
    reached.push_back(m_session.GetProgress());
  }

  EXPECT_EQ(GetParam().shares, reached);
  EXPECT_THAT(answers, testing::Each(0));
  EXPECT_THAT(m_log.values, IsEmpty());
}

TEST_P(SessionProgress, CancelDuringTheScanChangesNothing) {
  Init();
  m_log.CancelFrom(0);

  const int nStatus = Scan();

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(4u, m_session.GetManifest().size());
  EXPECT_EQ(GetParam().scan, m_log.values);
}

TEST_P(SessionProgress, StepsAfterACancelStopAtTheirFirstPollAndStillTakeTheirShare) {
  Init();
  Scan();
  m_log.CancelFrom(0);
  std::vector<int> answers, reached;

  for (size_t i = 0; i < std::size(kSteps); ++i) {
    m_log.values.clear();
    answers.push_back(Run(i));
    reached.push_back(m_session.GetProgress());
  }

  // The readers of contacts, calls and notes don't call back.
  EXPECT_THAT(answers, ElementsAre(1, 1, 1, 0, 0, 0, 1, 1, 1));
  EXPECT_EQ(GetParam().shares, reached);
}

TEST_P(SessionProgress, WalkThatIsCancelledReportsItsFirstPositionAndItsEnd) {
  Init();
  Scan();
  m_log.values.clear();
  m_log.CancelFrom(0);

  Run(0);

  EXPECT_THAT(m_log.values, ElementsAre(GetParam().steps[0].front(), GetParam().steps[0].back()));
}

TEST_P(SessionProgress, MessagesThatAreCancelledAtFirstSkipTheirSecondReport) {
  Init();
  Scan();
  Run(0);
  m_log.values.clear();
  m_log.CancelFrom(0);

  Run(1);

  const std::vector<int>& whole = GetParam().steps[1];
  EXPECT_THAT(m_log.values, ElementsAre(whole[0], whole[2], whole[3]));
}

TEST_P(SessionProgress, AnswerToTheLastReportOfAStepIsNotTheResult) {
  Init();
  Scan();
  const int nEnd = GetParam().shares[0];
  // 34 (31) is reported twice: as the last position of the walk, which counts, and as the end of the step.
  m_log.answer = [nEnd, nSeen = 0](size_t, int nValue) mutable {
    return nValue == nEnd && ++nSeen == 2 ? 1 : 0;
  };
  m_log.values.clear();

  const int nAnswer = Run(0);

  EXPECT_EQ(0, nAnswer);
  EXPECT_EQ(GetParam().steps[0], m_log.values);
}

TEST_P(SessionProgress, WhatsAppStepsHandOnAnyAnswer) {
  Init();
  Scan();
  m_log.answer = [](size_t, int) { return -7; };

  const int nChats = Run(7);
  const int nAttachments = Run(8);

  EXPECT_EQ(-7, nChats);
  EXPECT_EQ(-7, nAttachments);
}

INSTANTIATE_TEST_SUITE_P(Scans, SessionProgress, testing::ValuesIn(kCases), CaseName);
