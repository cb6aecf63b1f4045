// The result of a scan, also after running out of memory.
#include <new>
#include <thread>

#include "common/status.h"
#include "tests/app/encrypted_fixture.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;

namespace {

/// A parser of a real backup with some steps replaced.
class StandIn : public CLocalBuckupRecovery {
 public:
  std::function<int(const QString&)> scan;
  std::function<int(std::vector<__PERSON_CONTENT__>&)> contacts;

  int Scan(QString qstrFolder) override {
    return scan ? scan(qstrFolder) : CLocalBuckupRecovery::Scan(qstrFolder);
  }
  int GetIPhonePersonContent(std::vector<__PERSON_CONTENT__>& people) override {
    return contacts ? contacts(people) : CLocalBuckupRecovery::GetIPhonePersonContent(people);
  }
};

class ScanResult : public EncryptedTest {
 protected:
  void OpenOverSmallBackup() {
    WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
    Open();
  }
  /// Makes subsequent scans use such a parser.
  void UseParser(const StandIn& model) {
    WindowAccess::ParserMaker(Window()) = [model](CIphoneBackupFile& backupFile) {
      auto pParser = std::make_unique<StandIn>(model);
      pParser->Init(&backupFile);
      return pParser;
    };
  }
  void UseScanResult(int nResult) {
    StandIn model;
    model.scan = [nResult](const QString&) { return nResult; };
    UseParser(model);
  }
  /// Runs the worker's function on a thread of its own. @return its result.
  int Scan() {
    std::atomic<bool> bDone{false};
    int nReturned = -12345;
    std::thread worker([&] {
      int nResult = 0;
      nReturned = Window().Scan(u"", nResult);
      bDone = true;
    });
    EXPECT_TRUE(WaitFor([&] { return bDone.load(); }));
    worker.join();
    return nReturned;
  }
};

TEST_F(ScanResult, IsThatOfTheWalkUnlessTheParserEndsIt) {
  OpenOverSmallBackup();
  ScanBackup();
  struct Case {
    int nParser, nScan;
  };
  const Case cases[] = {{0, 0}, {87, 0}, {1, 0}, {-5, 0}, {2, 2}, {-1, 2}, {-110, -110}};
  for (const Case& one : cases) {
    UseScanResult(one.nParser);

    EXPECT_EQ(one.nScan, Scan()) << one.nParser;
    EXPECT_TRUE(Window().m_bScanFinished) << one.nParser;
  }
}

TEST_F(ScanResult, WithoutAParserIsMinusOneAndTheTreeStaysAtZero) {
  OpenOverSmallBackup();
  WindowAccess::ParserMaker(Window()) = [](CIphoneBackupFile&) { return nullptr; };
  std::vector<int> reports;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(),
                   [&](int nProgress) { reports.push_back(nProgress); });
  ScanBackup();

  const int nResult = Scan();

  EXPECT_EQ(-1, nResult);
  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(100, reports.front()) << "the dialog closes at once";
}

TEST_F(ScanResult, OfAWrongPasswordThatTheParserReportsIsMinus110) {
  OpenOverSmallBackup();
  UseScanResult(kStatusWrongPassword);
  ScanBackup();

  const int nResult = Scan();

  EXPECT_EQ(-110, nResult);
  EXPECT_EQ(kZeroLabels, Labels());
}

TEST_F(ScanResult, OfAWrongPasswordThatTheToolReportsIsZero) {
  WriteTool("exit", "echo 'Wrong password'; exec sleep 60");
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  SelectBackup(strBackup, "wrong");
  int nParserScans = 0;
  StandIn model;
  model.scan = [&](const QString&) { return ++nParserScans; };
  UseParser(model);

  const int nResult = Scan();

  EXPECT_EQ(0, nResult);
  EXPECT_EQ(-110, WindowAccess::DecryptStatus(Window()));
  EXPECT_EQ(0, nParserScans);
  EXPECT_EQ(kZeroLabels, Labels());
}

TEST_F(ScanResult, OfAStepThatAsksToStopIsTwoWithTheNodesAfterItAtZero) {
  OpenOverSmallBackup();
  StandIn model;
  model.contacts = [](std::vector<__PERSON_CONTENT__>&) { return 2; };
  UseParser(model);
  ScanBackup();

  const int nResult = Scan();

  EXPECT_EQ(2, nResult);
  EXPECT_EQ("Camera Roll(2)", Labels()[0]);
  EXPECT_EQ("Contacts(0)", Labels()[6]);
  EXPECT_EQ("Notes(0)", Labels()[8]);
}

TEST_F(ScanResult, OfOneThatRanOutOfMemoryIsTwo) {
  OpenOverSmallBackup();
  ScanBackup();
  StandIn model;
  model.scan = [](const QString&) -> int { throw std::bad_alloc(); };
  UseParser(model);

  EXPECT_EQ(2, Scan());
  EXPECT_TRUE(Window().m_bScanFinished);
}

TEST_F(ScanResult, AScanThatRunsOutOfMemoryShowsWhatItHasAndCanBeRepeated) {
  OpenOverSmallBackup();
  StandIn model;
  model.contacts = [](std::vector<__PERSON_CONTENT__>& people) -> int {
    people.emplace_back().strName = "read before";
    throw std::bad_alloc();
  };
  UseParser(model);
  std::vector<int> reports;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(),
                   [&](int nProgress) { reports.push_back(nProgress); });

  ScanBackup();

  std::vector<std::string> expected = kSmallBackupLabels;
  // After the contacts come calls, notes, app files and WhatsApp.
  for (const size_t nNode : {2u, 3u, 6u, 7u, 8u, 9u, 10u}) expected[nNode] = kZeroLabels[nNode];
  EXPECT_EQ(expected, Labels());
  EXPECT_EQ(2, Table("m_pCameraTable")->rowCount());
  EXPECT_EQ(100, reports.back());
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  WindowAccess::ParserMaker(Window()) = &WindowAccess::MakeParser;
  Window().btnSlotScan();
  EXPECT_EQ(kSmallBackupLabels, Labels());
}

}  // namespace
