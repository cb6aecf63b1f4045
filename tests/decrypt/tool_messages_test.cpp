// The tool's progress, help and version output.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/decrypt/tool_fixture.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class DecryptToolMessages : public DecryptTool {};

}  // namespace

TEST_F(DecryptToolMessages, CountsUpToTheNumberOfFiles) {
  const KnownBackup known = WriteEncryptedBackup(Backup(), Ios10());

  const std::vector<long long> counts = Decrypt().Counts();

  ASSERT_FALSE(counts.empty());
  EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
  EXPECT_TRUE(std::adjacent_find(counts.begin(), counts.end()) == counts.end()) << "a number comes twice";
  EXPECT_EQ(static_cast<long long>(known.files.size()), counts.back());
}

TEST_F(DecryptToolMessages, CountsInSomeHundredStepsAtMost) {
  for (const int nFiles : {1, 199, 200, 201, 1000, 3001}) {
    const TemporaryFolder folder;
    BackupBuilder backup(QString::fromStdString(folder.Path("backup")), BackupBuilder::Layout::Mbdb);
    backup.encrypt({kPassword, Encryption::Age::BeforeIos10, 20, 1});
    for (int i = 0; i < nFiles; ++i) backup.addFile("HomeDomain", QString::number(i), "text");
    backup.finish();
    folder.MakeFolder("out");

    const std::vector<long long> counts =
        RunTool({folder.Path("backup"), folder.Path("out"), kPassword}).Counts();

    ASSERT_FALSE(counts.empty());
    EXPECT_LE(counts.size(), 250u);
    EXPECT_GE(counts.size(), static_cast<size_t>(std::min(nFiles, 100)));
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
    EXPECT_EQ(nFiles, counts.back());
    EXPECT_EQ(1, std::count(counts.begin(), counts.end(), nFiles));
  }
}

TEST_F(DecryptToolMessages, CountsNoFilesOfAnEmptyBackup) {
  BackupBuilder backup(QString::fromStdString(Backup()), BackupBuilder::Layout::Db);
  backup.encrypt({kPassword, Encryption::Age::From102, 20, 1});
  backup.finish();

  const ToolResult result = Decrypt();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.out, ElementsAre("Count:0"));
}

TEST_F(DecryptToolMessages, ShowsItsHelpAndVersion) {
  const ToolResult help = RunTool({"--help"}), version = RunTool({"--version"}), nothing = RunTool({});

  EXPECT_EQ(0, help.nExitStatus);
  EXPECT_THAT(help.out, testing::Contains(HasSubstr("CheckPasswd")));
  EXPECT_EQ(0, version.nExitStatus);
  EXPECT_THAT(version.out, ElementsAre(HasSubstr(ORVANDEL_VERSION)));
  EXPECT_EQ(2, nothing.nExitStatus);
  EXPECT_THAT(nothing.out, IsEmpty());
  EXPECT_THAT(nothing.err, Not(IsEmpty()));
}
