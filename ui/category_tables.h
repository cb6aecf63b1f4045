#pragma once
#include <QSize>
#include <QVariant>
#include <array>
#include <vector>

#include "ui/window.h"

class RowWriter;

/// Puts the rows of a category into its table.
using TableFiller = void (*)(RowWriter& writer, const BackupRecords& records);

/// What shows the row in hand: a picture above the table, or a text or a chat beside it that stays out of
/// sight.
struct TablePreview {
  const char* pszName = nullptr;  ///< object name; null where a table has none
  void (DRUI::*pfnShow)(const TablePreview& preview, const QVariant& hidden) = nullptr;
  QLabel* DRUI::*pLabel = nullptr;   ///< of a picture or a text
  ChatView* DRUI::*pView = nullptr;  ///< of a chat
  QSize labelSize;                   ///< fixed for a picture, the least for a text
  QSize pictureSize;                 ///< wide pictures are scaled into it; empty for a text
  /// Of a picture its path, of a text all that it says. Hidden data of another kind gives an empty record's.
  QString (*pfnContent)(const QVariant& hidden) = nullptr;
  QLabel* DRUI::*pCaption = nullptr;  ///< an empty label above the picture

  bool IsPicture() const { return !pictureSize.isEmpty(); }
};

/// All that the tables of the data screen differ by. There is one for each category and one for the table
/// that lists the files of a single app.
struct TableSpec {
  struct Column {
    const char* pszTitle;
    int nWidth;
  };
  static constexpr int kAppFiles = kCategoryCount;  ///< number of the list of an app's files

  int nNumber = 0;                    ///< of the category, or kAppFiles
  const char* pszNodeIcon = nullptr;  ///< of the node in the tree; null for the list of an app's files
  const char* pszRowIcon = nullptr;   ///< of the rows of records that aren't deleted; null for none
  const char* pszName = nullptr;      ///< object name of the table
  const char* pszPageName = nullptr;  ///< object name of the page
  QTableWidget* DRUI::*pTable = nullptr;
  bool bHorizontalPage = false;
  std::vector<Column> columns;
  QSize minimumSize;
  void (DRUI::*pfnPress)(int nRow, int nColumn) = nullptr;
  void (DRUI::*pfnSelect)() = nullptr;
  TableFiller pfnFill = nullptr;  ///< null for the list of an app's files
  TablePreview preview;
  SelectionMap DRUI::*pSelection = nullptr;  ///< null for the app tables
  /// Bytes of a record; null where ticks hold the row instead.
  U32 (*pfnSize)(const QVariant& hidden) = nullptr;
  AppSelectionMap DRUI::*pAppSelection = nullptr;                 ///< of the app tables
  void (DRUI::*pfnDoubleClick)(int nRow, int nColumn) = nullptr;  ///< of the app tables

  bool IsAppTable() const { return pAppSelection != nullptr; }

  /// All tables: the categories in tree order, then the list of an app's files.
  static const std::array<TableSpec, kCategoryCount + 1>& All();
  static const TableSpec& Of(int nNumber) { return All()[static_cast<size_t>(nNumber)]; }

 private:
  static TableSpec CameraRoll();
  static TableSpec PhotoStream();
  static TableSpec AppPhotos();
  static TableSpec AppVideos();
  static TableSpec Messages();
  static TableSpec MessageAttachments();
  static TableSpec Contacts();
  static TableSpec CallHistory();
  static TableSpec Notes();
  static TableSpec WhatsApp();
  static TableSpec WhatsAppAttachments();
  static TableSpec AppFiles();
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

// What the texts beside the tables say of a record (ui/preview.cpp).
namespace preview_text {
QString Contact(const QVariant& hidden);
QString Note(const QVariant& hidden);
}  // namespace preview_text
