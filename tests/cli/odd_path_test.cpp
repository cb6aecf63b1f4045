#include <gmock/gmock.h>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Contains;

namespace {

using Layout = BackupBuilder::Layout;

/// A folder name with characters that are special in URIs, shells or format strings.
struct OddName {
  const char* pszName;
  const char* pszFolder;
};

void PrintTo(const OddName& name, std::ostream* pStream) {
  *pStream << name.pszName;
}

class OddBackupPath : public testing::TestWithParam<std::tuple<OddName, Layout>> {
 protected:
  void SetUp() override {
    const Layout layout = std::get<1>(GetParam());
    WriteSmallBackup(Plain(), layout);
    WriteSmallBackup(Odd(), layout);
  }

  std::string Plain() const { return m_folder.Path("plain"); }
  std::string Odd() const { return m_folder.Path(std::get<0>(GetParam()).pszFolder); }

  TemporaryFolder m_folder;
};

/// Files below a folder with their bytes, without the copies of stores and without time stamps in names.
std::map<std::string, std::string> FilesWithBytes(const std::string& strFolder) {
  std::map<std::string, std::string> files;
  for (const std::string& strFile : FilesBelow(strFolder))
    files[strFile] = ReadFile(strFolder + "/" + strFile);
  return files;
}

}  // namespace

TEST_P(OddBackupPath, ScansLikeAPlainPath) {
  const CommandResult plain = RunCommand({"scan", Plain()});

  const CommandResult odd = RunCommand({"scan", Odd()});

  EXPECT_EQ(0, odd.nExitStatus);
  EXPECT_EQ("", odd.strErr);
  EXPECT_THAT(odd.Lines(), Contains("Contacts(1)"));
  EXPECT_THAT(odd.Lines(), Contains("Camera Roll(2)"));
  EXPECT_EQ(plain.strOut, odd.strOut);
}

TEST_P(OddBackupPath, FilesAreRecoveredAsFromAPlainPath) {
  RunCommand(RecoverFiles(Plain(), m_folder.Path("out/plain")));

  const CommandResult odd = RunCommand(RecoverFiles(Odd(), m_folder.Path("out/odd")));

  EXPECT_EQ(0, odd.nExitStatus);
  EXPECT_EQ("", odd.strErr);
  const auto files = FilesWithBytes(m_folder.Path("out/odd"));
  EXPECT_EQ(7u, files.size());
  EXPECT_TRUE(FilesWithBytes(m_folder.Path("out/plain")) == files);
}

TEST_P(OddBackupPath, DocumentsAreRecovered) {
  const CommandResult odd =
      RunCommand({"recover", "--no-index", Odd(), m_folder.Path("out"), "--only", "Message,Contacts"});

  EXPECT_EQ(0, odd.nExitStatus);
  EXPECT_EQ("", odd.strErr);
  EXPECT_TRUE(Exists(m_folder.Path("out/Message/sms.db")));
}

INSTANTIATE_TEST_SUITE_P(
    Names, OddBackupPath,
    testing::Combine(testing::Values(OddName{"SingleQuotes", "it's 'mine'"},
                                     OddName{"DoubleQuotes", "the \"old\" one"}, OddName{"Hash", "no #1 #"},
                                     OddName{"QuestionMark", "really?mode=rw&x=y"},
                                     OddName{"Percent", "100%, %41 %2F %s %n"},
                                     OddName{"Blanks", " two  blanks "}, OddName{"All", "a '\"#?% \"'"}),
                     testing::Values(Layout::Mbdb, Layout::Db)),
    [](const testing::TestParamInfo<std::tuple<OddName, Layout>>& info) {
      return std::string(std::get<0>(info.param).pszName) +
             (std::get<1>(info.param) == Layout::Mbdb ? "Mbdb" : "Db");
    });
