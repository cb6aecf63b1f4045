#pragma once
#include <QSize>
#include <QVariant>
#include <array>
#include <vector>

#include "ui/window.h"

namespace orvandel {

class RowWriter;

/// Fills the table of a category.
using TableFiller = void (*)(RowWriter& writer, const BackupRecords& records);

/// The preview of the current row: a picture above the table, or a hidden text or chat beside it.
struct TablePreview {
  const char* pszName = nullptr;  ///< object name; null if the table has no preview
  void (DRUI::*pfnShow)(const TablePreview& preview, const QVariant& hidden) = nullptr;
  QLabel* DRUI::*pLabel = nullptr;   ///< for a picture or a text
  ChatView* DRUI::*pView = nullptr;  ///< for a chat
  QSize labelSize;                   ///< fixed size of a picture, minimum size of a text
  QSize pictureSize;                 ///< bounds that wide pictures are scaled to; empty for a text
  /// Returns the path of a picture, or the whole text. Hidden data of another type is treated as an empty
  /// record.
  QString (*pfnContent)(const QVariant& hidden) = nullptr;
  QLabel* DRUI::*pCaption = nullptr;  ///< an empty label above the picture

  bool IsPicture() const { return !pictureSize.isEmpty(); }
};

/// Everything that differs between the tables of the data screen: one for each category, and one for the
/// file list of a single app.
struct TableSpec {
  struct Column {
    const char* pszTitle;
    int nWidth;
  };
  static constexpr int kAppFiles = kCategoryCount;  ///< number of the file list of an app

  int nNumber = 0;                    ///< category number, or kAppFiles
  const char* pszNodeIcon = nullptr;  ///< icon of the tree node; null for an app's file list
  const char* pszRowIcon = nullptr;   ///< icon of rows whose record isn't deleted; null for none
  const char* pszName = nullptr;      ///< object name of the table
  const char* pszPageName = nullptr;  ///< object name of the page
  QTableWidget* DRUI::*pTable = nullptr;
  bool bHorizontalPage = false;
  std::vector<Column> columns;
  QSize minimumSize;
  void (DRUI::*pfnPress)(int nRow, int nColumn) = nullptr;
  void (DRUI::*pfnSelect)() = nullptr;
  TableFiller pfnFill = nullptr;  ///< null for an app's file list
  TablePreview preview;
  SelectionMap DRUI::*pSelection = nullptr;  ///< null for the app tables
  /// Returns a record's size in bytes; null if the selection stores the row number instead.
  U32 (*pfnSize)(const QVariant& hidden) = nullptr;
  AppSelectionMap DRUI::*pAppSelection = nullptr;                 ///< set for the app tables
  void (DRUI::*pfnDoubleClick)(int nRow, int nColumn) = nullptr;  ///< set for the app tables

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

}  // namespace orvandel
