#include <gmock/gmock.h>

#include <QDateTime>
#include <filesystem>

#include "cli/index_text.h"
#include "sample/pictures.h"
#include "tests/cli/command.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using Layout = BackupBuilder::Layout;

constexpr char kGenerator[] = "<meta name=\"generator\" content=\"orvandel-cli\">";
constexpr qint64 kDate = 483786753;  // 2016-05-01T09:12:33Z, in seconds from 2001-01-01

const QByteArray kPicture = sample_media::jpeg(1, 64, 48);

class IndexPageOfRecovery : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }
  std::string Index() const { return Out() + "/index.html"; }

  /// Runs "recover". @return the front page without its style and script; empty without one.
  std::string Recover(const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"recover", Backup(), Out()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    m_result = RunCommand(arguments);
    if (!Exists(Index())) return {};
    const std::string strPage = WithoutStamps(ReadFile(Index()));
    const size_t nStyle = strPage.find("<style>"), nHeadEnd = strPage.find("</head>");
    return nHeadEnd == std::string::npos ? strPage : strPage.substr(0, nStyle) + strPage.substr(nHeadEnd);
  }

  TemporaryFolder m_folder;
  CommandResult m_result;
};

/// A backup with one conversation and one picture, and a name of the device.
void WriteNamed(const std::string& strFolder, const char* pszDevice, const char* pszSender,
                const char* pszPicture) {
  BackupBuilder backup(QString::fromStdString(strFolder), Layout::Db);
  BackupBuilder::Info info;
  info.displayName = pszDevice;
  backup.writeInfo(info);
  backup.addFile("CameraRollDomain", QString("Media/DCIM/100APPLE/") + pszPicture, sample_media::png(1));
  const StorePlace place = store_places::messages();
  MessageStore messages(backup.reserveFile(place.domain, place.relativePath));
  messages.addMessage(messages.addHandle(pszSender), "hello", kDate, false, {messages.addChat(pszSender)});
  messages.close();
  backup.finish();
}

/// The value of the element with the data, as JSON.
std::string DataOf(const std::string& strPage) {
  const std::string strOpen = "<script type=\"application/json\" id=\"data\">";
  const size_t nStart = strPage.find(strOpen) + strOpen.size();
  return strPage.substr(nStart, strPage.find("</script>", nStart) - nStart);
}

struct TextCase {
  const char* pszText;
  const char* pszResult;
};

void PrintTo(const TextCase& text, std::ostream* pStream) {
  *pStream << text.pszText;
}

class TextInHtml : public testing::TestWithParam<TextCase> {};
class TextInScript : public testing::TestWithParam<TextCase> {};
class PathInLink : public testing::TestWithParam<TextCase> {};

}  // namespace

TEST_P(TextInHtml, IsEscaped) {
  EXPECT_EQ(GetParam().pszResult, Html(GetParam().pszText));
}

INSTANTIATE_TEST_SUITE_P(Texts, TextInHtml,
                         testing::Values(TextCase{"Änne", "Änne"},
                                         TextCase{"</h1><script>", "&lt;/h1&gt;&lt;script&gt;"},
                                         TextCase{"a\" onclick=\"b", "a&quot; onclick=&quot;b"},
                                         TextCase{"&lt;", "&amp;lt;"}, TextCase{"{|data|}", "{|data|}"}));

TEST_P(TextInScript, CanNotEndItsElement) {
  EXPECT_EQ(GetParam().pszResult, ScriptString(GetParam().pszText));
}

INSTANTIATE_TEST_SUITE_P(Texts, TextInScript,
                         testing::Values(TextCase{"IMG_0001.JPG", "\"IMG_0001.JPG\""},
                                         TextCase{"</script><!--", "\"\\u003c/script\\u003e\\u003c!--\""},
                                         TextCase{"a\"b\\c&", "\"a\\\"b\\\\c\\u0026\""},
                                         TextCase{"a\u2028b\u2029c", "\"a\\u2028b\\u2029c\""}));

TEST_P(PathInLink, StaysBelowThePage) {
  EXPECT_EQ(GetParam().pszResult, RelativeLink(GetParam().pszText));
}

