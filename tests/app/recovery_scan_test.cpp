// Recoveries after a scan, with rows selected by clicks.
#include <QTest>
#include <algorithm>

#include "sample/demo_backup.h"
#include "tests/app/recovery_fixture.h"
#include "tests/app/recovery_tree.h"
#include "tests/backup/tree_state.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;

namespace {

constexpr const char* kTables[] = {"m_pCameraTable",    "m_pPhotoStreamTable",   "m_pAppPhotosTable",
                                   "m_pAppVideosTable", "m_pMessageTable",       "m_pMessAttachTable",
                                   "m_pContactsTable",  "m_pCallHistoryTable",   "m_pNotesTable",
                                   "m_pWhatsappTable",  "m_pWhatsappAttachTable"};
constexpr size_t kLeastFiles = 100;  // minimum for the backup's recovery

class RecoveryOfScan : public RecoveryTest {
 protected:
  RecoveryOfScan() {
    DemoOptions options;
    options.messages = 150;
    writeDemoBackup(QString::fromStdString(BackupPath("one")), options);
    m_before = TreeState(BackupPath("one"));
    Open();
    ScanBackup();
  }
  QTableWidget* TableOf(int nCategory) { return Table(kTables[nCategory]); }
  /// Shows a category and unticks all rows.
  void Untick(int nCategory) {
    ClickNodeBox(nCategory);
    ASSERT_EQ(Qt::Unchecked, Node(nCategory)->checkState(0)) << nCategory;
  }
  /// Clicks the boxes of rows of the visible category.
  void ClickRows(int nCategory, const std::vector<int>& rows) {
    for (const int nRow : rows) {
      ASSERT_LT(nRow, TableOf(nCategory)->rowCount()) << nCategory;
      ClickRowBox(TableOf(nCategory), nRow);
    }
  }
  /// Moves through all rows of a table with the arrow key.
  void ShowEachRow(QTableWidget* pTable) {
    if (pTable->rowCount() == 0) return;
    ClickRow(pTable, 0, 1);
    for (int i = 1; i < pTable->rowCount(); ++i) QTest::keyClick(pTable, Qt::Key_Down);
    EXPECT_EQ(pTable->rowCount() - 1, pTable->currentRow());
  }
  static std::string BytesOf(const std::u16string& wstrPath) {
    return ReadFile(QString::fromStdU16String(wstrPath).toStdString());
  }

  /// Expects a file, under its name or with the first free number.
  template <typename File>
  void Expect(const std::string& strFolder, const File& file) {
    const std::string& strName = file.strFileName;
    const size_t nDot = std::min(strName.rfind('.'), strName.size());
    std::string strPath = strFolder + strName;
    for (int i = 1; m_expected.count(strPath) != 0; ++i)
      strPath = strFolder + strName.substr(0, nDot) + "(" + std::to_string(i) + ")" + strName.substr(nDot);
    m_expected[strPath] = BytesOf(file.wstrFilePath);
  }

