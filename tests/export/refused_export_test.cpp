#include <gmock/gmock.h>
#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/backup/tree_state.h"
#include "tests/export/recovery_fixture.h"
#include "tests/scan_support.h"

using namespace orvandel;
using testing::AllOf;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

/// A recovery into folders where it can't or mustn't write.
class RefusedExport : public RecoveryTest {
 protected:
  void RecoverMessage(const std::string& strName, const std::string& strSender) {
    const MessageMap map = {{kHandle, {Message(kReceived, "hello", 0, strName, strSender)}}};
    m_recovery.RecoveryMsg(&map.at(kHandle).front(), map);
  }
  void RecoverChat(const std::string& strName, const std::string& strPhone, const std::string& strTitle) {
    __WHATSAPP_MESSAGE__ message = ChatMessage(kReceived, "hello");
    message.strChatName = strName;
    message.strChatPhone = strPhone;
    message.strChatTitle = strTitle;
    const WhatsAppMap map = {{kHandle, {message}}};
    m_recovery.RecoveryWhatsAppMsg(&message, map);
  }
  /// Everything beside the destination.
  std::map<std::string, std::string> Outside() const {
    auto state = TreeState(m_folder.Path());
    for (auto it = state.begin(); it != state.end();)
      it = it->first.empty() || it->first.rfind("/out", 0) == 0 ? state.erase(it) : std::next(it);
    return state;
  }
  void MakeStores() const {
    m_folder.Write(std::string("backup/") + kMessageStore, "message store");
    m_folder.Write(std::string("backup/") + kContactsStore, "contacts store");
  }
  /// Every document of RecoverOneOfEach.
  std::vector<std::string> Documents() const {
    return {Out() + "/Message/Ann Lee-" + Stamp() + "/Ann Lee(+49301).txt",
            Out() + "/Message/Ann Lee-" + Stamp() + "/Ann Lee(+49301).html",
            Out() + "/Message/sms.db",
            Out() + "/Contacts/" + Stamp() + "/Contacts.db",
            Out() + "/Contacts/" + Stamp() + "/Contacts.html",
            Out() + "/CallHistory/CallHistory_" + Stamp() + ".html",
            Out() + "/Notes/Notes_" + Stamp() + ".html",
            Out() + "/WhatsApp Message/Ann(+49302)-" + Stamp() + "/Ann(+49302).txt",
            Out() + "/WhatsApp Message/Ann(+49302)-" + Stamp() + "/Ann(+49302).csv",
            Out() + "/WhatsApp Message/Ann(+49302)-" + Stamp() + "/Ann(+49302).html"};
  }
  /// Those below a folder of the destination, or all others.
  std::vector<std::string> DocumentsIn(const std::string& strFolder, bool bInside = true) const {
    std::vector<std::string> documents;
    for (const std::string& strPath : Documents()) {
      if ((strPath.rfind(Out() + "/" + strFolder + "/", 0) == 0) == bInside) documents.push_back(strPath);
    }
    return documents;
  }
};

struct NameCase {
  const char* pszName;
  const char* pszContact;
  const char* pszSender;
};

void PrintTo(const NameCase& name, std::ostream* pStream) {
  *pStream << '"' << name.pszContact << "\", \"" << name.pszSender << '"';
}

class NameWithStep : public RefusedExport, public testing::WithParamInterface<NameCase> {};
class NameWithSlash : public RefusedExport, public testing::WithParamInterface<NameCase> {};
class CategoryFolder : public RefusedExport, public testing::WithParamInterface<const char*> {};

std::string NameOfCase(const testing::TestParamInfo<NameCase>& info) {
  return info.param.pszName;
}

std::string NameOfFolder(const testing::TestParamInfo<const char*>& info) {
  std::string strName = info.param;
  strName.erase(std::remove(strName.begin(), strName.end(), ' '), strName.end());
  return strName;
}

}  // namespace

TEST_P(NameWithStep, OfAMessageIsRefusedAndTheNextConversationIsWritten) {
  Begin();
  const auto before = Outside();

  RecoverMessage(GetParam().pszContact, GetParam().pszSender);
  RecoverMessage("Ann Lee", "+49301");

  EXPECT_THAT(Failed(), Not(IsEmpty()));
  EXPECT_THAT(Reason(), HasSubstr("out of the destination"));
  EXPECT_THAT(Written(), ElementsAre(Documents()[0], Documents()[1]));
  EXPECT_EQ(before, Outside());
}

