#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "tests/cli/command.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using Layout = BackupBuilder::Layout;

constexpr char kStem[] = "/Message/ÄnneBerger-STAMP/ÄnneBerger(+493023125001)";
constexpr std::array kTemplates = {"CallHistory", "Notes", "contacts", "Sms", "WhatsApp"};

class RecoverTemplates : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  /// Creates a copy of the program, with or without a folder "template".
  void CopyProgram(bool bWithTemplates) const {
    m_folder.MakeFolder("program");
    fs::copy_file(CommandPath().toStdString(), m_folder.Path("program/orvandel-cli"));
    for (const char* pszName : kTemplates) {
      if (bWithTemplates)
        m_folder.Write(std::string("program/template/") + pszName + ".html",
                       "[{|title|}]\n{|content|}<end>\n");
    }
  }
  CommandResult RunCopy(const std::vector<std::string>& arguments) const {
    QProcess process;
    PrepareCommand(process, arguments);
    process.setProgram(QString::fromStdString(m_folder.Path("program/orvandel-cli")));
    process.start();
    return FinishCommand(process);
  }

  /// The only file below the destination with this path, ignoring time stamps.
  std::string Document(const std::string& strPath) const {
    for (const std::string& strFile : FilesBelow(Out())) {
      if (WithoutStamps("/" + strFile) == strPath) return ReadFile(Out() + "/" + strFile);
    }
    ADD_FAILURE() << "no document " << strPath;
    return {};
  }

  TemporaryFolder m_folder;
};

class ProgramOfLayout : public RecoverTemplates, public testing::WithParamInterface<Layout> {};
class TemplateBeside : public RecoverTemplates, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_P(ProgramOfLayout, WritesWhatTheBackupHolds) {
  CopyProgram(true);
  WriteSmallBackup(Backup(), GetParam());

  const CommandResult result = RunCopy({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  EXPECT_EQ(
      "        To: ÄnneBerger(+493023125001)\n      Data: 2016-05-01 09:13:33\n   Content: Hallo\n\n"
      "      From: ÄnneBerger(+493023125001)\n      Data: 2016-05-01 09:12:33\n   Content: Grüß dich\n\n",
      Document(kStem + std::string(".txt")));
  EXPECT_EQ(
      "[iPhone's Messages of Sample Phone]\n"
      "<div class=\"date\">Date: 2016-05-01 09:13:33 Me:</div>\r\n<div class=\"send_msg\">Hallo</div>\r\n"
      "<div class=\"date\">Date: 2016-05-01 09:12:33 ÄnneBerger:</div>\r\n"
      "<div class=\"recv_msg\">Grüß dich</div>\r\n<end>\n",
      Document(kStem + std::string(".html")));
  EXPECT_EQ(
      "[iPhone's Contacts of Sample Phone]\n"
      "\t<tr><td>ÄnneBerger</td><td>+493023125001</td><td>aenne@example.net</td><td></td><td>example.net</td>"
      "<td></td><td>Gärtnerei</td></tr>\r\n<end>\n",
      Document("/Contacts/STAMP/Contacts.html"));
  // Names of callers are searched only in the columns of the newer layout.
  const std::string strCaller = GetParam() == Layout::Db ? "ÄnneBerger" : "";
  EXPECT_EQ(
      "[iPhone's Call History of Sample Phone]\n"
      "\t<tr><td>" +
          strCaller +
          "</td><td>+493023125001</td><td>2016-05-01 09:12:33</td><td>Incoming</td><td>0</td>"
          "</tr>\r\n<end>\n",
      Document("/CallHistory/CallHistory_STAMP.html"));
  EXPECT_THAT(Document("/Notes/Notes_STAMP.html"),
              AllOf(StartsWith("[iPhone's Notes of Sample Phone]\n\t<tr><td>Einkauf</td><td>2016-05-01 "),
                    HasSubstr("</td><td>Brötchen</td></tr>\r\n<end>\n")));
  EXPECT_TRUE(ReadFile(StorePathIn(Backup(), GetParam(), store_places::messages())) ==
              Document("/Message/sms.db"));
  EXPECT_TRUE(ReadFile(StorePathIn(Backup(), GetParam(), store_places::contacts())) ==
              Document("/Contacts/STAMP/Contacts.db"));
}

INSTANTIATE_TEST_SUITE_P(Layouts, ProgramOfLayout, testing::Values(Layout::Mbdb, Layout::Db),
                         [](const auto& info) { return info.param == Layout::Db ? "Db" : "Mbdb"; });

TEST_P(TemplateBeside, WithoutTheContentTokenExitsWithFourAndWritesNothing) {
  CopyProgram(true);
  const std::string strTemplate =
      m_folder.Write(std::string("program/template/") + GetParam() + ".html", "<html>{|title|}</html>");
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCopy({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(strTemplate));
  EXPECT_THAT(result.strErr, HasSubstr("{|content|}"));
  EXPECT_THAT(FilesBelow(Out()), IsEmpty());
}

TEST_P(TemplateBeside, ThatIsMissingExitsWithFourAndNothingIsWritten) {
  CopyProgram(true);
  const std::string strTemplate = m_folder.Path(std::string("program/template/") + GetParam() + ".html");
  fs::remove(strTemplate);
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCopy({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(ErrorLines(result), ElementsAre(HasSubstr(strTemplate)));
  EXPECT_FALSE(Exists(Out()));
}

INSTANTIATE_TEST_SUITE_P(Templates, TemplateBeside, testing::ValuesIn(kTemplates),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(RecoverTemplates, WithoutAnyNothingIsWritten) {
  CopyProgram(false);
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCopy({"recover", "--no-index", Backup(), Out(), "--only", "Notes"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(ErrorLines(result), ElementsAre(HasSubstr(m_folder.Path("program/template/"))));
  EXPECT_FALSE(Exists(Out()));
}

TEST_F(RecoverTemplates, FilesAloneNeedNoTemplates) {
  CopyProgram(false);
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCopy(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  EXPECT_EQ(small.files.size(), FilesBelow(Out()).size());
}

TEST_F(RecoverTemplates, FilesAloneAreCopiedWithATemplateThatCanNotBeUsed) {
  CopyProgram(true);
  m_folder.Write("program/template/Notes.html", "no token");
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCopy(RecoverFiles(Backup(), Out()));

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(small.files.size(), FilesBelow(Out()).size());
}
