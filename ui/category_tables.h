#pragma once
#include <QSize>
#include <QVariant>
#include <array>
#include <vector>

#include "ui/window.h"

class RowWriter;

/// Puts the rows of a category into its table.
using TableFiller = void (*)(RowWriter& writer, const BackupRecords& records);

/// All that the tables of the data screen differ by. One row for each category, in tree order, and one for
/// the table that lists the files of a single app.
struct TableSpec {
  struct Column {
    const char* pszTitle;
    int nWidth;
  };
  static constexpr int kAppFiles = kCategoryCount;  ///< number of the list of an app's files

  int nNumber;              ///< of the category, or kAppFiles
  const char* pszNodeIcon;  ///< of the node in the tree; null for the list of an app's files
  const char* pszName;      ///< object name of the table
  const char* pszPageName;  ///< object name of the page
  QTableWidget* DRUI::*pTable;
  std::vector<Column> columns;
  QSize minimumSize;
  void (DRUI::*pfnPress)(int nRow, int nColumn);
  void (DRUI::*pfnSelect)();
  void (DRUI::*pfnDoubleClick)(int nRow, int nColumn);  ///< null but for the app tables
  TableFiller pfnFill;
  SelectionMap DRUI::*pSelection;          ///< null for the app tables
  U32 (*pfnSize)(const QVariant& hidden);  ///< bytes of a row's record; null where ticks hold the row instead
  AppSelectionMap DRUI::*pAppSelection;    ///< of the app tables
  AppFileMap BackupRecords::*pApps;        ///< of the app tables
  bool bHorizontalPage;

  bool IsAppTable() const { return pAppSelection != nullptr; }

  /// All tables: the categories in tree order, then the list of an app's files.
  static const std::array<TableSpec, kCategoryCount + 1>& All();
  static const TableSpec& Of(int nNumber) { return All()[static_cast<size_t>(nNumber)]; }
};

// What fills the tables (ui/table_fill.cpp).
namespace table_fill {
void Camera(RowWriter& writer, const BackupRecords& records);
void PhotoStream(RowWriter& writer, const BackupRecords& records);
void AppPhotos(RowWriter& writer, const BackupRecords& records);
void AppVideos(RowWriter& writer, const BackupRecords& records);
void Messages(RowWriter& writer, const BackupRecords& records);
void MessageAttachments(RowWriter& writer, const BackupRecords& records);
void Contacts(RowWriter& writer, const BackupRecords& records);
void Calls(RowWriter& writer, const BackupRecords& records);
void Notes(RowWriter& writer, const BackupRecords& records);
void WhatsApp(RowWriter& writer, const BackupRecords& records);
void WhatsAppAttachments(RowWriter& writer, const BackupRecords& records);
/// The files of one app.
void AppFiles(RowWriter& writer, const std::vector<_IPHONE_APP_FILE_INFO_>& files);
}  // namespace table_fill