TEST_P(NameWithStep, OfAChatIsRefusedAndTheNextChatIsWritten) {
  Begin();
  const auto before = Outside();

  RecoverChat("", GetParam().pszContact + std::string("(") + GetParam().pszSender, "");
  RecoverChat("a,b", "", GetParam().pszContact + std::string("(") + GetParam().pszSender);
  RecoverChat("Ann", "+49302", "");

  EXPECT_THAT(Failed(), SizeIs(testing::Ge(2u)));
  EXPECT_THAT(Reason(), HasSubstr("out of the destination"));
  EXPECT_THAT(Written(), ElementsAreArray(DocumentsIn("WhatsApp Message")));
  EXPECT_EQ(before, Outside());
}

INSTANTIATE_TEST_SUITE_P(Names, NameWithStep,
                         testing::Values(NameCase{"AtTheBeginning", "../x", "+1"},
                                         NameCase{"FarUp", "../../../../../x", "+1"},
                                         NameCase{"Behind", "a/../../../x", "+1"},
                                         NameCase{"Within", "a/../b", "+1"},
                                         NameCase{"InTheSender", "Ann", "/../../../x"},
                                         NameCase{"InTheSenderAlone", "", "x/../../../y"},
                                         NameCase{"WithAnEmptyStep", "a//../../../x", "+1"}),
                         NameOfCase);

TEST_P(NameWithSlash, IsWrittenToASubFolderOrFailsWithoutAffectingOthers) {
  Begin();
  const auto before = Outside();

  RecoverMessage(GetParam().pszContact, GetParam().pszSender);
  RecoverMessage("Ann Lee", "+49301");

  ASSERT_THAT(m_told, SizeIs(4));
  EXPECT_THAT(std::vector<std::string>({Written().end()[-2], Written().end()[-1]}),
              ElementsAre(Documents()[0], Documents()[1]));
  for (const std::string& strPath : Written()) EXPECT_TRUE(Exists(strPath)) << strPath;
  for (const std::string& strPath : Failed()) {
    EXPECT_FALSE(Exists(strPath)) << strPath;
    EXPECT_THAT(strPath, StartsWith(Out() + "/Message/"));
    EXPECT_EQ("No such file or directory", Reason());
  }
  EXPECT_EQ(before, Outside());
}

INSTANTIATE_TEST_SUITE_P(Names, NameWithSlash,
                         testing::Values(NameCase{"InTheName", "A/B", "+1"},
                                         NameCase{"InTheSender", "A", "1/2"},
                                         NameCase{"AtTheBeginning", "/etc", "+1"},
                                         NameCase{"AtTheEnd", "A/", "+1"}, NameCase{"Alone", "/", ""},
                                         NameCase{"Dots", "..", ""}, NameCase{"DotsAtTheEnd", "A/..", ""},
                                         NameCase{"DotStep", "./A", ""}),
                         NameOfCase);

TEST_F(RefusedExport, NameOfASingleDotIsNotAParentStep) {
  Begin();

  RecoverMessage(".", "");

  EXPECT_THAT(Written(), ElementsAre(Out() + "/Message/.-" + Stamp() + "/..txt",
                                     Out() + "/Message/.-" + Stamp() + "/..html"));
}

TEST_F(RefusedExport, DocumentsOfAFailedConversationAreReportedOneByOne) {
  m_folder.Write("out/Message", "mine");
  Begin();

  RecoverMessage("Ann Lee", "+49301");

  EXPECT_THAT(Failed(), ElementsAre(Documents()[0], Documents()[1]));
}

TEST_P(CategoryFolder, ThatLeadsIntoTheBackupIsRefusedAndTheOthersAreWritten) {
  MakeStores();
  m_folder.MakeFolder("out");
  fs::create_directory_symlink(m_folder.Path("backup"), Out() + "/" + GetParam());
  const auto before = TreeState(m_folder.Path("backup"));
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
  EXPECT_THAT(Written(), ElementsAreArray(DocumentsIn(GetParam(), false)));
  EXPECT_THAT(Failed(), Each(StartsWith(Out() + "/" + GetParam() + "/")));
  EXPECT_THAT(Reason(), HasSubstr("inside the backup"));
}

