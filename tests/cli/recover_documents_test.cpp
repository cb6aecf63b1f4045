#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "tests/cli/command.h"
#include "tests/cli/mount.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::AllOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using Layout = BackupBuilder::Layout;

constexpr qint64 kDate = 483786753;  // 2016-05-01T09:12:33Z, in seconds from 2001-01-01
constexpr char kStem[] = "/Message/ÄnneBerger-STAMP/ÄnneBerger(+493023125001)";

class RecoverDocuments : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  TemporaryFolder m_folder;
};

class DocumentsOfLayout : public RecoverDocuments, public testing::WithParamInterface<Layout> {};

struct OnlyCase {
  const char* pszName;
  const char* pszLabels;
  std::vector<std::string> documents;  ///< in order
};

void PrintTo(const OnlyCase& only, std::ostream* pStream) {
  *pStream << only.pszLabels;
}

class DocumentsOnly : public RecoverDocuments, public testing::WithParamInterface<OnlyCase> {};

const std::vector<std::string>& AllDocuments() {
  static const std::vector<std::string> documents = {
      kStem + std::string(".txt"),   kStem + std::string(".html"),    "/Message/sms.db",
      "/Contacts/STAMP/Contacts.db", "/Contacts/STAMP/Contacts.html", "/CallHistory/CallHistory_STAMP.html",
      "/Notes/Notes_STAMP.html"};
  return documents;
}

/// A backup with only a number of conversations, each with one phone number and one message.
void WriteConversations(const std::string& strFolder, const std::vector<std::string>& senders,
                        const std::string& strText = "hello") {
  BackupBuilder backup(QString::fromStdString(strFolder), Layout::Mbdb);
  backup.writeInfo({});
  const StorePlace place = store_places::messages();
  MessageStore messages(backup.reserveFile(place.domain, place.relativePath));
  for (const std::string& strSender : senders) {
    const qint64 nHandle = messages.addHandle(QString::fromStdString(strSender));
    messages.addMessage(nHandle, QString::fromStdString(strText), kDate, false,
                        {messages.addChat(QString::fromStdString(strSender))});
  }
  messages.close();
  backup.finish();
}

}  // namespace

TEST_P(DocumentsOfLayout, ComeAfterTheFilesInTheirOrder) {
  const SmallBackup small = WriteSmallBackup(Backup(), GetParam());
  std::vector<std::string> expected;
  for (const SmallBackup::File& file : small.files) expected.push_back(file.strTarget);
  expected.insert(expected.end(), AllDocuments().begin(), AllDocuments().end());

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(Succeeded(result, Out()), ElementsAreArray(expected));
  EXPECT_THAT(result.LastLine(), StartsWith("14 recovered, 0 failed, "));
  EXPECT_EQ(15u, result.Lines().size());
}

TEST_P(DocumentsOfLayout, AreReportedUnderTheirRealPaths) {
  WriteSmallBackup(Backup(), GetParam());

  const CommandResult result = RunCommand({"recover", Backup(), Out()});

  std::vector<std::string> told;
  for (const std::string& strLine : result.Lines()) {
    if (strLine.rfind("Success\t", 0) == 0) told.push_back(strLine.substr(8 + Out().size() + 1));
  }
  std::sort(told.begin(), told.end());
  EXPECT_THAT(told, ElementsAreArray(FilesBelow(Out())));
}

INSTANTIATE_TEST_SUITE_P(Layouts, DocumentsOfLayout, testing::Values(Layout::Mbdb, Layout::Db),
                         [](const auto& info) { return info.param == Layout::Db ? "Db" : "Mbdb"; });

TEST_P(DocumentsOnly, WritesTheNamedCategoriesAlone) {
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), Out(), "--only", GetParam().pszLabels});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(Succeeded(result, Out()), ElementsAreArray(GetParam().documents));
  EXPECT_EQ(GetParam().documents.size(), FilesBelow(Out()).size());
  EXPECT_THAT(result.LastLine(),
              StartsWith(std::to_string(GetParam().documents.size()) + " recovered, 0 failed"));
}

