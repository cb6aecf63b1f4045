#include "backup/scan.h"

#include <gmock/gmock.h>

#include "common/status.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Events = std::vector<std::string>;

/// A parser that records its calls and leaves all categories empty.
class NotingParser : public CLocalBuckupRecovery {
 public:
  NotingParser(Events& events, int nScanStatus) : m_events(events), m_nScanStatus(nScanStatus) {}
  ~NotingParser() override { m_events.push_back("parser destroyed"); }

  int InitCallback(ProgressCallback pfnCallback, void* pContext) override {
    pfnCallback(pContext, 7);
    return kStatusOk;
  }
  int Scan(QString qstrDecryptedFolder) override {
    m_events.push_back("manifest of '" + qstrDecryptedFolder.toStdString() + "'");
    return m_nScanStatus;
  }
  int GetCameraFilePath(std::vector<_IPHONE_CAMERA_INFO_>&, std::vector<_IPHONE_CAMERA_INFO_>&) override {
    m_events.push_back("camera");
    return kStatusStopWalk;
  }

 private:
  Events& m_events;
  int m_nScanStatus;
};

int NoteProgress(void* pEvents, int nPercent) {
  static_cast<Events*>(pEvents)->push_back("progress " + std::to_string(nPercent));
  return kStatusOk;
}

class BackupScan : public testing::Test {
 protected:
  void SetUp() override {
    m_steps.makeParser = [this](CIphoneBackupFile& session) {
      m_events.push_back("parser made over " + session.GetBackupFolder());
      return std::make_unique<NotingParser>(m_events, m_nScanStatus);
    };
    m_steps.pfnProgress = NoteProgress;
    m_steps.pProgressContext = &m_events;
    m_steps.decrypt = [this] {
      m_events.push_back("decrypt");
      return m_decryptedFolder;
    };
    m_steps.beforeManifest = [this] { m_events.push_back("before"); };
    m_steps.afterManifest = [this](int nStatus) { m_events.push_back("after " + std::to_string(nStatus)); };
    m_info.strBackupPath = "/backup";
  }
  int Scan() { return ScanBackup(m_info, m_session, m_pParser, m_records, m_steps); }

  Events m_events;
  int m_nScanStatus = kStatusOk;
  std::optional<QString> m_decryptedFolder = QString("/decrypted");
  __BACK_FILE_INFO__ m_info;
  CIphoneBackupFile m_session;
  BackupRecords m_records{m_session.GetMessageMap()};
  std::unique_ptr<IPhoneRecoveryParse> m_pParser;
  ScanSteps m_steps;
};

struct ManifestStatus {
  int nOfParser;
  int nOfScan;
  bool bWalks;
};

class BackupScanStatus : public BackupScan, public testing::WithParamInterface<ManifestStatus> {};

}  // namespace

TEST_F(BackupScan, ReadsThePlainBackupWithoutDecryption) {
  EXPECT_EQ(kStatusStopWalk, Scan());

  EXPECT_THAT(m_events, ElementsAre("parser made over /backup", "progress 7", "before", "manifest of ''",
                                    "after 0", "camera"));
  EXPECT_TRUE(m_pParser);
}

TEST_F(BackupScan, DecryptsAnEncryptedBackupFirst) {
  m_info.bEncrypted = true;

  Scan();

  EXPECT_THAT(m_events, ElementsAre("parser made over /backup", "progress 7", "decrypt", "before",
                                    "manifest of '/decrypted'", "after 0", "camera"));
}

TEST_F(BackupScan, EndsWithoutDecryptedFiles) {
  m_info.bEncrypted = true;
  m_decryptedFolder.reset();

  EXPECT_EQ(kStatusOk, Scan());

  EXPECT_THAT(m_events, ElementsAre("parser made over /backup", "progress 7", "decrypt"));
}

TEST_F(BackupScan, FailsWithoutAParser) {
  m_steps.makeParser = [](CIphoneBackupFile&) { return std::unique_ptr<IPhoneRecoveryParse>(); };

  EXPECT_EQ(kStatusFailed, Scan());

  EXPECT_THAT(m_events, IsEmpty());
}

TEST_F(BackupScan, DestroysTheParserOfTheScanBeforeFirst) {
  Scan();
  m_events.clear();

  Scan();

  ASSERT_GE(m_events.size(), 2u);
  EXPECT_EQ("parser destroyed", m_events[0]);
  EXPECT_EQ("parser made over /backup", m_events[1]);
}

TEST_F(BackupScan, NeedsNoStepsOfItsCallerForAPlainBackup) {
  m_info.strBackupPath = "/nonexistent/backup";

  EXPECT_EQ(kStatusOk, ScanBackup(m_info, m_session, m_pParser, m_records, ScanSteps()));

  EXPECT_THAT(m_records.m_vecCamera, IsEmpty());
}

TEST_P(BackupScanStatus, OfTheManifestDecidesWhetherTheCategoriesAreRead) {
  m_nScanStatus = GetParam().nOfParser;

  EXPECT_EQ(GetParam().nOfScan, Scan());

  EXPECT_EQ(GetParam().bWalks, m_events.back() == "camera");
}

INSTANTIATE_TEST_SUITE_P(Statuses, BackupScanStatus,
                         testing::Values(ManifestStatus{kStatusOk, kStatusStopWalk, true},
                                         ManifestStatus{kStatusStopped, kStatusStopWalk, true},
                                         ManifestStatus{kStatusMissing, kStatusStopWalk, true},
                                         ManifestStatus{kStatusFailed, kStatusStopWalk, false},
                                         ManifestStatus{kStatusStopWalk, kStatusStopWalk, false},
                                         ManifestStatus{kStatusWrongPassword, kStatusWrongPassword, false}));