TEST_P(CategoryFolder, ThatIsAFileFailsItsDocumentsAndTheOthersAreWritten) {
  MakeStores();
  m_folder.Write(std::string("out/") + GetParam(), "mine");
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_EQ("mine", ReadFile(Out() + "/" + GetParam()));
  EXPECT_THAT(Written(), ElementsAreArray(DocumentsIn(GetParam(), false)));
  EXPECT_THAT(Failed(), AllOf(Not(IsEmpty()), Each(StartsWith(Out() + "/" + GetParam() + "/"))));
  EXPECT_THAT(Reason(), AnyOf(HasSubstr("Not a directory"), HasSubstr("File exists")));
}

INSTANTIATE_TEST_SUITE_P(Folders, CategoryFolder,
                         testing::Values("Message", "Contacts", "CallHistory", "Notes", "WhatsApp Message"),
                         NameOfFolder);

TEST_F(RefusedExport, ContactsStoreIsReportedAsRefusedBesideItsPage) {
  MakeStores();
  m_folder.MakeFolder("out");
  fs::create_directory_symlink(m_folder.Path("backup"), Out() + "/Contacts");
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_THAT(Failed(), ElementsAreArray(DocumentsIn("Contacts")));
}

TEST_F(RefusedExport, ContactsStoreIsReportedAsFailedBesideItsPage) {
  MakeStores();
  m_folder.Write("out/Contacts", "mine");
  const ProblemRecorder recorder;
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_THAT(Failed(), ElementsAreArray(DocumentsIn("Contacts")));
}

TEST_F(RefusedExport, LinkInTheMiddleOfALabelIsRefused) {
  m_folder.MakeFolder("out/Message");
  fs::create_directory_symlink(m_folder.Path("backup"), Out() + "/Message/A");
  Begin();

  RecoverMessage("A/B", "");

  EXPECT_THAT(NamesIn(m_folder.Path("backup")), IsEmpty());
  EXPECT_THAT(Reason(), HasSubstr("inside the backup"));
}

TEST_F(RefusedExport, LinkToAnotherFolderIsFollowed) {
  m_folder.MakeFolder("other");
  m_folder.MakeFolder("out");
  fs::create_directory_symlink(m_folder.Path("other"), Out() + "/Notes");
  MakeStores();
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_THAT(Failed(), IsEmpty());
  EXPECT_THAT(NamesIn(m_folder.Path("other")), ElementsAre("Notes_" + Stamp() + ".html"));
}

TEST_F(RefusedExport, DestinationInTheBackupIsRefusedWholly) {
  MakeStores();
  const auto before = TreeState(m_folder.Path("backup"));
  Begin(m_recovery, m_folder.Path("backup/out"));

  RecoverOneOfEach(m_recovery);

  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_THAT(Failed(), Not(IsEmpty()));
}

// After a scan with a folder of decrypted files, that is the session's folder; the backup is still protected.
TEST_F(RefusedExport, BackupBehindDecryptedFilesIsProtectedToo) {
  const std::string strDecrypted = m_folder.MakeFolder("decrypted");
  BackupBuilder builder(FromNarrow(m_folder.Path("backup")), BackupBuilder::Layout::Mbdb);
  builder.finish();
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"), true);
  m_session.Init(&info);
  m_session.Scan(FromNarrow(strDecrypted));
  m_folder.MakeFolder("out");
  fs::create_directory_symlink(m_folder.Path("backup"), Out() + "/Notes");
  const auto before = TreeState(m_folder.Path("backup"));
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
}

TEST_F(RefusedExport, DestinationBelowAFileFailsEachDocument) {
  MakeStores();
  m_folder.Write("file", "mine");
  Begin(m_recovery, m_folder.Path("file/out"));

  RecoverOneOfEach(m_recovery);

  EXPECT_EQ("mine", ReadFile(m_folder.Path("file")));
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_THAT(Reason(), HasSubstr("Not a directory"));
  std::set<std::string> categories;
  for (const std::string& strPath : Failed())
    categories.insert(fs::path(strPath).lexically_relative(m_folder.Path("file/out")).begin()->string());
  EXPECT_THAT(categories, ElementsAre("CallHistory", "Contacts", "Message", "Notes", "WhatsApp Message"));
}

TEST_F(RefusedExport, EachDocumentIsReportedUnderItsRealPath) {
  MakeStores();
  Begin();

  RecoverOneOfEach(m_recovery);

  EXPECT_THAT(Written(), ElementsAreArray(Documents()));
  EXPECT_THAT(Failed(), IsEmpty());
  for (const std::string& strPath : Written()) EXPECT_TRUE(Exists(strPath)) << strPath;
}