INSTANTIATE_TEST_SUITE_P(
    Labels, DocumentsOnly,
    testing::Values(OnlyCase{"Message", "Message", {AllDocuments()[0], AllDocuments()[1], AllDocuments()[2]}},
                    OnlyCase{"Contacts", "Contacts", {AllDocuments()[3], AllDocuments()[4]}},
                    OnlyCase{"CallHistory", "Call History", {AllDocuments()[5]}},
                    OnlyCase{"Notes", "Notes", {AllDocuments()[6]}}, OnlyCase{"WhatsApp", "WhatsApp", {}},
                    OnlyCase{"SeveralInAnyOrder",
                             "notes , CONTACTS",
                             {AllDocuments()[3], AllDocuments()[4], AllDocuments()[6]}},
                    OnlyCase{"WithAFileCategory",
                             "Notes,Photo Stream",
                             {"/Photo Stream/IMG_0003.JPG", AllDocuments()[6]}},
                    OnlyCase{"Twice", "Notes,Notes", {AllDocuments()[6]}}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(RecoverDocuments, ConversationsComeInTheOrderOfTheirKeys) {
  WriteConversations(Backup(), {"+9", "+1", "zoe@example.net", "+5"});

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Message"});

  const std::string strFolder = "/Message/Unknown-STAMP/Unknown";
  EXPECT_THAT(Succeeded(result, Out()),
              ElementsAre(strFolder + "(+9).txt", strFolder + "(+9).html", strFolder + "(+1).txt",
                          strFolder + "(+1).html", strFolder + "(zoe@example.net).txt",
                          strFolder + "(zoe@example.net).html", strFolder + "(+5).txt",
                          strFolder + "(+5).html", "/Message/sms.db"));
}

TEST_F(RecoverDocuments, JsonHasAnObjectForEachDocument) {
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out(), "--json", "--only",
                                           "Message,Contacts,Call History,Notes,WhatsApp"});

  const std::vector<std::string> lines = result.Lines();
  EXPECT_EQ(0, result.nExitStatus);
  ASSERT_EQ(AllDocuments().size() + 1, lines.size());
  for (size_t i = 0; i < AllDocuments().size(); ++i)
    EXPECT_EQ(R"({"path":")" + Out() + AllDocuments()[i] + R"(","status":"Success"})",
              WithoutStamps(lines[i]));
  size_t nBytes = 0;
  for (const std::string& strFile : FilesBelow(Out())) nBytes += fs::file_size(Out() + "/" + strFile);
  EXPECT_EQ(R"({"bytes":)" + std::to_string(nBytes) + R"(,"destination":")" + Out() +
                R"(","failed":0,"succeeded":7})",
            lines.back());
}

TEST_F(RecoverDocuments, QuietPrintsTheTotalsAlone) {
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out(), "--quiet"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(), ElementsAre(StartsWith("14 recovered, 0 failed, ")));
  EXPECT_EQ(14u, FilesBelow(Out()).size());
}

TEST_F(RecoverDocuments, EmptyCategoriesWriteNothing) {
  WritePhotos(Backup(), 1, "picture");

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Message,Contacts,Notes"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(FilesBelow(Out()), IsEmpty());
}

TEST_F(RecoverDocuments, SecondRunReplacesTheMessageStoreAndKeepsTheRest) {
  WriteConversations(Backup(), {"+1"});
  RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Message"});
  const std::vector<std::string> first = FilesBelow(Out());
  WriteFile(Out() + "/Message/sms.db", "of another day");

  RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Message"});

  EXPECT_THAT(FilesBelow(Out()), AllOf(SizeIs(5), IsSupersetOf(first)));
  EXPECT_THAT(ReadFile(Out() + "/Message/sms.db"), StartsWith("SQLite format 3"));
}

