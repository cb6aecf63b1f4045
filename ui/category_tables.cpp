#include "ui/category_tables.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "common/text.h"
#include "ui/cell_delegate.h"
#include "ui/key_ticks.h"
#include "ui/styles.h"

namespace {

constexpr int kRowHeight = 30;

constexpr char kFileIcon[] = ":/image/FileIcon/image.png";
constexpr QSize kPictureSize(750, 300);
constexpr QSize kAttachmentSize(700, 200);
constexpr QSize kLeastTextSize(200, 300);

template <typename Record>
U32 SizeOf(const QVariant& hidden) {
  return hidden.value<Record>().uFileSize;
}

template <typename Record>
QString PathOf(const QVariant& hidden) {
  return FromWide(hidden.value<Record>().wstrFilePath);
}

}  // namespace

const std::array<TableSpec, kCategoryCount + 1>& TableSpec::All() {
  static const std::vector<Column> fileColumns = {{"Name", 400}, {"Size", 300}};
  static const std::vector<Column> appColumns = {{"App Name", 400}, {"Type", 300}};
  const auto picture = [](const char* pszName, QLabel* DRUI::*pLabel, QSize labelSize, QSize pictureSize,
                          QString (*pfnPath)(const QVariant&), QLabel* DRUI::*pCaption = nullptr) {
    return TablePreview{pszName,   &DRUI::ShowPicture, pLabel,  nullptr,
                        labelSize, pictureSize,        pfnPath, pCaption};
  };
  const auto text = [](const char* pszName, QLabel* DRUI::*pLabel, QString (*pfnText)(const QVariant&)) {
    return TablePreview{pszName, &DRUI::ShowText, pLabel, nullptr, kLeastTextSize, QSize(), pfnText, nullptr};
  };
  const auto chat = [](const char* pszName, ChatView* DRUI::*pView,
                       void (DRUI::*pfnShow)(const TablePreview&, const QVariant&)) {
    return TablePreview{pszName, pfnShow, nullptr, pView, QSize(), QSize(), nullptr, nullptr};
  };
  // The words of the headers are the system's own: "Data" and "Photo" stand where one might expect others.
  static const std::array<TableSpec, kCategoryCount + 1> specs = {{
      {kCameraRoll, ":/image/photo.png", ":/image/photo.png", "m_pCameraTable", "cameraPage",
       &DRUI::m_pCameraTable, false, fileColumns, QSize(300, 180), &DRUI::cameraTableItemPress,
       &DRUI::cameraTableItemSelectChanged, table_fill::Camera,
       picture("m_pCameraPreview", &DRUI::m_pCameraPreview, QSize(750, 300), kPictureSize,
               PathOf<_IPHONE_CAMERA_INFO_>),
       &DRUI::m_mapSelCamera, SizeOf<_IPHONE_CAMERA_INFO_>},
      {kPhotoStream, ":/image/photostream.png", ":/image/photostream.png", "m_pPhotoStreamTable",
       "photoStreamPage", &DRUI::m_pPhotoStreamTable, false, fileColumns, QSize(300, 225),
       &DRUI::photoStreamTableItemPress, &DRUI::photoStreamTableItemSelectChanged, table_fill::PhotoStream,
       picture("m_pPhotoStreamPreview", &DRUI::m_pPhotoStreamPreview, QSize(750, 300), kPictureSize,
               PathOf<_IPHONE_CAMERA_INFO_>),
       &DRUI::m_mapSelPhotoStream, SizeOf<_IPHONE_CAMERA_INFO_>},
      {kAppPhotos, ":/image/appphoto.png", ":/image/appphoto.png", "m_pAppPhotosTable", "appPhotosPage",
       &DRUI::m_pAppPhotosTable, false, appColumns, QSize(300, 225), &DRUI::appPhotosTableItemPress,
       &DRUI::appPhotosTableItemSelectChanged, table_fill::AppPhotos, TablePreview(), nullptr, nullptr,
       &DRUI::m_mapSelAppPhotos, &DRUI::appPhotosTableItemSelectDoubleClick},
      {kAppVideos, ":/image/video.png", ":/image/video.png", "m_pAppVideosTable", "appVideosPage",
       &DRUI::m_pAppVideosTable, false, appColumns, QSize(300, 225), &DRUI::appVideosTableItemPress,
       &DRUI::appVideosTableItemSelectChanged, table_fill::AppVideos, TablePreview(), nullptr, nullptr,
       &DRUI::m_mapSelAppVideos, &DRUI::appVideosTableItemSelectDoubleClick},
      {kMessages, ":/image/message.png", nullptr, "m_pMessageTable", "messagePage", &DRUI::m_pMessageTable,
       true, std::vector<Column>{{"User Name", 120}, {"Phone Number", 150}, {"Data", 150}, {"Message", 280}},
       QSize(700, 225), &DRUI::messageTableItemPress, &DRUI::messageTableItemSelectChanged,
       table_fill::Messages, chat("m_pMessageWebView", &DRUI::m_pMessageWebView, &DRUI::ShowMessages),
       &DRUI::m_mapSelMessage},
      {kMessageAttachments, ":/image/messageatta.png", kFileIcon, "m_pMessAttachTable", "messAttachPage",
       &DRUI::m_pMessAttachTable, false, fileColumns, QSize(500, 225), &DRUI::messageAttachTableItemPress,
       &DRUI::messAttachTableItemSelectChanged, table_fill::MessageAttachments,
       picture("m_pMessAttachPreview", &DRUI::m_pMessAttachPreview, QSize(720, 200), kAttachmentSize,
               PathOf<_IPHONE_ATTACHMENTS_>),
       &DRUI::m_mapSelMessAttach, SizeOf<_IPHONE_ATTACHMENTS_>},
      {kContacts, ":/image/contact.png", ":/image/contact.png", "m_pContactsTable", "contactsPage",
       &DRUI::m_pContactsTable, true,
       std::vector<Column>{
           {"Name", 150}, {"Company", 100}, {"Phone", 150}, {"Email", 100}, {"Home Page", 200}},
       QSize(700, 225), &DRUI::contactsTableItemPress, &DRUI::contactsTableItemSelectChanged,
       table_fill::Contacts, text("m_pContactText", &DRUI::m_pContactText, preview_text::Contact),
       &DRUI::m_mapSelContacts},
      {kCallHistory, ":/image/phone.png", ":/image/phone.png", "m_pCallHistoryTable", "callHistoryPage",
       &DRUI::m_pCallHistoryTable, true,
       std::vector<Column>{{"Name", 150}, {"Photo", 150}, {"Data", 200}, {"Type", 150}, {"Duration", 200}},
       QSize(500, 225), &DRUI::callHistoryTableItemPress, &DRUI::callHistoryTableItemSelectChanged,
       table_fill::Calls, TablePreview(), &DRUI::m_mapSelCallHistory},
      {kNotes, ":/image/note.png", ":/image/note.png", "m_pNotesTable", "notesPage", &DRUI::m_pNotesTable,
       true, std::vector<Column>{{"Title", 150}, {"Date", 150}, {"Note", 350}}, QSize(650, 225),
       &DRUI::notesTableItemPress, &DRUI::notesTableItemSelectChanged, table_fill::Notes,
       text("m_pNoteText", &DRUI::m_pNoteText, preview_text::Note), &DRUI::m_mapSelNotes},
      {kWhatsApp, ":/image/whatsapp.png", kFileIcon, "m_pWhatsappTable", "whatsappPage",
       &DRUI::m_pWhatsappTable, true, std::vector<Column>{{"Chats", 300}, {"Name", 200}, {"Phone", 200}},
       QSize(700, 225), &DRUI::whatsappTableItemPress, &DRUI::whatsappMessageTableItemSelectChanged,
       table_fill::WhatsApp, chat("m_pWhatsappWebView", &DRUI::m_pWhatsappWebView, &DRUI::ShowChat),
       &DRUI::m_mapSelWhatsapp},
      {kWhatsAppAttachments, ":/image/whatsappatt.png", kFileIcon, "m_pWhatsappAttachTable",
       "whatsappAttachPage", &DRUI::m_pWhatsappAttachTable, false, fileColumns, QSize(500, 225),
       &DRUI::whatsappAttachTableItemPress, &DRUI::whatsappMessAttachTableItemSelectChanged,
       table_fill::WhatsAppAttachments,
       picture("m_pWhatsappAttachPreview", &DRUI::m_pWhatsappAttachPreview, QSize(720, 200), kAttachmentSize,
               PathOf<_WHATSAPP_ATTACHMENTS_>),
       &DRUI::m_mapSelWhatsappAttach, SizeOf<_WHATSAPP_ATTACHMENTS_>},
      {kAppFiles, nullptr, kFileIcon, "m_pAppsTable", "appFilesPage", &DRUI::m_pAppsTable, false,
       std::vector<Column>{{"File Name", 400}, {"Size", 300}}, QSize(300, 225), &DRUI::appsTableItemPress,
       &DRUI::appsTableItemSelectChanged, nullptr,
       picture("m_pAppFilePreview", &DRUI::m_pAppFilePreview, QSize(750, 200), kPictureSize,
               PathOf<_IPHONE_APP_FILE_INFO_>, &DRUI::m_pAppFileCaption),
       nullptr, SizeOf<_IPHONE_APP_FILE_INFO_>},
  }};
  return specs;
}

QTableWidget* DRUI::CreateTable(const TableSpec& spec) {
  auto* pTable = new KeyTickTable;
  this->*spec.pTable = pTable;
  pTable->setObjectName(spec.pszName);
  pTable->setAccessibleName(spec.nNumber == TableSpec::kAppFiles
                                ? QString("Files of the app")
                                : QString(Categories()[static_cast<size_t>(spec.nNumber)].pszLabel));
  CellDelegate::Install(pTable);
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