  std::map<std::string, std::string> m_before;
  RecoveredTree m_expected;
};

TEST_F(RecoveryOfScan, AllOfItIsWhatTheCommandLineWrites) {
  const std::string strExpected = RecoverByCommand(BackupPath("one"), m_folder.Path("expected"));

  Recover();

  const RecoveredTree expected = RecoveredFiles(strExpected);
  EXPECT_GT(expected.size(), kLeastFiles);
  ExpectSameFiles(expected, RecoveredFiles(Out()));
}

TEST_F(RecoveryOfScan, BackupIsUnchangedThroughScanPreviewOfEachRowAndRecovery) {
  int nRows = 0;
  for (int nCategory = 0; nCategory < 11; ++nCategory) {
    ClickNode(nCategory);
    QTableWidget* pTable = TableOf(nCategory);
    ShowEachRow(pTable);
    nRows += pTable->rowCount();
    if (nCategory != 2 && nCategory != 3) continue;
    for (int nApp = 0; nApp < pTable->rowCount(); ++nApp) {
      ClickNode(nCategory);
      pTable->scrollToItem(pTable->item(nApp, 1));
      DoubleClickRow(pTable, nApp, 0);
      EXPECT_GT(Files()->rowCount(), 0) << nApp;
      ShowEachRow(Files());
    }
  }
  EXPECT_GT(nRows, 100);
  EXPECT_EQ(m_before, TreeState(BackupPath("one")));

  Recover();

  EXPECT_FALSE(FilesBelow(Out()).empty());
  EXPECT_EQ(m_before, TreeState(BackupPath("one")));
}

TEST_F(RecoveryOfScan, AChoiceOfRowsGivesExactlyThese) {
  BackupRecords& records = Records();
  // Two photos, all of the stream and no attachments of chats.
  Untick(0);
  ClickRows(0, {1, 4});
  for (const size_t nRow : {1, 4}) Expect("/Camera Roll/", records.m_vecCamera.at(nRow));
  for (const auto& photo : records.m_vecPhotoStream) Expect("/Photo Stream/", photo);
  Untick(10);
  // Attachments but for the second.
  ClickNode(5);
  ClickRows(5, {1});
  for (size_t nRow = 0; nRow < records.m_vecMessageAttachment.size(); ++nRow) {
    if (nRow != 1) Expect("/Message Attachments/", records.m_vecMessageAttachment[nRow]);
  }
  // One app of each kind: of the pictures all but its first, of the films the whole app.
  Untick(2);
  const auto& apps = records.m_mapAppPhotoFiles;
  const auto app =
      std::find_if(apps.begin(), apps.end(), [](const auto& one) { return one.second.size() > 2; });
  ASSERT_NE(apps.end(), app);
  DoubleClickRow(TableOf(2), static_cast<int>(std::distance(apps.begin(), app)), 0);
  for (size_t nRow = 1; nRow < app->second.size(); ++nRow) {
    ClickRowBox(Files(), static_cast<int>(nRow));
    Expect("/App Photos/" + app->first + "/", app->second[nRow]);
  }
  Untick(3);
  ClickRows(3, {1});
  const auto& films = *std::next(records.m_mapAppVideoFiles.begin());
  for (const auto& file : films.second) Expect("/App Video/" + films.first + "/", file);
  // Two conversations, three people, no calls and one note.
  Untick(4);
  ClickRows(4, {0, 3});
  std::vector<std::string> conversations;
  for (const int nRow : {0, 3}) {
    const std::string strName = TableOf(4)->item(nRow, 0)->text().toStdString();
    const std::string strLabel = strName.empty() ? "Unknown" : strName;
    const std::string strStem = "/Message/" + strLabel + "-STAMP/" + strLabel + "(" +
                                TableOf(4)->item(nRow, 1)->text().toStdString() + ")";
    conversations.insert(conversations.end(), {strStem + ".html", strStem + ".txt"});
  }
  Untick(6);
  ClickRows(6, {0, 2, 5});
  Untick(7);
  Untick(8);
  ClickRows(8, {1});

  Recover();

  RecoveredTree files = RecoveredFiles(Out());
  for (const std::string& strConversation : conversations)
    EXPECT_EQ(1u, files.erase(strConversation)) << strConversation;
  EXPECT_EQ(1u, files.erase("/Message/sms.db"));
  EXPECT_EQ(1u, files.erase("/Contacts/STAMP/Contacts.db"));
  const std::pair<const char*, int> pages[] = {{"/Contacts/STAMP/Contacts.html", 3},
                                               {"/Notes/Notes_STAMP.html", 1}};
  for (const auto& [pszPage, nRows] : pages) {
    ASSERT_EQ(1u, files.count(pszPage));
    EXPECT_EQ(nRows, QString::fromStdString(files[pszPage]).count("\n\t<tr><td>")) << pszPage;
    files.erase(pszPage);
  }
  ExpectSameFiles(m_expected, files);
}

}  // namespace
