#include <QHeaderView>

#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

struct TableCase {
  const char* pszName;
  QTableWidget* (DRUI::*pfnCreate)();
  std::vector<std::pair<std::string, int>> columns;
  QSize minimumSize;
};

void PrintTo(const TableCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

const std::vector<TableCase>& AllTables() {
  static const std::vector<TableCase> tables = {
      {"m_pCameraTable", &DRUI::CreateCameraTable, {{"Name", 400}, {"Size", 300}}, {300, 180}},
      {"m_pPhotoStreamTable", &DRUI::CreatePhotoStreamTable, {{"Name", 400}, {"Size", 300}}, {300, 225}},
      {"m_pAppPhotosTable", &DRUI::CreateAppPhotosTable, {{"App Name", 400}, {"Type", 300}}, {300, 225}},
      {"m_pAppVideosTable", &DRUI::CreateAppVideosTable, {{"App Name", 400}, {"Type", 300}}, {300, 225}},
      {"m_pAppsTable", &DRUI::CreateAppsTable, {{"File Name", 400}, {"Size", 300}}, {300, 225}},
      {"m_pMessageTable",
       &DRUI::CreateMessageTable,
       {{"User Name", 120}, {"Phone Number", 150}, {"Data", 150}, {"Message", 280}},
       {700, 225}},
      {"m_pMessAttachTable", &DRUI::CreateMessAttachTable, {{"Name", 400}, {"Size", 300}}, {500, 225}},
      {"m_pContactsTable",
       &DRUI::CreateContactsTable,
       {{"Name", 150}, {"Company", 100}, {"Phone", 150}, {"Email", 100}, {"Home Page", 200}},
       {700, 225}},
      {"m_pCallHistoryTable",
       &DRUI::CreateCallHistoryTable,
       {{"Name", 150}, {"Photo", 150}, {"Data", 200}, {"Type", 150}, {"Duration", 200}},
       {500, 225}},
      {"m_pNotesTable", &DRUI::CreateNotesTable, {{"Title", 150}, {"Date", 150}, {"Note", 350}}, {650, 225}},
      {"m_pWhatsappTable",
       &DRUI::CreateWhatsappTable,
       {{"Chats", 300}, {"Name", 200}, {"Phone", 200}},
       {700, 225}},
      {"m_pWhatsappAttachTable",
       &DRUI::CreateWhatsappMessAttachTable,
       {{"Name", 400}, {"Size", 300}},
       {500, 225}},
  };
  return tables;
}

/// How often a slot of the window is connected to a signal of a table.
int Receivers(const QTableWidget* pTable, const char* pszSignal) {
  struct Counter : QTableWidget {
    using QTableWidget::receivers;
  };
  return (pTable->*static_cast<int (QObject::*)(const char*) const>(&Counter::receivers))(pszSignal);
}

class CategoryTables : public WindowTest, public testing::WithParamInterface<TableCase> {};

TEST_P(CategoryTables, HaveTheirHeadersWidthsAndMinimumSizes) {
  Open();

  // A new table, because the last column stretches once the table is laid out.
  const std::unique_ptr<QTableWidget> pTable((Window().*GetParam().pfnCreate)());
  std::vector<std::pair<std::string, int>> columns;
  pTable->horizontalHeader()->setStretchLastSection(false);
  for (int i = 0; i < pTable->columnCount(); ++i)
    columns.emplace_back(pTable->horizontalHeaderItem(i)->text().toStdString(), pTable->columnWidth(i));

  EXPECT_EQ(GetParam().columns, columns);
  EXPECT_EQ(GetParam().minimumSize, pTable->minimumSize());
  EXPECT_EQ(GetParam().pszName, pTable->objectName());
  EXPECT_EQ(nullptr, pTable->parentWidget());
}

TEST_P(CategoryTables, ShareOneLook) {
  OpenDataScreen();

  const QTableWidget* pTable = Table(GetParam().pszName);
  const QHeaderView* pHeader = pTable->horizontalHeader();

  EXPECT_TRUE(pTable->testAttribute(Qt::WA_MouseTracking));
  EXPECT_EQ(25, pHeader->minimumHeight());
  EXPECT_EQ(25, pHeader->maximumHeight());
  EXPECT_EQ("Calibri 10/87", FontOf(pHeader));
  EXPECT_TRUE(pHeader->defaultAlignment() & Qt::AlignLeft);
  EXPECT_TRUE(pHeader->stretchLastSection());
  EXPECT_TRUE(pTable->verticalHeader()->isHidden());
  EXPECT_EQ(QAbstractItemView::SelectRows, pTable->selectionBehavior());
  EXPECT_EQ(QAbstractItemView::SingleSelection, pTable->selectionMode());
  EXPECT_EQ(QAbstractItemView::NoEditTriggers, pTable->editTriggers());
  EXPECT_EQ(0, pTable->rowCount());
}

TEST_P(CategoryTables, NotifyTheWindowOfPressesAndSelections) {
  OpenDataScreen();
  const std::string strName = GetParam().pszName;
  const bool bApps = strName == "m_pAppPhotosTable" || strName == "m_pAppVideosTable";

  const QTableWidget* pTable = Table(GetParam().pszName);

  EXPECT_EQ(1, Receivers(pTable, SIGNAL(cellClicked(int, int))));
  EXPECT_EQ(1, Receivers(pTable, SIGNAL(itemSelectionChanged())));
  EXPECT_EQ(bApps ? 1 : 0, Receivers(pTable, SIGNAL(cellDoubleClicked(int, int))));
}

INSTANTIATE_TEST_SUITE_P(Each, CategoryTables, testing::ValuesIn(AllTables()),
                         [](const testing::TestParamInfo<TableCase>& info) {
                           return std::string(info.param.pszName + 3);
                         });

}  // namespace
