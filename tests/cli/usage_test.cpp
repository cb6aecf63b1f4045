#include <gmock/gmock.h>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct WrongUsage {
  const char* pszName;
  std::vector<std::string> arguments;
  const char* pszComplaint;
};

void PrintTo(const WrongUsage& usage, std::ostream* pStream) {
  *pStream << usage.pszName;
}

class UsageIsWrong : public testing::TestWithParam<WrongUsage> {};

struct Help {
  const char* pszName;
  std::vector<std::string> arguments;
  std::vector<const char*> mentioned;
};

void PrintTo(const Help& help, std::ostream* pStream) {
  *pStream << help.pszName;
}

class HelpIsShown : public testing::TestWithParam<Help> {};

class VersionIsShown : public testing::TestWithParam<std::vector<std::string>> {};

template <typename Row>
std::string NameOf(const testing::TestParamInfo<Row>& info) {
  return info.param.pszName;
}

/// Runs it with a full standard output.
CommandResult RunIntoFullDevice(const std::vector<std::string>& arguments) {
  QProcess process;
  PrepareCommand(process, arguments);
  process.setStandardOutputFile("/dev/full");
  process.start();
  return FinishCommand(process);
}

}  // namespace

TEST_P(UsageIsWrong, ExitsWithOneAndALine) {
  const CommandResult result = RunCommand(GetParam().arguments);

  EXPECT_EQ(1, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(GetParam().pszComplaint));
  EXPECT_THAT(result.strOut, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, UsageIsWrong,
    testing::Values(
        WrongUsage{"NoCommand", {}, "no command"}, WrongUsage{"UnknownCommand", {"frob"}, "'frob'"},
        WrongUsage{"UnknownOption", {"scan", "/tmp", "--bogus"}, "bogus"},
        WrongUsage{"OptionOfNoCommand", {"--bogus"}, "bogus"},
        WrongUsage{"OptionOfAnotherCommand", {"scan", "/tmp", "--only", "Notes"}, "only"},
        WrongUsage{"ManifestWithRecover", {"recover", "/tmp", "/tmp/x", "--manifest"}, "manifest"},
        WrongUsage{"ScanWithoutBackup", {"scan"}, "'scan' takes 1"},
        WrongUsage{"ScanOfTwoBackups", {"scan", "/tmp", "/tmp"}, "'scan' takes 1"},
        WrongUsage{"BackupsOfTwoFolders", {"backups", "/tmp", "/tmp"}, "'backups' takes"},
        WrongUsage{"RecoverWithoutDestination", {"recover", "/tmp"}, "'recover' takes 2"},
        WrongUsage{"EmptyDestination", {"recover", "/tmp", ""}, "'recover' takes 2"},
        WrongUsage{
            "UnknownCategory", {"recover", "/tmp", "/tmp/x", "--only", "Notes,Foo"}, "no category 'Foo'"},
        WrongUsage{"EmptyCategory", {"recover", "/tmp", "/tmp/x", "--only", ""}, "no category ''"},
        WrongUsage{"FilesWithoutBackup", {"files"}, "'files' takes at least 1"},
        WrongUsage{"EmptyPattern", {"files", "/tmp", ""}, "'files' takes at least 1"},
        WrongUsage{"DomainsOfTwoBackups", {"domains", "/tmp", "/tmp"}, "'domains' takes 1"},
        WrongUsage{"VerifyOfTwoBackups", {"verify", "/tmp", "/tmp"}, "'verify' takes 1"},
        WrongUsage{"NewerThanAWord", {"files", "/tmp", "--newer", "now"}, "--newer: 'now'"},
        WrongUsage{"LargerThanAWord", {"files", "/tmp", "--larger", "big"}, "--larger: 'big'"},
        WrongUsage{"EmptyTo", {"files", "/tmp", "--to", ""}, "--to requires a folder"},
        WrongUsage{"ReplaceWithoutTo", {"files", "/tmp", "--replace"}, "--replace requires --to"},
        WrongUsage{"ResumeWithoutTo", {"files", "/tmp", "--resume"}, "--resume requires --to"},
        WrongUsage{
            "NamesWithTo", {"files", "/tmp", "--to", "/tmp/x", "--names"}, "--names can't be combined"},
        WrongUsage{
            "CountWithTo", {"files", "/tmp", "--to", "/tmp/x", "--count"}, "--count can't be combined"},
        WrongUsage{"OnlyWithoutValue", {"recover", "/tmp", "/tmp/x", "--only"}, "only"}),
    NameOf<WrongUsage>);

TEST_P(HelpIsShown, OnStandardOutputWithoutDoingAnything) {
  const CommandResult result = RunCommand(GetParam().arguments);

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  for (const char* pszMentioned : GetParam().mentioned) EXPECT_THAT(result.strOut, HasSubstr(pszMentioned));
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, HelpIsShown,
    testing::Values(Help{"Alone",
                         {"--help"},
                         {"backups [FOLDER]", "scan BACKUP", "recover BACKUP DESTINATION", "Exit status"}},
                    Help{"Short", {"-h"}, {"Exit status"}},
                    Help{"OfBackups", {"backups", "--help"}, {"backups [FOLDER]", "--json", "--quiet"}},
                    Help{"OfScan", {"scan", "--help"}, {"scan BACKUP", "--json", "--quiet", "--manifest"}},
                    Help{"OfRecover",
                         {"recover", "--help"},
                         {"recover BACKUP DESTINATION", "--json", "--quiet", "--only"}},
                    Help{"OfFiles",
                         {"files", "--help"},
                         {"files BACKUP [PATTERN...]", "--domain", "--resume", "Examples:"}},
                    Help{"OfDomains", {"domains", "--help"}, {"domains BACKUP", "--json", "Examples:"}},
                    Help{"OfVerify", {"verify", "--help"}, {"verify BACKUP", "--json", "Examples:"}},
                    Help{"BeforeTheCommand", {"--help", "scan"}, {"scan BACKUP"}}),
    NameOf<Help>);

TEST_P(VersionIsShown, AsOneLine) {
  const CommandResult result = RunCommand(GetParam());

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre("orvandel-cli " ORVANDEL_VERSION));
  EXPECT_THAT(result.strErr, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(CommandLine, VersionIsShown,
                         testing::Values(std::vector<std::string>{"--version"},
                                         std::vector<std::string>{"backups", "--version"},
                                         std::vector<std::string>{"scan", "--version"},
                                         std::vector<std::string>{"recover", "--version"}));

TEST(StandardOutput, ThatIsFullEndsEveryCommandWithFour) {
  if (!Exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  TemporaryFolder folder;
  const std::string strBackup = folder.Path("backups/one");
  WriteSmallBackup(strBackup, BackupBuilder::Layout::Db);
  const std::vector<std::vector<std::string>> commands = {
      {"--help"},
      {"--version"},
      {"scan", "--help"},
      {"backups", folder.Path("backups")},
      {"scan", strBackup},
      {"backups", folder.Path("backups"), "--json"},
      {"scan", strBackup, "--json"},
      {"recover", strBackup, folder.Path("out")},
      {"recover", strBackup, folder.Path("out2"), "--json"},
      {"files", strBackup},
      {"files", strBackup, "--json"},
      {"files", strBackup, "--names"},
      {"files", strBackup, "--to", folder.Path("out3")},
      {"domains", strBackup},
      {"verify", strBackup}};

  for (const std::vector<std::string>& arguments : commands) {
    const CommandResult result = RunIntoFullDevice(arguments);

    SCOPED_TRACE(arguments.front() + " " + arguments.back());
    EXPECT_EQ(4, result.nExitStatus);
    EXPECT_THAT(result.strErr, HasSubstr("standard output: No space left on device"));
  }
}

TEST(StandardOutput, ThatIsFullKeepsNoFileFromBeingRecovered) {
  if (!Exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  TemporaryFolder folder;
  const SmallBackup small = WriteSmallBackup(folder.Path("backup"), BackupBuilder::Layout::Db);

  RunIntoFullDevice(RecoverFiles(folder.Path("backup"), folder.Path("out")));

  EXPECT_EQ(small.files.size(), FilesBelow(folder.Path("out")).size());
}

TEST(StandardError, NamesTheProgramFirst) {
  const CommandResult result = RunCommand({"scan", "/nonexistent/backup"});

  EXPECT_THAT(result.strErr, StartsWith("orvandel-cli: /nonexistent/backup: "));
}