TEST_F(RecoverDocuments, FileInPlaceOfACategoryFailsItsDocumentsAndTheRestIsWritten) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.Write("out/Notes", "mine");

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Contacts,Notes,Call History"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(WithoutStamps(result.strOut), HasSubstr("Failed\t" + Out() + "/Notes/Notes_STAMP.html\t"));
  EXPECT_THAT(result.LastLine(), StartsWith("3 recovered, 1 failed, "));
  EXPECT_EQ("mine", ReadFile(Out() + "/Notes"));
}

TEST_F(RecoverDocuments, LinkIntoTheBackupFailsItsDocumentsAndTheBackupStays) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  fs::create_directory_symlink(Backup(), Out() + "/Message");
  const auto before = TreeOf(Backup());

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Message,Notes"});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.strOut, HasSubstr("inside the backup"));
  EXPECT_THAT(Succeeded(result, Out()), ElementsAre("/Notes/Notes_STAMP.html"));
  EXPECT_TRUE(before == TreeOf(Backup()));
}

TEST_F(RecoverDocuments, HostileSendersWriteNothingOutsideTheDestination) {
  WriteConversations(Backup(), {"/../../../../x", "../../y", "+1", "a/b"});

  const CommandResult result =
      RunCommand({"recover", "--no-index", Backup(), m_folder.Path("a/b/out"), "--only", "Message"});

  EXPECT_EQ(0, result.nExitStatus);
  for (const char* pszStem : {"Unknown(+1)", "Unknown(a_b)", "Unknown(_.._.._.._.._x)", "Unknown(.._.._y)"})
    EXPECT_THAT(
        WithoutStamps(result.strOut),
        HasSubstr("Success\t" + m_folder.Path("a/b/out/Message/Unknown-STAMP/") + pszStem + ".html\n"));
  for (const std::string& strFile : FilesBelow(m_folder.Path())) {
    if (strFile.rfind("backup/", 0) != 0) {
      EXPECT_THAT(strFile, StartsWith("a/b/out/Message/"));
    }
  }
}

TEST_F(RecoverDocuments, MessageStoreOfAnEarlierRunStaysUnlessMessagesAreWanted) {
  WriteSmallBackup(Backup(), Layout::Db);
  WriteFile(Out() + "/Message/sms.db", "of an earlier run");

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out(), "--only", "Notes"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("of an earlier run", ReadFile(Out() + "/Message/sms.db"));
}

TEST_F(RecoverDocuments, OnAFullDiskFailWithTheReason) {
  WriteConversations(Backup(), {"+1", "+2", "+3", "+4"}, std::string(30000, 'x'));
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a small file system";

  const CommandResult result = RunOnMount("size=64k", Out(), m_folder.Path("kept"),
                                          {"recover", "--no-index", Backup(), Out(), "--only", "Message"});

  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.strOut, HasSubstr("\tNo space left on device\n"));
  const std::string strFolder = "/Message/Unknown-STAMP/Unknown";
  EXPECT_THAT(Succeeded(result, Out()), AllOf(Not(IsEmpty()), SizeIs(testing::Lt(4u))));
  EXPECT_EQ(strFolder + "(+1).txt", Succeeded(result, Out()).front());
  // Incompletely written documents are removed.
  EXPECT_EQ(Succeeded(result, Out()).size(), FilesBelow(m_folder.Path("kept")).size());
}

TEST_F(RecoverDocuments, OnAReadOnlyDiskAllFail) {
  WriteSmallBackup(Backup(), Layout::Db);
  m_folder.MakeFolder("out");
  if (!MayMount(Out())) GTEST_SKIP() << "this system lets nobody mount a read-only folder";

  const CommandResult result =
      RunOnMount("ro", Out(), m_folder.Path("kept"), {"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus) << result.strErr;
  EXPECT_THAT(Succeeded(result, Out()), IsEmpty());
  EXPECT_THAT(result.LastLine(), StartsWith("0 recovered, "));
  EXPECT_THAT(FilesBelow(m_folder.Path("kept")), IsEmpty());
}