INSTANTIATE_TEST_SUITE_P(Paths, PathInLink,
                         testing::Values(TextCase{"Notes/Notes_1.html", "./Notes/Notes_1.html"},
                                         TextCase{"Message/A B/Ä.html", "./Message/A%20B/%C3%84.html"},
                                         TextCase{"javascript:alert(1)", "./javascript%3Aalert%281%29"},
                                         TextCase{"//host/x", "./host/x"},
                                         TextCase{"..%2f..\\x", "./..%252f..%5Cx"},
                                         TextCase{"a?b#c\"d'e<f", "./a%3Fb%23c%22d%27e%3Cf"}));

TEST_F(IndexPageOfRecovery, ShowsTheDeviceTheCountsAndTheLinks) {
  WriteSmallBackup(Backup(), Layout::Db);

  const std::string strPage = Recover();

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_THAT(m_result.strErr, IsEmpty());
  EXPECT_THAT(m_result.LastLine(), StartsWith("15 recovered, 0 failed, "));
  EXPECT_THAT(Succeeded(m_result, Out()), Contains("/index.html"));
  EXPECT_THAT(strPage, AllOf(HasSubstr(kGenerator), HasSubstr("<title>Sample Phone</title>"),
                             HasSubstr("<h1><bdi>Sample Phone</bdi></h1>"), HasSubstr("<dd>iPhone7,2</dd>"),
                             HasSubstr("<dt>Backup made</dt>"), Not(HasSubstr("<dt>Failed</dt>"))));
  EXPECT_THAT(strPage, HasSubstr(QDateTime::currentDateTime().toString("yyyy-MM-dd").toStdString()));
  EXPECT_THAT(strPage, AllOf(HasSubstr("<li><b>2</b> <span>Camera Roll</span></li>"),
                             HasSubstr("<li><b>1</b> <span>App Videos</span></li>"),
                             HasSubstr("<li><b>0</b> <span>WhatsApp</span></li>"),
                             HasSubstr("<a href=\"./Contacts/STAMP/Contacts.html\"><b>1</b> "),
                             HasSubstr("<a href=\"./CallHistory/CallHistory_STAMP.html\"><b>1</b> "),
                             HasSubstr("<a href=\"./Notes/Notes_STAMP.html\"><b>1</b> ")));
  EXPECT_THAT(
      strPage,
      HasSubstr("<li><a href=\"./Message/%C3%84nneBerger-STAMP/%C3%84nneBerger%28%2B493023125001%29.html\">"
                "<bdi>ÄnneBerger</bdi></a> <bdi class=\"number\">+493023125001</bdi> "
                "<span>2 messages</span> <time>2016-05-01 09:13</time></li>\n"));
}

TEST_F(IndexPageOfRecovery, ListsTheCopiedFilesByFolder) {
  WriteSmallBackup(Backup(), Layout::Db);

  const std::string strPage = Recover();

  EXPECT_EQ(
      "{\"folders\":[{\"path\":[\"Camera Roll\"],\"files\":[\"IMG_0001.PNG\",\"IMG_0002.MOV\"]},\n"
      "{\"path\":[\"Photo Stream\"],\"files\":[\"IMG_0003.JPG\"]},\n"
      "{\"path\":[\"App Photos\",\"example.Snap\"],\"files\":[\"cat.GIF\"]},\n"
      "{\"path\":[\"App Video\",\"example.Radio\"],\"files\":[\"show.AVI\"]},\n"
      "{\"path\":[\"WhatsApp Attachments\"],\"files\":[\"b.JPG\"]},\n"
      "{\"path\":[\"Message Attachments\"],\"files\":[\"laugh.GIF\"]}]}",
      DataOf(strPage));
}

TEST_F(IndexPageOfRecovery, LinksLeadToFilesThatExist) {
  WriteSmallBackup(Backup(), Layout::Db);
  Recover();
  const std::string strPage = ReadFile(Index());

  int nLinks = 0;
  const std::string strOpen = " href=\"./";
  for (size_t nAt = strPage.find(strOpen); nAt != std::string::npos; nAt = strPage.find(strOpen, nAt)) {
    nAt += strOpen.size();
    const std::string strLink = strPage.substr(nAt, strPage.find('"', nAt) - nAt);
    const std::string strFile = QByteArray::fromPercentEncoding(strLink.c_str()).toStdString();
    EXPECT_TRUE(Exists(Out() + "/" + strFile)) << strFile;
    ++nLinks;
  }
  EXPECT_EQ(4, nLinks);
}

