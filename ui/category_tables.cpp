#include "ui/category_tables.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "ui/styles.h"

namespace {

constexpr int kRowHeight = 30;

template <typename Record>
U32 SizeOf(const QVariant& hidden) {
  return hidden.value<Record>().uFileSize;
}

}  // namespace

const std::array<TableSpec, kCategoryCount + 1>& TableSpec::All() {
  static const std::vector<Column> fileColumns = {{"Name", 400}, {"Size", 300}};
  static const std::vector<Column> appColumns = {{"App Name", 400}, {"Type", 300}};
  // The words of the headers are the system's own: "Data" and "Photo" stand where one might expect others.
  static const std::array<TableSpec, kCategoryCount + 1> specs = {{
      {kCameraRoll, ":/image/photo.png", "m_pCameraTable", "cameraPage", &DRUI::m_pCameraTable, fileColumns,
       QSize(300, 180), &DRUI::cameraTableItemPress, &DRUI::cameraTableItemSelectChanged, nullptr,
       table_fill::Camera, &DRUI::m_mapSelCamera, SizeOf<_IPHONE_CAMERA_INFO_>, nullptr, nullptr, false},
      {kPhotoStream, ":/image/photostream.png", "m_pPhotoStreamTable", "photoStreamPage",
       &DRUI::m_pPhotoStreamTable, fileColumns, QSize(300, 225), &DRUI::photoStreamTableItemPress,
       &DRUI::photoStreamTableItemSelectChanged, nullptr, table_fill::PhotoStream, &DRUI::m_mapSelPhotoStream,
       SizeOf<_IPHONE_CAMERA_INFO_>, nullptr, nullptr, false},
      {kAppPhotos, ":/image/appphoto.png", "m_pAppPhotosTable", "appPhotosPage", &DRUI::m_pAppPhotosTable,
       appColumns, QSize(300, 225), &DRUI::appPhotosTableItemPress, &DRUI::appPhotosTableItemSelectChanged,
       &DRUI::appPhotosTableItemSelectDoubleClick, table_fill::AppPhotos, nullptr, nullptr,
       &DRUI::m_mapSelAppPhotos, &BackupRecords::m_mapAppPhotoFiles, false},
      {kAppVideos, ":/image/video.png", "m_pAppVideosTable", "appVideosPage", &DRUI::m_pAppVideosTable,
       appColumns, QSize(300, 225), &DRUI::appVideosTableItemPress, &DRUI::appVideosTableItemSelectChanged,
       &DRUI::appVideosTableItemSelectDoubleClick, table_fill::AppVideos, nullptr, nullptr,
       &DRUI::m_mapSelAppVideos, &BackupRecords::m_mapAppVideoFiles, false},
      {kMessages,
       ":/image/message.png",
       "m_pMessageTable",
       "messagePage",
       &DRUI::m_pMessageTable,
       {{"User Name", 120}, {"Phone Number", 150}, {"Data", 150}, {"Message", 280}},
       QSize(700, 225),
       &DRUI::messageTableItemPress,
       &DRUI::messageTableItemSelectChanged,
       nullptr,
       table_fill::Messages,
       &DRUI::m_mapSelMessage,
       nullptr,
       nullptr,
       nullptr,
       true},
      {kMessageAttachments, ":/image/messageatta.png", "m_pMessAttachTable", "messAttachPage",
       &DRUI::m_pMessAttachTable, fileColumns, QSize(500, 225), &DRUI::messageAttachTableItemPress,
       &DRUI::messAttachTableItemSelectChanged, nullptr, table_fill::MessageAttachments,
       &DRUI::m_mapSelMessAttach, SizeOf<_IPHONE_ATTACHMENTS_>, nullptr, nullptr, false},
      {kContacts,
       ":/image/contact.png",
       "m_pContactsTable",
       "contactsPage",
       &DRUI::m_pContactsTable,
       {{"Name", 150}, {"Company", 100}, {"Phone", 150}, {"Email", 100}, {"Home Page", 200}},
       QSize(700, 225),
       &DRUI::contactsTableItemPress,
       &DRUI::contactsTableItemSelectChanged,
       nullptr,
       table_fill::Contacts,
       &DRUI::m_mapSelContacts,
       nullptr,
       nullptr,
       nullptr,
       true},
      {kCallHistory,
       ":/image/phone.png",
       "m_pCallHistoryTable",
       "callHistoryPage",
       &DRUI::m_pCallHistoryTable,
       {{"Name", 150}, {"Photo", 150}, {"Data", 200}, {"Type", 150}, {"Duration", 200}},
       QSize(500, 225),
       &DRUI::callHistoryTableItemPress,
       &DRUI::callHistoryTableItemSelectChanged,
       nullptr,
       table_fill::Calls,
       &DRUI::m_mapSelCallHistory,
       nullptr,
       nullptr,
       nullptr,
       true},
      {kNotes,
       ":/image/note.png",
       "m_pNotesTable",
       "notesPage",
       &DRUI::m_pNotesTable,
       {{"Title", 150}, {"Date", 150}, {"Note", 350}},
       QSize(650, 225),
       &DRUI::notesTableItemPress,
       &DRUI::notesTableItemSelectChanged,
       nullptr,
       table_fill::Notes,
       &DRUI::m_mapSelNotes,
       nullptr,
       nullptr,
       nullptr,
       true},
      {kWhatsApp,
       ":/image/whatsapp.png",
       "m_pWhatsappTable",
       "whatsappPage",
       &DRUI::m_pWhatsappTable,
       {{"Chats", 300}, {"Name", 200}, {"Phone", 200}},
       QSize(700, 225),
       &DRUI::whatsappTableItemPress,
       &DRUI::whatsappMessageTableItemSelectChanged,
       nullptr,
       table_fill::WhatsApp,
       &DRUI::m_mapSelWhatsapp,
       nullptr,
       nullptr,
       nullptr,
       true},
      {kWhatsAppAttachments, ":/image/whatsappatt.png", "m_pWhatsappAttachTable", "whatsappAttachPage",
       &DRUI::m_pWhatsappAttachTable, fileColumns, QSize(500, 225), &DRUI::whatsappAttachTableItemPress,
       &DRUI::whatsappMessAttachTableItemSelectChanged, nullptr, table_fill::WhatsAppAttachments,
       &DRUI::m_mapSelWhatsappAttach, SizeOf<_WHATSAPP_ATTACHMENTS_>, nullptr, nullptr, false},
      {kAppFiles,
       nullptr,
       "m_pAppsTable",
       "appFilesPage",
       &DRUI::m_pAppsTable,
       {{"File Name", 400}, {"Size", 300}},
       QSize(300, 225),
       &DRUI::appsTableItemPress,
       &DRUI::appsTableItemSelectChanged,
       nullptr,
       nullptr,
       nullptr,
       SizeOf<_IPHONE_APP_FILE_INFO_>,
       nullptr,
       nullptr,
       false},
  }};
  return specs;
}

