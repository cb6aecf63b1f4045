#include <QHeaderView>
#include <QTest>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

BackupBuilder::Info InfoWith(const char* pszName, const char* pszSerial) {
  BackupBuilder::Info info;
  info.displayName = pszName;
  info.serialNumber = pszSerial;
  return info;
}

class BackupTable : public WindowTest {
 protected:
  QTableWidget* Backups() { return Table("m_pBackupTable"); }

  /// Makes a backup look encrypted: its contacts store isn't SQLite.
  void WriteEncryptedBackup(const std::string& strName) {
    WriteEmptyBackup(strName);
    const QString qstrStore = BackupBuilder::fileId("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb");
    WriteFile(BackupPath(strName) + "/" + qstrStore.toStdString(), std::string(600, 'x'));
  }

  /// The icon of a cell, as painted.
  static QImage IconOf(const QTableWidgetItem* pItem) { return pItem->icon().pixmap(32, 32).toImage(); }
  static QImage Icon(const char* pszResource) { return QIcon(pszResource).pixmap(32, 32).toImage(); }
};

TEST_F(BackupTable, HasItsColumnsAndLook) {
  Open();

  const QTableWidget* pTable = Backups();
  const QHeaderView* pHeader = pTable->horizontalHeader();

  ASSERT_EQ(3, pTable->columnCount());
  EXPECT_EQ("Name", pTable->horizontalHeaderItem(0)->text());
  EXPECT_EQ("Last Backup Data", pTable->horizontalHeaderItem(1)->text());
  EXPECT_EQ("Serial Number", pTable->horizontalHeaderItem(2)->text());
  EXPECT_EQ(200, pTable->columnWidth(0));
  EXPECT_EQ(300, pTable->columnWidth(1));
  EXPECT_EQ(QSize(300, 225), pTable->minimumSize());
  EXPECT_TRUE(pTable->testAttribute(Qt::WA_MouseTracking));
  EXPECT_EQ(30, pHeader->height());
  EXPECT_EQ("Calibri 10/50", FontOf(pHeader));
  EXPECT_EQ(Qt::AlignCenter, pHeader->defaultAlignment());
  EXPECT_TRUE(pHeader->stretchLastSection());
  EXPECT_FALSE(pTable->verticalHeader()->isVisible());
  EXPECT_EQ(QAbstractItemView::SelectRows, pTable->selectionBehavior());
  EXPECT_EQ(QAbstractItemView::SingleSelection, pTable->selectionMode());
  EXPECT_EQ(QAbstractItemView::NoEditTriggers, pTable->editTriggers());
}

TEST_F(BackupTable, OneRecordFillsTheSingleRow) {
  WriteEmptyBackup("one", InfoWith("Anna's Phone", "F17ANNA"));
  Open();

  const QTableWidget* pTable = Backups();

  ASSERT_EQ(1, pTable->rowCount());
  EXPECT_EQ(std::vector<std::string>({"Anna's Phone", "2016-05-01 09:12:33", "F17ANNA"}), Cells(pTable, 0));
  EXPECT_EQ(50, pTable->rowHeight(0));
  EXPECT_EQ("Calibri 10/50", FontOf(pTable->item(0, 0)->font()));
  EXPECT_EQ(static_cast<int>(Qt::AlignCenter), pTable->item(0, 1)->textAlignment());
  EXPECT_EQ(static_cast<int>(Qt::AlignCenter), pTable->item(0, 2)->textAlignment());
  EXPECT_EQ(Icon(":/image/iPhone.png"), IconOf(pTable->item(0, 0)));
}

TEST_F(BackupTable, TheSecondRecordOfTheVectorIsInTheTopRow) {
  WriteEmptyBackup("a", InfoWith("First Folder", "1"));
  WriteEmptyBackup("b", InfoWith("Second Folder", "2"));
  std::vector<__BACK_FILE_INFO__> backups;
  Open();

  CIphoneBackupFile().GetBackFileInfo(backups);

  ASSERT_EQ(2u, backups.size());
  ASSERT_EQ(2, Backups()->rowCount());
  EXPECT_EQ(backups[1].strDisplayName, Backups()->item(0, 0)->text().toStdString());
  EXPECT_EQ(backups[0].strDisplayName, Backups()->item(1, 0)->text().toStdString());
}

