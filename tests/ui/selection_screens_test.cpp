// Ticks over several data screens, one replaced by the next, and over thousands of random presses.

#include <QTest>
#include <random>
#include <sstream>

#include "sample/pictures.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/selection_fixture.h"
#include "tests/ui/selection_model.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

class SelectionLifetime : public SelectionTest {
 protected:
  /// Row of a backup in the list.
  int RowOf(const std::string& strBackup) {
    const QTableWidget* pTable = Table("m_pBackupTable");
    for (int i = 0; i < pTable->rowCount(); ++i) {
      const auto info = pTable->item(i, 0)->data(Qt::UserRole).value<__BACK_FILE_INFO__>();
      if (info.strBackupPath == BackupPath(strBackup)) return i;
    }
    return -1;
  }
  void GoHome() {
    ModalSteps steps;
    steps.ThenClick("CMessageBox", "OK");
    Click(Find<QPushButton>("homeButton"));
  }
};

TEST_F(SelectionLifetime, TheNextScreenKeepsAllTicksOfTheLast) {
  OpenScanned();
  ClickNode(2);
  ClickRow(Table("m_pAppPhotosTable"), 1);

  ReplaceDataScreen();

  for (const PlainCategory& category : kPlainCategories)
    EXPECT_EQ(category.whole, Selection(category.nNumber)) << category.pszName;
  for (const AppCategory& category : kAppCategories)
    EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}),
              AppSelection(category.nNumber));
  EXPECT_EQ(2, PressedCategory());
  EXPECT_EQ("Beta", PressedApp());
}

TEST_F(SelectionLifetime, TheNextScreenPointsAtNothingOfTheLast) {
  OpenScanned();
  ClickNode(3);
  ClickRow(Table("m_pAppVideosTable"), 1);
  ASSERT_NE(nullptr, WindowAccess::CurrentAppItem(Window()));

  ReplaceDataScreen();

  EXPECT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ(nullptr, WindowAccess::CurrentAppItem(Window()));
  TickNode(0);
  ClickRowBox(Table("m_pCameraTable"), 0);
  EXPECT_EQ(SelectionMap({{1, 2000}, {2, 30}}), Selection(0));
  EXPECT_EQ(kTicked, NodeState(0));
}

TEST_F(SelectionLifetime, RowsBeyondTheNewOnesStayAndAreCounted) {
  OpenDataScreen();
  Records().m_vecCamera = {{1, "a", u""}, {2, "b", u""}, {4, "c", u""}};
  TickNode(0);
  Records().m_vecCamera = {{64, "d", u""}};

  ReplaceDataScreen();
  TickNode(0);
  Window().RefreshSelectFileInfo();

  EXPECT_EQ(SelectionMap({{0, 64}, {1, 2}, {2, 4}}), Selection(0));
  EXPECT_EQ("Select 70 Bytes in 3 files", SelectionLine());
  ClickNodeBox(0);
  EXPECT_EQ(SelectionMap({{1, 2}, {2, 4}}), Selection(0));
  EXPECT_EQ("Select 6 Bytes in 2 files", SelectionLine());
}

TEST_F(SelectionLifetime, ACategoryThatTheNextScanDoesNotTickLosesItsRowsAlone) {
  OpenScanned();
  Records().m_vecNote.resize(1);

  ReplaceDataScreen();
  SetNode(8, kUnticked);

  EXPECT_EQ(SelectionMap({{1, 1}, {2, 2}}), Selection(8));
}

TEST_F(SelectionLifetime, ASecondScanOverwritesTheRowsThatItTicks) {
  const QByteArray photo = sample_media::jpeg(1);
  WritePhotos(BackupPath("one"), 3, photo.leftJustified(300000, ' ', true));
  WritePhotos(BackupPath("two"), 1, photo.leftJustified(400000, ' ', true));
  Open();
  ScanBackup(RowOf("one"));
  ASSERT_EQ(SelectionMap({{0, 300000}, {1, 300000}, {2, 300000}}), Selection(0));

  GoHome();
  EXPECT_EQ(3u, Selection(0).size());

  ScanBackup(RowOf("two"));
  EXPECT_EQ(SelectionMap({{0, 400000}, {1, 300000}, {2, 300000}}), Selection(0));
  EXPECT_EQ("Select 976.56 KB in 3 files", SelectionLine());  // 1000000 bytes
}