QTableWidget* DRUI::CreateTable(const TableSpec& spec) {
  auto* pTable = new QTableWidget;
  this->*spec.pTable = pTable;
  pTable->setObjectName(spec.pszName);
  pTable->setAccessibleName(spec.nNumber == TableSpec::kAppFiles
                                ? QString("Files of the app")
                                : QString(Categories()[static_cast<size_t>(spec.nNumber)].pszLabel));
  pTable->setAttribute(Qt::WA_MouseTracking);
  pTable->setColumnCount(static_cast<int>(spec.columns.size()));
  QStringList titles;
  for (size_t i = 0; i < spec.columns.size(); ++i) {
    pTable->setColumnWidth(static_cast<int>(i), spec.columns[i].nWidth);
    titles << spec.columns[i].pszTitle;
  }
  pTable->horizontalHeader()->setFixedHeight(25);
  pTable->horizontalHeader()->setFont(TextFont(10, 87));
  pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft);
  pTable->horizontalHeader()->setStretchLastSection(true);
  pTable->verticalHeader()->setVisible(false);
  // All rows have one height, so that a hundred thousand of them need no layout each.
  pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  pTable->verticalHeader()->setMinimumSectionSize(kRowHeight);
  pTable->verticalHeader()->setDefaultSectionSize(kRowHeight);
  pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  pTable->setSelectionMode(QAbstractItemView::SingleSelection);
  connect(pTable, &QTableWidget::cellClicked, this, spec.pfnPress);
  connect(pTable, &QTableWidget::itemSelectionChanged, this, spec.pfnSelect);
  if (spec.pfnDoubleClick) connect(pTable, &QTableWidget::cellDoubleClicked, this, spec.pfnDoubleClick);
  pTable->setMinimumSize(spec.minimumSize);
  pTable->setHorizontalHeaderLabels(titles);
  return pTable;
}

QTableWidget* DRUI::CreateCameraTable() {
  return CreateTable(TableSpec::Of(kCameraRoll));
}
QTableWidget* DRUI::CreatePhotoStreamTable() {
  return CreateTable(TableSpec::Of(kPhotoStream));
}
QTableWidget* DRUI::CreateAppPhotosTable() {
  return CreateTable(TableSpec::Of(kAppPhotos));
}
QTableWidget* DRUI::CreateAppVideosTable() {
  return CreateTable(TableSpec::Of(kAppVideos));
}
QTableWidget* DRUI::CreateAppsTable() {
  return CreateTable(TableSpec::Of(TableSpec::kAppFiles));
}
QTableWidget* DRUI::CreateMessageTable() {
  return CreateTable(TableSpec::Of(kMessages));
}
QTableWidget* DRUI::CreateMessAttachTable() {
  return CreateTable(TableSpec::Of(kMessageAttachments));
}
QTableWidget* DRUI::CreateContactsTable() {
  return CreateTable(TableSpec::Of(kContacts));
}
QTableWidget* DRUI::CreateCallHistoryTable() {
  return CreateTable(TableSpec::Of(kCallHistory));
}
QTableWidget* DRUI::CreateNotesTable() {
  return CreateTable(TableSpec::Of(kNotes));
}
QTableWidget* DRUI::CreateWhatsappTable() {
  return CreateTable(TableSpec::Of(kWhatsApp));
}
QTableWidget* DRUI::CreateWhatsappMessAttachTable() {
  return CreateTable(TableSpec::Of(kWhatsAppAttachments));
}