TEST_F(IndexPageOfRecovery, HostileNamesStayTexts) {
  WriteNamed(Backup(), "</title><script>alert(1)</script>", "\"><script>alert(2)</script>",
             "</script><script>alert(3)<!--.PNG");

  const std::string strPage = Recover();

  EXPECT_THAT(strPage, Not(HasSubstr("<script>alert")));
  EXPECT_THAT(strPage, Not(HasSubstr("<!--.PNG")));
  EXPECT_THAT(strPage, HasSubstr("<bdi>&quot;&gt;&lt;script&gt;alert(2)&lt;/script&gt;</bdi>"));
  EXPECT_THAT(DataOf(strPage), StartsWith("{\"folders\":[{\"path\":[\"Camera Roll\"],\"files\":[\""));
  // The data, and nothing else.
  size_t nScripts = 0;
  for (size_t nAt = strPage.find("<script"); nAt != std::string::npos; nAt = strPage.find("<script", nAt + 1))
    ++nScripts;
  EXPECT_EQ(1u, nScripts);
}

TEST_F(IndexPageOfRecovery, ConversationsComeLatestFirst) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Mbdb);
  backup.writeInfo({});
  const StorePlace place = store_places::messages();
  MessageStore messages(backup.reserveFile(place.domain, place.relativePath));
  for (const auto& [pszSender, nDay] : {std::pair("+1", 2), std::pair("+2", 3), std::pair("+3", 1)})
    messages.addMessage(messages.addHandle(pszSender), "hello", kDate + 86400 * nDay, false,
                        {messages.addChat(pszSender)});
  messages.close();
  backup.finish();

  const std::string strPage = Recover();

  const size_t nFirst = strPage.find("<bdi>+2</bdi>"), nSecond = strPage.find("<bdi>+1</bdi>"),
               nThird = strPage.find("<bdi>+3</bdi>");
  EXPECT_LT(nFirst, nSecond);
  EXPECT_LT(nSecond, nThird);
  EXPECT_NE(std::string::npos, nThird);
}

TEST_F(IndexPageOfRecovery, WithOnlyShowsTheNamedCategoriesAlone) {
  WriteSmallBackup(Backup(), Layout::Db);

  const std::string strPage = Recover({"--only", "Notes,Photo Stream"});

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_THAT(strPage, AllOf(HasSubstr("<span>Notes</span>"), HasSubstr("<span>Photo Stream</span>"),
                             Not(HasSubstr("<span>Camera Roll</span>")), Not(HasSubstr("./Contacts"))));
}

TEST_F(IndexPageOfRecovery, CountsFailures) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out/Camera Roll", "a file where the folder should be");

  const std::string strPage = Recover();

  EXPECT_EQ(4, m_result.nExitStatus);
  EXPECT_THAT(strPage, HasSubstr("<dd><strong>2 items</strong>"));
  EXPECT_THAT(strPage, HasSubstr("<li><b>0</b> of 2 <span>Camera Roll</span></li>"));
}

TEST_F(IndexPageOfRecovery, IsNotWrittenWithNoIndex) {
  WriteSmallBackup(Backup(), Layout::Db);

  Recover({"--no-index"});

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_THAT(m_result.LastLine(), StartsWith("14 recovered, "));
  EXPECT_THAT(FilesBelow(Out()), Not(Contains("index.html")));
}

TEST_F(IndexPageOfRecovery, IsNotWrittenWhenNothingElseIs) {
  WriteSmallBackup(Backup(), Layout::Db);

  Recover({"--only", "WhatsApp"});

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_THAT(FilesBelow(Out()), IsEmpty());
}

TEST_F(IndexPageOfRecovery, SecondRunReplacesThePageOfTheFirst) {
  WriteSmallBackup(Backup(), Layout::Db);
  Recover({"--only", "Notes"});

  const std::string strPage = Recover({"--only", "Photo Stream"});

  EXPECT_THAT(strPage, AllOf(HasSubstr("Photo Stream"), Not(HasSubstr("./Notes/"))));
  EXPECT_EQ(3u, FilesBelow(Out()).size());
}