TEST_F(SelectionLifetime, AScanWithoutRecordsLeavesTicksAndRecoveryOn) {
  WritePhotos(BackupPath("one"), 1, sample_media::jpeg(1).leftJustified(300000, ' ', true));
  WriteEmptyBackup("two");
  Open();
  ScanBackup(RowOf("one"));
  GoHome();

  ScanBackup(RowOf("two"));

  EXPECT_EQ(SelectionMap({{0, 300000}}), Selection(0));
  EXPECT_EQ("Select 292.97 KB in 1 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

constexpr int kSeeds = 20;
constexpr int kActions = 500;  // of each seed
constexpr int kScanOrder[] = {0, 1, 4, 5, 6, 7, 8, 2, 3, 9, 10};
// Small ones first.
constexpr quint32 kSizes[] = {0, 1, 100, 900, 1023, 1024, 1536, 5000, 1048576, 3000000000, 0xFFFFFFFF};
constexpr int kSmallSizes = 8;

using Place = SelectionModel::Place;

/// Compares the window's whole state with the model's after each press.
class SelectionRandom : public SelectionTest {
 protected:
  int Pick(int nChoices) { return static_cast<int>(m_random() % static_cast<unsigned>(nChoices)); }
  bool Chance(int nPercent) { return Pick(100) < nPercent; }

  ModelContent RandomContent();
  void PutContent(const ModelContent& content);
  /// A new screen with new records, after a scan or before the tables are filled.
  void BuildAnew();
  void Act();
  void ActOnRow();
  void ClickTable(QTableWidget* pTable, int nRow, Place place);
  void Note(const std::string& strAction) { m_actions.push_back(strAction); }

  /// The differences between window and model; empty if there are none.
  std::string Difference();
  std::string TableDifference(int nTable);
  std::string LastActions() const;

  quint32 RandomSize() { return kSizes[Pick(m_bSmall ? kSmallSizes : static_cast<int>(std::size(kSizes)))]; }

  std::mt19937 m_random;
  bool m_bSmall = false;  // few records, so that the line covers no selection and small sizes
  SelectionModel m_model;
  QTableWidget* m_tables[12] = {};
  int m_current[12] = {};  // row that a key moves from, -1 for none; a press on a box doesn't change it
  std::vector<std::string> m_actions;
};

ModelContent SelectionRandom::RandomContent() {
  ModelContent content;
  for (const int nCategory : kScanOrder) {
    if (nCategory == 2 || nCategory == 3) continue;
    const int nRecords = Chance(m_bSmall ? 80 : 10) ? 0 : 1 + Pick(5);
    quint32 nKey = static_cast<quint32>(Pick(3));
    for (int i = 0; i < nRecords; ++i) {
      ModelContent::Record record;
      const bool bConversation = nCategory == 4 || nCategory == 9;
      record.bEmpty = bConversation && Chance(10);
      // Files are never deleted.
      record.bDeleted = !record.bEmpty && nCategory >= 4 && nCategory != 5 && nCategory != 10 && Chance(40);
      record.nKey = nKey;
      nKey += 1 + static_cast<quint32>(Pick(2));
      record.uSize = RandomSize();
      content.records[nCategory].push_back(record);
    }
  }
  for (const int nCategory : {2, 3}) {
    const QStringList names = {"Alpha", "Beta", nCategory == 2 ? "Übersicht" : "Folder"};
    for (const QString& qstrName : names) {
      if (Chance(35)) continue;
      std::vector<quint32>& files = content.apps[nCategory][qstrName];
      const int nFiles = Chance(5) ? 0 : 1 + Pick(4);
      for (int i = 0; i < nFiles; ++i) files.push_back(RandomSize());
    }
  }
  return content;
}

template <typename Record>
Record Flagged(bool bDeleted) {
  Record record;
  record.nDeleted = bDeleted ? 1 : 0;
  return record;
}

void SelectionRandom::PutContent(const ModelContent& content) {
  BackupRecords& records = Records();
  records.m_vecCamera.clear();
  records.m_vecPhotoStream.clear();
  records.m_vecMessageAttachment.clear();
  records.m_vecWhatsAppAttachment.clear();
  records.m_vecContact.clear();
  records.m_vecCall.clear();
  records.m_vecNote.clear();
  records.m_mapMessage.clear();
  records.m_mapWhatsApp.clear();
  records.m_mapAppPhotoFiles.clear();
  records.m_mapAppVideoFiles.clear();
  for (const auto& one : content.records[0]) records.m_vecCamera.push_back({one.uSize, "a", u""});
  for (const auto& one : content.records[1]) records.m_vecPhotoStream.push_back({one.uSize, "b", u""});
  for (const auto& one : content.records[5])
    records.m_vecMessageAttachment.push_back({0, one.uSize, "c", u""});
  for (const auto& one : content.records[10])
    records.m_vecWhatsAppAttachment.push_back({one.uSize, "d", u""});
  for (const auto& one : content.records[6])
    records.m_vecContact.push_back(Flagged<__PERSON_CONTENT__>(one.bDeleted));
  for (const auto& one : content.records[7])
    records.m_vecCall.push_back(Flagged<__CALLHISTORY__>(one.bDeleted));
  for (const auto& one : content.records[8]) records.m_vecNote.push_back(Flagged<__NOTES__>(one.bDeleted));
  // One deleted record makes a conversation a deleted one.
  for (const auto& one : content.records[4]) {
    auto& conversation = records.m_mapMessage[one.nKey];
    if (!one.bEmpty) conversation = {{}, Flagged<__MESSAGE_INFO__>(one.bDeleted)};
  }
  for (const auto& one : content.records[9]) {
    auto& chat = records.m_mapWhatsApp[one.nKey];
    if (!one.bEmpty) chat = {{}, Flagged<__WHATSAPP_MESSAGE__>(one.bDeleted)};
  }
  for (const int nCategory : {2, 3}) {
    AppFileMap& apps = nCategory == 2 ? records.m_mapAppPhotoFiles : records.m_mapAppVideoFiles;
    for (const auto& app : content.apps[nCategory]) {
      auto& files = apps[app.first.toStdString()];
      for (const quint32 uSize : app.second) files.push_back({uSize, app.first.toStdString(), "e", u""});
    }
  }
}

void SelectionRandom::BuildAnew() {
  const ModelContent content = RandomContent();
  PutContent(content);
  ReplaceDataScreen();
  const char* const names[] = {"m_pCameraTable",    "m_pPhotoStreamTable",    "m_pAppPhotosTable",
                               "m_pAppVideosTable", "m_pMessageTable",        "m_pMessAttachTable",
                               "m_pContactsTable",  "m_pCallHistoryTable",    "m_pNotesTable",
                               "m_pWhatsappTable",  "m_pWhatsappAttachTable", "m_pAppsTable"};
  for (int i = 0; i < 12; ++i) {
    m_tables[i] = Table(names[i]);
    m_current[i] = -1;
  }
  m_model.BuildAnew(content);
  Note("a new screen");
  if (Chance(m_bSmall ? 20 : 70)) {
    Note("a scan");
    for (const int nCategory : kScanOrder) {
      const bool bTick = (!content.records[nCategory].empty() ||
                          (nCategory < 4 && nCategory >= 2 && !content.apps[nCategory].empty())) &&
                         Chance(80);
      bTick ? TickNode(nCategory) : Window().UpdateTreeInfo(Node(nCategory), 0, true);
      m_model.Scan(nCategory, bTick);
    }
  }
  Window().RefreshSelectFileInfo();
  m_model.Refresh();
  QCoreApplication::processEvents();
}

void SelectionRandom::ClickTable(QTableWidget* pTable, int nRow, Place place) {
  const int nColumn = place == Place::kSecondColumn ? 1 : 0;
  if (!pTable->item(nRow, nColumn)) {  // a blank row
    pTable->scrollTo(pTable->model()->index(nRow, nColumn));
    Click(pTable->viewport(),
          pTable->visualRect(pTable->model()->index(nRow, nColumn)).topLeft() + QPoint(50, 15));
    return;
  }
  pTable->scrollToItem(pTable->item(nRow, nColumn));
  place == Place::kBox ? ClickRowBox(pTable, nRow, nColumn) : ClickRow(pTable, nRow, nColumn);
}

void SelectionRandom::ActOnRow() {
  const int nView = m_model.nView;
  const bool bApps = nView == 2 || nView == 3;
  const int nRows = static_cast<int>(m_model.RowsOnView().size());
  const int nRow = Pick(nRows);
  // The only way to see which files of a partly ticked app are ticked.
  const bool bPart = bApps && m_model.RowsOnView()[static_cast<size_t>(nRow)].nState == 1 && Chance(40);
  const Place place = bPart        ? Place::kSecondColumn
                      : Chance(60) ? Place::kBox
                      : Chance(60) ? Place::kText
                                   : Place::kSecondColumn;
  const char* const places[] = {"box", "text", "second column"};
  const std::string strWhere = std::string(places[static_cast<int>(place)]) + " of row " +
                               std::to_string(nRow) + " of table " + std::to_string(nView);
  QTableWidget* pTable = m_tables[nView];
  if (nView == SelectionModel::kFileList) {
    Note(strWhere);
    ClickTable(pTable, nRow, place);
    m_model.PressFile(nRow, place);
  } else if (bApps && m_current[nView] >= 0 && nRows > 1 && Chance(10)) {
    const bool bDown = m_current[nView] < nRows - 1;
    m_current[nView] += bDown ? 1 : -1;
    Note("a key to row " + std::to_string(m_current[nView]) + " of table " + std::to_string(nView));
    QTest::keyClick(pTable, bDown ? Qt::Key_Down : Qt::Key_Up);
    m_model.MoveTo(m_current[nView]);
  } else if (bPart || (bApps && Chance(40))) {
    Note("double click on the " + strWhere);
    pTable->scrollToItem(pTable->item(nRow, 0));
    DoubleClickRow(pTable, nRow, place == Place::kSecondColumn ? 1 : 0, place == Place::kBox);
    m_model.OpenApp(nRow, place);
    if (place != Place::kBox) m_current[nView] = nRow;
  } else {
    Note(strWhere);
    ClickTable(pTable, nRow, place);
    m_model.PressRow(nRow, place);
    if (place != Place::kBox) m_current[nView] = nRow;
  }
}

void SelectionRandom::Act() {
  if (Chance(1) && Chance(60)) return BuildAnew();
  const bool bChats = m_model.nView == 9;  // whose node and rows may become inconsistent
  if (!m_model.RowsOnView().empty() && Chance(bChats ? 50 : 75)) return ActOnRow();
  const bool bStay = m_model.nView < 11 && Chance(bChats ? 80 : 30);
  const int nCategory = bStay ? m_model.nView : Chance(35) ? 2 + Pick(2) : Chance(20) ? 9 : Pick(11);
  const bool bBox = Chance(50);
  Note(std::string(bBox ? "box" : "text") + " of node " + std::to_string(nCategory));
  bBox ? ClickNodeBox(nCategory) : ClickNode(nCategory);
  m_model.PressNode(nCategory, bBox);
}

/// A state, or -1 for a cell without a box.
int BoxState(const QTableWidgetItem* pItem) {
  const QVariant state = pItem->data(Qt::CheckStateRole);
  return state.isValid() ? state.toInt() : -1;
}

/// For a message: app names that gtest can print.
std::map<std::string, SelectionMap> Readable(const AppSelectionMap& map) {
  std::map<std::string, SelectionMap> readable;
  for (const auto& app : map) readable[app.first.toStdString()] = app.second;
  return readable;
}

std::string SelectionRandom::TableDifference(int nTable) {
  const QTableWidget* pTable = m_tables[nTable];
  const std::vector<SelectionModel::Row>& rows = m_model.rows[nTable];
  std::ostringstream text;
  if (pTable->rowCount() != static_cast<int>(rows.size()))
    text << "table " << nTable << " has " << pTable->rowCount() << " rows, not " << rows.size() << "\n";
  for (int i = 0; i < pTable->rowCount() && text.tellp() == 0; ++i) {
    const SelectionModel::Row& row = rows[static_cast<size_t>(i)];
    const QTableWidgetItem* pFirst = pTable->item(i, 0);
    const QTableWidgetItem* pSecond = pTable->item(i, 1);
    if ((pFirst != nullptr) != row.bCell)
      text << "table " << nTable << ", row " << i << ": " << (pFirst ? "a cell" : "no cell") << "\n";
    if (!pFirst || !row.bCell) continue;
    if (BoxState(pFirst) != row.nState)
      text << "table " << nTable << ", row " << i << " is at " << BoxState(pFirst) << ", not " << row.nState
           << "\n";
    if (BoxState(pSecond) != row.secondState.value_or(-1))
      text << "table " << nTable << ", row " << i << ", column 1 is at " << BoxState(pSecond) << "\n";
  }
  return text.str();
}

std::string SelectionRandom::Difference() {
  std::ostringstream text;
  const auto compare = [&](const std::string& strWhat, const auto& is, const auto& wanted) {
    if (is != wanted)
      text << strWhat << " is " << testing::PrintToString(is) << ", not " << testing::PrintToString(wanted)
           << "\n";
  };
  for (int i = 0; i < 11; ++i) {
    compare("node " + std::to_string(i), NodeState(i), m_model.nodes[i]);
    if (i == 2 || i == 3)
      compare("app map " + std::to_string(i), Readable(AppSelection(i)), Readable(m_model.appMaps[i]));
    else
      compare("map " + std::to_string(i), Selection(i), m_model.maps[i]);
  }
  for (int i = 0; i < 12; ++i) {
    // The content of a hidden list doesn't matter, as it is refilled when opened.
    if (i != SelectionModel::kFileList || m_model.nView == i) text << TableDifference(i);
  }
  compare("the line", std::string(TextOf(WindowAccess::SelectInfoLabel(Window()))), m_model.strLine);
  const QPushButton* pButton = WindowAccess::RecoveryButton(Window());
  compare("Recovery", pButton->isEnabled(), m_model.bRecovery);
  compare("the style of Recovery", pButton->styleSheet().toStdString(),
          (m_model.bRecovery ? Layout2_main_button_style : main_button_style_no_file).toStdString());
  compare("the pressed category", PressedCategory(), m_model.nPressed);
  compare("the pressed app", PressedApp(), m_model.qstrPressedApp.toStdString());
  const QTreeWidgetItem* pNode = WindowAccess::CurrentTreeItem(Window());
  compare("the node", WindowAccess::Tree(Window())->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(pNode)),
          m_model.current.value_or(-1));
  const QTableWidgetItem* pWanted = m_model.appCell ? m_tables[m_model.appCell->nCategory]->item(
                                                          m_model.appCell->nRow, m_model.appCell->nColumn)
                                                    : nullptr;
  if (WindowAccess::CurrentAppItem(Window()) != pWanted) text << "the cell of the app is another one\n";
  if (!m_tables[m_model.nView]->isVisible()) text << "table " << m_model.nView << " isn't on view\n";
  return text.str();
}

std::string SelectionRandom::LastActions() const {
  std::string strText;
  const size_t nFirst = m_actions.size() > 15 ? m_actions.size() - 15 : 0;
  for (size_t i = nFirst; i < m_actions.size(); ++i) strText += "\n  " + m_actions[i];
  return strText;
}

TEST_F(SelectionRandom, PressesKeepTheWindowInLineWithItsRules) {
  SelectionModel::happened.clear();

  for (int nSeed = 1; nSeed <= kSeeds; ++nSeed) {
    CloseWindow();
    Open();
    m_random.seed(static_cast<unsigned>(nSeed));
    m_bSmall = nSeed % 2 == 0;
    m_model = {};
    m_actions.clear();
    BuildAnew();
    for (int i = 0; i < kActions; ++i) {
      Act();
      if (HasFatalFailure()) return;
      QCoreApplication::processEvents();
      const std::string strDifference = Difference();
      ASSERT_EQ("", strDifference) << "seed " << nSeed << ", action " << i << ", after" << LastActions();
    }
  }

  std::vector<std::string> wanted = {
      "ticks outlive a screen",
      "an unticked chat stays selected",
      "a part tick changes a row",
      "second column of a row",
      "second column of a file",
      "blank row",
      "a row without a selected node",
      "an app called Folder is emptied",
      "a partly ticked app loses its files",
      "a list shows part of an app",
      "a file gives the second column a box",
      "a key moves in category 2",
      "a key moves in category 3",
      "nothing is ticked",
      "something is ticked",
      "a size in Bytes",
      "a size in KB",
      "a size in MB",
      "a size in GB",
  };
  for (const char* pszBefore : {"0", "1", "2"}) {
    wanted.push_back(std::string("node's box from ") + pszBefore);
    wanted.push_back(std::string("node's text at ") + pszBefore);
    wanted.push_back(std::string("a list opens at ") + pszBefore);
    for (const char* pszAfter : {"0", "1", "2"}) {
      const std::string strChange = std::string(" from ") + pszBefore + " to " + pszAfter;
      for (const char* pszBy : {"a row", "an app", "a file"})
        wanted.push_back(pszBy + std::string(" takes the node") + strChange);
      wanted.push_back("a file takes the app" + strChange);
    }
  }
  for (const std::string& strWhat : wanted) EXPECT_LE(3, SelectionModel::happened[strWhat]) << strWhat;
}

}  // namespace
