// Encrypted backups of each generation, with the real tool: the window shows and recovers the same as for the
// unencrypted backup.
#include <QCryptographicHash>
#include <QFile>
#include <algorithm>
#include <filesystem>
#include <sstream>

#include "sample/demo_backup.h"
#include "tests/app/encrypted_fixture.h"
#include "tests/backup/tree_state.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;

namespace {

constexpr char kPassword[] = "geh heim";  // with a space

struct Age {
  const char* pszName;
  Encryption::Age age;
  BackupBuilder::Layout layout;
};
constexpr Age kAges[] = {
    {"Ios9", Encryption::Age::BeforeIos10, BackupBuilder::Layout::Mbdb},
    {"Ios100", Encryption::Age::Ios10, BackupBuilder::Layout::Db},
    {"Ios102", Encryption::Age::From102, BackupBuilder::Layout::Db},
};

void PrintTo(const Age& age, std::ostream* pStream) {
  *pStream << age.pszName;
}

using Lines = std::vector<std::string>;

std::string ContentOf(const std::u16string& wstrPath) {
  QFile file(QString::fromStdU16String(wstrPath));
  if (!file.open(QIODevice::ReadOnly)) return "can't be read";
  return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex().toStdString();
}

template <typename... Fields>
std::string Line(const Fields&... fields) {
  std::ostringstream line;
  ((line << fields << '|'), ...);
  return line.str();
}

template <typename File>
Lines FilesOf(const std::vector<File>& files) {
  Lines lines;
  for (const File& file : files)
    lines.push_back(Line(file.strFileName, file.uFileSize, ContentOf(file.wstrFilePath)));
  return lines;
}

Lines AppFilesOf(const std::vector<_IPHONE_APP_FILE_INFO_>& files) {
  Lines lines = FilesOf(files);
  for (size_t i = 0; i < files.size(); ++i) lines[i] += files[i].strAppName;
  return lines;
}

Lines AppsOf(const AppFileMap& apps) {
  Lines lines;
  for (const auto& [strApp, files] : apps) {
    lines.push_back(strApp);
    for (const std::string& strLine : AppFilesOf(files)) lines.push_back(strLine);
  }
  return lines;
}

Lines MessagesOf(const MessageMap& messages) {
  Lines lines;
  for (const auto& [nKey, conversation] : messages) {
    for (const __MESSAGE_INFO__& one : conversation)
      lines.push_back(Line(nKey, one.nDeleted, one.nIsFromMe, one.nRowId, one.nHandleId, one.strDate,
                           one.strSender, one.strContactName, one.strText, one.strReserved));
  }
  return lines;
}

Lines ContactsOf(const std::vector<__PERSON_CONTENT__>& people) {
  Lines lines;
  for (const __PERSON_CONTENT__& one : people)
    lines.push_back(Line(one.nDeleted, one.strEmail, one.strAddress, one.strSocial, one.strUrl, one.strPhone,
                         one.strCompany, one.strName));
  return lines;
}

Lines CallsOf(const std::vector<__CALLHISTORY__>& calls) {
  Lines lines;
  for (const __CALLHISTORY__& one : calls)
    lines.push_back(
        Line(one.nDeleted, one.nAnswered, one.nDuration, one.strDate, one.strAddress, one.strName));
  return lines;
}

Lines NotesOf(const std::vector<__NOTES__>& notes) {
  Lines lines;
  for (const __NOTES__& one : notes)
    lines.push_back(Line(one.nDeleted, one.nReserved, one.strDate, one.strTitle, one.strContent));
  return lines;
}

Lines ChatsOf(const WhatsAppMap& chats) {
  Lines lines;
  for (const auto& [nKey, chat] : chats) {
    for (const __WHATSAPP_MESSAGE__& one : chat)
      lines.push_back(Line(nKey, one.nDeleted, one.nIsFromMe, one.nChatId, one.strDate, one.strName,
                           one.strContent, one.strPhone, one.strChatName, one.strChatPhone,
                           one.strChatTitle));
  }
  return lines;
}

/// All records of a window by the member that holds them, with the contents of files in place of their paths.
std::map<std::string, Lines> RecordsOf(const BackupRecords& records) {
  return {
      {"m_vecCamera", FilesOf(records.m_vecCamera)},
      {"m_vecPhotoStream", FilesOf(records.m_vecPhotoStream)},
      {"m_vecAppFile", AppFilesOf(records.m_vecAppFile)},
      {"m_mapAppPhotoFiles", AppsOf(records.m_mapAppPhotoFiles)},
      {"m_mapAppVideoFiles", AppsOf(records.m_mapAppVideoFiles)},
      {"counts of app files", {Line(records.m_nAppPhotoCount, records.m_nAppVideoCount)}},
      {"m_mapMessage", MessagesOf(records.m_mapMessage)},
      {"m_vecMessageAttachment", FilesOf(records.m_vecMessageAttachment)},
      {"m_vecContact", ContactsOf(records.m_vecContact)},
      {"m_vecCall", CallsOf(records.m_vecCall)},
      {"m_vecNote", NotesOf(records.m_vecNote)},
      {"m_mapWhatsApp", ChatsOf(records.m_mapWhatsApp)},
      {"m_vecWhatsAppAttachment", FilesOf(records.m_vecWhatsAppAttachment)},
  };
}

/// Contents of a recovery by path, both without time stamps.
std::map<std::string, std::string> RecoveredFiles(const std::string& strOut) {
  std::map<std::string, std::string> files;
  for (const std::string& strFile : FilesBelow(strOut)) {
    const std::string strBytes = ReadFile(strOut + "/" + strFile);
    const bool bPage = strFile.size() > 5 && strFile.substr(strFile.size() - 5) == ".html";
    files[WithoutStamps("/" + strFile)] = bPage ? WithoutStamps(strBytes) : strBytes;
  }
  return files;
}

class EncryptedAges : public EncryptedTest, public testing::WithParamInterface<Age> {
 protected:
  EncryptedAges() {
    DemoOptions options;
    options.layout = GetParam().layout;
    options.age = GetParam().age;
    options.rounds = 20;
    options.messages = 120;
    writeDemoBackup(QString::fromStdString(Plain()), options);
    options.password = kPassword;
    writeDemoBackup(QString::fromStdString(Encrypted()), options);
  }
  std::string Plain() const { return m_folder.Path("plain/my phone"); }
  std::string Encrypted() const { return m_folder.Path("encrypted/my phone"); }