TEST_F(BackupTable, EachCellStoresTheRecord) {
  WriteEmptyBackup("one", InfoWith("Anna's Phone", "F17ANNA"));
  Open();

  for (int nColumn = 0; nColumn < 3; ++nColumn) {
    const QVariant hidden = Backups()->item(0, nColumn)->data(Qt::UserRole);

    ASSERT_TRUE(hidden.canConvert<__BACK_FILE_INFO__>()) << nColumn;
    EXPECT_EQ("F17ANNA", hidden.value<__BACK_FILE_INFO__>().strSerialNumber) << nColumn;
    EXPECT_EQ(BackupPath("one"), hidden.value<__BACK_FILE_INFO__>().strBackupPath) << nColumn;
  }
}

TEST_F(BackupTable, AnEncryptedBackupShowsTheLock) {
  WriteEncryptedBackup("locked");
  Open();

  const QTableWidgetItem* pItem = Backups()->item(0, 0);

  ASSERT_NE(nullptr, pItem);
  EXPECT_TRUE(pItem->data(Qt::UserRole).value<__BACK_FILE_INFO__>().bEncrypted);
  EXPECT_EQ(Icon(":/image/iPhoneLock.png"), IconOf(pItem));
  EXPECT_NE(Icon(":/image/iPhone.png"), IconOf(pItem));
}

TEST_F(BackupTable, APressOnAnyCellSelectsTheBackupAndEnablesScan) {
  WriteEmptyBackup("one", InfoWith("Anna's Phone", "F17ANNA"));
  for (int nColumn = 0; nColumn < 3; ++nColumn) {
    Open();

    ClickRow(Backups(), 0, nColumn);

    EXPECT_EQ("F17ANNA", WindowAccess::ChosenBackup(Window()).strSerialNumber) << nColumn;
    EXPECT_TRUE(Find<QPushButton>("m_pScanButton")->isEnabled()) << nColumn;
    EXPECT_EQ(Layout2_main_button_style, Find<QPushButton>("m_pScanButton")->styleSheet()) << nColumn;
  }
}

TEST_F(BackupTable, APressOutsideTheRowsSelectsNothing) {
  WriteEmptyBackup("one");
  Open();

  Click(Backups()->viewport(), QPoint(20, 150));
  Window().iTunesTableItemPress(7, 0);
  Window().iTunesTableItemDoublePress(7, 0);

  EXPECT_FALSE(Find<QPushButton>("m_pScanButton")->isEnabled());
  EXPECT_EQ("", WindowAccess::ChosenBackup(Window()).strBackupPath);
  EXPECT_EQ(nullptr, WindowAccess::DataScreen(Window()));
}

TEST_F(BackupTable, ADoubleClickSelectsAndScans) {
  WriteEmptyBackup("one");
  Open();
  const QPoint place = Backups()->visualItemRect(Backups()->item(0, 1)).center();

  Click(Backups()->viewport(), place);
  QTest::mouseDClick(Backups()->viewport(), Qt::LeftButton, Qt::NoModifier, place);

  EXPECT_NE(nullptr, WindowAccess::DataScreen(Window()));
  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
}

TEST_F(BackupTable, ABackupAddedLaterIsNotListed) {
  WriteEmptyBackup("one");
  Open();

  WriteEmptyBackup("two");
  QCoreApplication::processEvents();

  EXPECT_EQ(1, Backups()->rowCount());
}

/// Whether a table shows something inside.
bool ShowsSomething(const QTableWidget* pTable) {
  const QImage image = pTable->viewport()->grab().toImage();
  const QColor ground = image.pixelColor(1, 1);
  for (int nY = 0; nY < image.height(); ++nY) {
    for (int nX = 0; nX < image.width(); ++nX) {
      if (image.pixelColor(nX, nY) != ground) return true;
    }
  }
  return false;
}

TEST_F(BackupTable, SaysSoWhileItIsEmpty) {
  Open();
  QTableWidget* pTable = Backups();

  ASSERT_EQ(0, pTable->rowCount());
  EXPECT_TRUE(ShowsSomething(pTable));
  EXPECT_FALSE(pTable->accessibleDescription().isEmpty());

  pTable->setShowGrid(false);
  pTable->setRowCount(1);  // an empty row: the hint is gone, and nothing else is there

  EXPECT_FALSE(ShowsSomething(pTable));
}

}  // namespace
