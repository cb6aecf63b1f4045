#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Contains;
using testing::HasSubstr;

// Opening a FIFO for reading blocks until there is a writer. A run that blocks is killed by the time limit of
// FinishCommand and fails its test.

namespace {

using Layout = BackupBuilder::Layout;

struct PipeCase {
  const char* pszName;
  Layout layout;
  std::string (*pfnPlace)(const std::string& strBackup);  ///< replaces a file by a FIFO
  const char* pszCount;                                   ///< a count that the scan still prints
};

void PrintTo(const PipeCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

std::string InDb(const std::string& strBackup, const StorePlace& place) {
  return StorePathIn(strBackup, Layout::Db, place);
}

void PutPipeAt(const std::string& strPath) {
  std::filesystem::remove(strPath);
  ASSERT_EQ(0, mkfifo(strPath.c_str(), 0600)) << strPath;
}

class PipeInBackup : public testing::TestWithParam<PipeCase> {
 protected:
  void SetUp() override {
    WriteSmallBackup(Backup(), GetParam().layout);
    PutPipeAt(GetParam().pfnPlace(Backup()));
  }

  std::string Backup() const { return m_folder.Path("backup"); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(PipeInBackup, EndsTheScanWithTheRest) {
  const CommandResult result = RunCommand({"scan", Backup()});

  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.Lines(), Contains(GetParam().pszCount));
}

TEST_P(PipeInBackup, EndsTheRecovery) {
  const CommandResult result = RunCommand({"recover", Backup(), m_folder.Path("out")});

  EXPECT_NE(-1, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.LastLine(), HasSubstr(" recovered, "));
}

INSTANTIATE_TEST_SUITE_P(
    Places, PipeInBackup,
    testing::Values(
        PipeCase{"Contacts", Layout::Db,
                 [](const std::string& s) { return InDb(s, store_places::contacts()); }, "Camera Roll(2)"},
        PipeCase{"Messages", Layout::Db,
                 [](const std::string& s) { return InDb(s, store_places::messages()); }, "Contacts(1)"},
        PipeCase{"Calls", Layout::Db, [](const std::string& s) { return InDb(s, store_places::calls()); },
                 "Contacts(1)"},
        PipeCase{"Notes", Layout::Db,
                 [](const std::string& s) { return InDb(s, store_places::notesCloud()); }, "Contacts(1)"},
        PipeCase{"ManifestMbdb", Layout::Mbdb, [](const std::string& s) { return s + "/Manifest.mbdb"; },
                 "Contacts(1)"},
        PipeCase{"ManifestDb", Layout::Db, [](const std::string& s) { return s + "/Manifest.db"; },
                 "Contacts(1)"},
        PipeCase{"DecryptedManifest", Layout::Db,
                 [](const std::string& s) { return s + "/Manifest.db-decypted"; }, "Contacts(1)"}),
    [](const testing::TestParamInfo<PipeCase>& info) { return info.param.pszName; });

TEST(PipeInPlaceOfInfo, MakesNoBackup) {
  TemporaryFolder folder;
  const std::string strBackup = folder.Path("backup");
  WriteSmallBackup(strBackup, Layout::Db);
  PutPipeAt(strBackup + "/Info.plist");

  const CommandResult scan = RunCommand({"scan", strBackup});
  const CommandResult recovery = RunCommand({"recover", strBackup, folder.Path("out")});
  const CommandResult list = RunCommand({"backups", folder.Path()});

  EXPECT_EQ(2, scan.nExitStatus);
  EXPECT_THAT(scan.strErr, HasSubstr("not a backup"));
  EXPECT_EQ(2, recovery.nExitStatus);
  EXPECT_FALSE(Exists(folder.Path("out")));
  EXPECT_NE(-1, list.nExitStatus);
}