  void ScanPlain() {
    Open();
    ModalSteps steps;
    ChooseFolder(steps, Plain());
    Select();
    ExpectDataScreen();
  }
  void ScanEncrypted() {
    Open();
    SelectBackup(Encrypted(), kPassword);
    ExpectDataScreen();
  }

  /// Presses "Recovery" with all that the scan has ticked.
  void Recover(const std::string& strOut) {
    ModalSteps steps;
    ChooseFolder(steps, strOut);
    steps.Then(
        "SCANUI", [](QWidget* pDialog) { Click(pDialog->findChild<QPushButton*>("Cancel")); },
        [](QWidget* pDialog) { return pDialog->findChild<QPushButton*>("Cancel")->text() == "Finished"; });
    Click(Find<QPushButton>("m_pRecoveryButton"));
  }
};

INSTANTIATE_TEST_SUITE_P(Ages, EncryptedAges, testing::ValuesIn(kAges),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_P(EncryptedAges, ScanFindsWhatItFindsInThePlainBackup) {
  ScanPlain();
  const auto expected = RecordsOf(WindowAccess::Records(Window()));
  const std::vector<std::string> labels = Labels();
  ScanEncrypted();

  const auto records = RecordsOf(WindowAccess::Records(Window()));

  EXPECT_TRUE(WindowAccess::ChosenBackup(Window()).bEncrypted);
  EXPECT_EQ(labels, Labels());
  for (const auto& [strName, lines] : expected) {
    EXPECT_EQ(strName == "m_mapWhatsApp", lines.empty()) << strName;
    EXPECT_EQ(lines, records.at(strName)) << strName;
  }
}

TEST_P(EncryptedAges, FilesOfTheRecordsLieInTheDecryptedFolder) {
  ScanEncrypted();

  const BackupRecords& records = WindowAccess::Records(Window());

  ASSERT_FALSE(records.m_vecCamera.empty());
  for (const _IPHONE_CAMERA_INFO_& photo : records.m_vecCamera) {
    const std::string strPath = QString::fromStdU16String(photo.wstrFilePath).toStdString();
    EXPECT_EQ(0u, strPath.find(DecryptedArgument() + "/")) << strPath;
  }
}

TEST_P(EncryptedAges, RecoveryWritesWhatItWritesForThePlainBackup) {
  const std::string strPlainOut = m_folder.MakeFolder("out/plain");
  const std::string strOut = m_folder.MakeFolder("out/encrypted");
  ScanPlain();
  Recover(strPlainOut);
  ScanEncrypted();

  Recover(strOut);

  const auto expected = RecoveredFiles(strPlainOut);
  const auto files = RecoveredFiles(strOut);
  EXPECT_GT(expected.size(), 40u);
  for (const auto& [strFile, strBytes] : expected) {
    ASSERT_EQ(1u, files.count(strFile)) << strFile;
    EXPECT_TRUE(strBytes == files.at(strFile)) << strFile;
  }
  EXPECT_EQ(expected.size(), files.size());
}

TEST_P(EncryptedAges, BackupIsUnchangedButForTheManifestOfTheTool) {
  auto before = TreeState(Encrypted());

  ScanEncrypted();
  Recover(m_folder.MakeFolder("out"));

  auto after = TreeState(Encrypted());
  // A binary manifest is never encrypted, and the tool writes none.
  const bool bDatabase = GetParam().age != Encryption::Age::BeforeIos10;
  EXPECT_EQ(bDatabase ? 1u : 0u, after.erase("/Manifest.db-decypted"));
  if (bDatabase) {
    before.erase("");  // the time of the folder itself
    after.erase("");
  }
  EXPECT_EQ(before, after);
}

TEST_P(EncryptedAges, WrongPasswordIsRefusedAndTheRightOneTakenAfterIt) {
  Open();
  ModalSteps steps;
  ShownBox box;
  ChooseFolder(steps, Encrypted());
  GivePassword(steps, "geh  heim!");
  CloseBox(steps, box);
  GivePassword(steps, kPassword);

  Select();

  EXPECT_EQ("Your password is not correct! Please try again.", box.strText);
  ExpectDataScreen();
  EXPECT_NE(kZeroLabels, Labels());
}

TEST_P(EncryptedAges, RowOfTheListCanNotBeReadWithoutAPassword) {
  std::filesystem::create_directories(m_folder.Path("backups"));
  std::filesystem::rename(Encrypted(), BackupPath("one"));
  Open();

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(-110, WindowAccess::DecryptStatus(Window()));
}

TEST_P(EncryptedAges, BarRunsFromTheToolsCountsOnToTheEnd) {
  Open();
  std::vector<int> values;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(),
                   [&](int nProgress) { values.push_back(nProgress); });

  SelectBackup(Encrypted(), kPassword);

  ASSERT_FALSE(values.empty());
  EXPECT_GE(values.front(), 1);
  EXPECT_LE(values.front(), 11);
  EXPECT_EQ(100, values.back());
  for (const int nValue : {11, 31, 36, 46, 51, 56, 61, 71, 81, 91})
    EXPECT_NE(0, std::count(values.begin(), values.end(), nValue)) << nValue;
}

}  // namespace