TEST_F(IndexPageOfRecovery, IndexOfSomeoneElseStays) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out/index.html", "mine");
  Recover({"--only", "Notes"});

  Recover({"--only", "Notes"});

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_EQ("mine", ReadFile(Index()));
  EXPECT_THAT(ReadFile(Out() + "/index(1).html"), HasSubstr(kGenerator));
  EXPECT_FALSE(Exists(Out() + "/index(2).html"));
}

TEST_F(IndexPageOfRecovery, FolderInItsPlaceStays) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out/index.html");

  RunCommand({"recover", Backup(), Out(), "--only", "Notes"});

  EXPECT_TRUE(fs::is_directory(Index()));
  EXPECT_THAT(ReadFile(Out() + "/index(1).html"), HasSubstr(kGenerator));
}

TEST_F(IndexPageOfRecovery, LinkInItsPlaceIsNotFollowed) {
  WriteSmallBackup(Backup(), Layout::Db);
  const std::string strTarget = m_folder.Write("target.html", kGenerator);
  m_folder.MakeFolder("out");
  fs::create_symlink(strTarget, Index());
  const std::string strBefore = ReadFile(strTarget);

  Recover({"--only", "Notes"});

  EXPECT_EQ(0, m_result.nExitStatus);
  EXPECT_EQ(strBefore, ReadFile(strTarget));
  EXPECT_TRUE(fs::is_symlink(Index()));
  EXPECT_THAT(ReadFile(Out() + "/index(1).html"), HasSubstr(kGenerator));
}

TEST_F(IndexPageOfRecovery, DanglingLinkInItsPlaceIsNotFollowed) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  fs::create_symlink(m_folder.Path("nowhere.html"), Index());

  RunCommand({"recover", Backup(), Out(), "--only", "Notes"});

  EXPECT_FALSE(Exists(m_folder.Path("nowhere.html")));
  EXPECT_TRUE(Exists(Out() + "/index(1).html"));
}

TEST_F(IndexPageOfRecovery, ThatCanNotBeWrittenEndsWithStatusFourAndLeavesNoPart) {
  WritePhotos(Backup(), 1, kPicture);
  QProcess process;
  PrepareCommand(process, {});
  // No file may have more than 4096 bytes, in blocks of 512.
  process.start("sh", Arguments({"-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"", "sh",
                                 CommandPath().toStdString(), "recover", Backup(), Out()}));

  const CommandResult result = FinishCommand(process);

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strOut, HasSubstr("Failed\t" + Index() + "\tFile too large\n"));
  EXPECT_THAT(result.LastLine(), StartsWith("1 recovered, 1 failed, "));
  EXPECT_THAT(FilesBelow(Out()), ElementsAre("Camera Roll/IMG_00000.JPG"));
}

TEST_F(IndexPageOfRecovery, IsReportedInJsonAndCountsItsBytes) {
  WritePhotos(Backup(), 1, kPicture);

  Recover({"--json"});

  EXPECT_EQ(R"({"path":")" + Index() + R"(","status":"Success"})", m_result.Line(1));
  EXPECT_THAT(m_result.LastLine(),
              HasSubstr("{\"bytes\":" +
                        std::to_string(static_cast<size_t>(kPicture.size()) + fs::file_size(Index())) + ","));
}

TEST_F(IndexPageOfRecovery, WithoutItsTemplateNothingIsWritten) {
  WritePhotos(Backup(), 1, kPicture);
  m_folder.MakeFolder("program");
  fs::copy_file(CommandPath().toStdString(), m_folder.Path("program/orvandel-cli"));
  QProcess process;
  PrepareCommand(process, {"recover", Backup(), Out(), "--only", "Camera Roll"});
  process.setProgram(QString::fromStdString(m_folder.Path("program/orvandel-cli")));
  process.start();

  const CommandResult result = FinishCommand(process);

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr(m_folder.Path("program/template/index.html")));
  EXPECT_FALSE(Exists(Out()));
}
