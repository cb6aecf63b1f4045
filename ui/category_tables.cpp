#include "ui/category_tables.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "common/text.h"
#include "ui/cell_delegate.h"
#include "ui/focus_ring.h"
#include "ui/key_ticks.h"
#include "ui/styles.h"

using namespace orvandel;

namespace orvandel {

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

std::vector<TableSpec::Column> FileColumns() {
  return {{"Name", 400}, {"Size", 300}};
}

std::vector<TableSpec::Column> AppColumns() {
  return {{"App Name", 400}, {"Type", 300}};
}

}  // namespace

// The header texts are deliberate, including "Data" and "Photo" in unexpected columns.

TableSpec TableSpec::CameraRoll() {
  TableSpec spec;
  spec.nNumber = kCameraRoll;
  spec.pszNodeIcon = ":/image/photo.png";
  spec.pszRowIcon = ":/image/photo.png";
  spec.pszName = "m_pCameraTable";
  spec.pszPageName = "cameraPage";
  spec.pTable = &DRUI::m_pCameraTable;
  spec.columns = FileColumns();
  spec.minimumSize = QSize(300, 180);
  spec.pfnPress = &DRUI::cameraTableItemPress;
  spec.pfnSelect = &DRUI::cameraTableItemSelectChanged;
  spec.pfnFill = table_fill::Camera;
  spec.preview.pszName = "m_pCameraPreview";
  spec.preview.pfnShow = &DRUI::ShowPicture;
  spec.preview.pLabel = &DRUI::m_pCameraPreview;
  spec.preview.labelSize = QSize(750, 300);
  spec.preview.pictureSize = kPictureSize;
  spec.preview.pfnContent = PathOf<_IPHONE_CAMERA_INFO_>;
  spec.pSelection = &DRUI::m_mapSelCamera;
  spec.pfnSize = SizeOf<_IPHONE_CAMERA_INFO_>;
  return spec;
}

TableSpec TableSpec::PhotoStream() {
  TableSpec spec;
  spec.nNumber = kPhotoStream;
  spec.pszNodeIcon = ":/image/photostream.png";
  spec.pszRowIcon = ":/image/photostream.png";
  spec.pszName = "m_pPhotoStreamTable";
  spec.pszPageName = "photoStreamPage";
  spec.pTable = &DRUI::m_pPhotoStreamTable;
  spec.columns = FileColumns();
  spec.minimumSize = QSize(300, 225);
  spec.pfnPress = &DRUI::photoStreamTableItemPress;
  spec.pfnSelect = &DRUI::photoStreamTableItemSelectChanged;
  spec.pfnFill = table_fill::PhotoStream;
  spec.preview.pszName = "m_pPhotoStreamPreview";
  spec.preview.pfnShow = &DRUI::ShowPicture;
  spec.preview.pLabel = &DRUI::m_pPhotoStreamPreview;
  spec.preview.labelSize = QSize(750, 300);
  spec.preview.pictureSize = kPictureSize;
  spec.preview.pfnContent = PathOf<_IPHONE_CAMERA_INFO_>;
  spec.pSelection = &DRUI::m_mapSelPhotoStream;
  spec.pfnSize = SizeOf<_IPHONE_CAMERA_INFO_>;
  return spec;
}

TableSpec TableSpec::AppPhotos() {
  TableSpec spec;
  spec.nNumber = kAppPhotos;
  spec.pszNodeIcon = ":/image/appphoto.png";
  spec.pszRowIcon = ":/image/appphoto.png";
  spec.pszName = "m_pAppPhotosTable";
  spec.pszPageName = "appPhotosPage";
  spec.pTable = &DRUI::m_pAppPhotosTable;
  spec.columns = AppColumns();
  spec.minimumSize = QSize(300, 225);
  spec.pfnPress = &DRUI::appPhotosTableItemPress;
  spec.pfnSelect = &DRUI::appPhotosTableItemSelectChanged;
  spec.pfnFill = table_fill::AppPhotos;
  spec.pAppSelection = &DRUI::m_mapSelAppPhotos;
  spec.pfnDoubleClick = &DRUI::appPhotosTableItemSelectDoubleClick;
  return spec;
}

TableSpec TableSpec::AppVideos() {
  TableSpec spec;
  spec.nNumber = kAppVideos;
  spec.pszNodeIcon = ":/image/video.png";
  spec.pszRowIcon = ":/image/video.png";
  spec.pszName = "m_pAppVideosTable";
  spec.pszPageName = "appVideosPage";
  spec.pTable = &DRUI::m_pAppVideosTable;
  spec.columns = AppColumns();
  spec.minimumSize = QSize(300, 225);
  spec.pfnPress = &DRUI::appVideosTableItemPress;
  spec.pfnSelect = &DRUI::appVideosTableItemSelectChanged;
  spec.pfnFill = table_fill::AppVideos;
  spec.pAppSelection = &DRUI::m_mapSelAppVideos;
  spec.pfnDoubleClick = &DRUI::appVideosTableItemSelectDoubleClick;
  return spec;
}

TableSpec TableSpec::Messages() {
  TableSpec spec;
  spec.nNumber = kMessages;
  spec.pszNodeIcon = ":/image/message.png";
  spec.pszName = "m_pMessageTable";
  spec.pszPageName = "messagePage";
  spec.pTable = &DRUI::m_pMessageTable;
  spec.bHorizontalPage = true;
  spec.columns = {{"User Name", 120}, {"Phone Number", 150}, {"Data", 150}, {"Message", 280}};
  spec.minimumSize = QSize(700, 225);
  spec.pfnPress = &DRUI::messageTableItemPress;
  spec.pfnSelect = &DRUI::messageTableItemSelectChanged;
  spec.pfnFill = table_fill::Messages;
  spec.preview.pszName = "m_pMessageWebView";
  spec.preview.pfnShow = &DRUI::ShowMessages;
  spec.preview.pView = &DRUI::m_pMessageWebView;
  spec.pSelection = &DRUI::m_mapSelMessage;
  return spec;
}

TableSpec TableSpec::MessageAttachments() {
  TableSpec spec;
  spec.nNumber = kMessageAttachments;
  spec.pszNodeIcon = ":/image/messageatta.png";
  spec.pszRowIcon = kFileIcon;
  spec.pszName = "m_pMessAttachTable";
  spec.pszPageName = "messAttachPage";
  spec.pTable = &DRUI::m_pMessAttachTable;
  spec.columns = FileColumns();
  spec.minimumSize = QSize(500, 225);
  spec.pfnPress = &DRUI::messageAttachTableItemPress;
  spec.pfnSelect = &DRUI::messAttachTableItemSelectChanged;
  spec.pfnFill = table_fill::MessageAttachments;
  spec.preview.pszName = "m_pMessAttachPreview";
  spec.preview.pfnShow = &DRUI::ShowPicture;
  spec.preview.pLabel = &DRUI::m_pMessAttachPreview;
  spec.preview.labelSize = QSize(720, 200);
  spec.preview.pictureSize = kAttachmentSize;
  spec.preview.pfnContent = PathOf<_IPHONE_ATTACHMENTS_>;
  spec.pSelection = &DRUI::m_mapSelMessAttach;
  spec.pfnSize = SizeOf<_IPHONE_ATTACHMENTS_>;
  return spec;
}

TableSpec TableSpec::Contacts() {
  TableSpec spec;
  spec.nNumber = kContacts;
  spec.pszNodeIcon = ":/image/contact.png";
  spec.pszRowIcon = ":/image/contact.png";
  spec.pszName = "m_pContactsTable";
  spec.pszPageName = "contactsPage";
  spec.pTable = &DRUI::m_pContactsTable;
  spec.bHorizontalPage = true;
  spec.columns = {{"Name", 150}, {"Company", 100}, {"Phone", 150}, {"Email", 100}, {"Home Page", 200}};
  spec.minimumSize = QSize(700, 225);
  spec.pfnPress = &DRUI::contactsTableItemPress;
  spec.pfnSelect = &DRUI::contactsTableItemSelectChanged;
  spec.pfnFill = table_fill::Contacts;
  spec.preview.pszName = "m_pContactText";
  spec.preview.pfnShow = &DRUI::ShowText;
  spec.preview.pLabel = &DRUI::m_pContactText;
  spec.preview.labelSize = kLeastTextSize;
  spec.preview.pfnContent = preview_text::Contact;
  spec.pSelection = &DRUI::m_mapSelContacts;
  return spec;
}

TableSpec TableSpec::CallHistory() {
  TableSpec spec;
  spec.nNumber = kCallHistory;
  spec.pszNodeIcon = ":/image/phone.png";
  spec.pszRowIcon = ":/image/phone.png";
  spec.pszName = "m_pCallHistoryTable";
  spec.pszPageName = "callHistoryPage";
  spec.pTable = &DRUI::m_pCallHistoryTable;
  spec.bHorizontalPage = true;
  spec.columns = {{"Name", 150}, {"Photo", 150}, {"Data", 200}, {"Type", 150}, {"Duration", 200}};
  spec.minimumSize = QSize(500, 225);
  spec.pfnPress = &DRUI::callHistoryTableItemPress;
  spec.pfnSelect = &DRUI::callHistoryTableItemSelectChanged;
  spec.pfnFill = table_fill::Calls;
  spec.pSelection = &DRUI::m_mapSelCallHistory;
  return spec;
}

TableSpec TableSpec::Notes() {
  TableSpec spec;
  spec.nNumber = kNotes;
  spec.pszNodeIcon = ":/image/note.png";
  spec.pszRowIcon = ":/image/note.png";
  spec.pszName = "m_pNotesTable";
  spec.pszPageName = "notesPage";
  spec.pTable = &DRUI::m_pNotesTable;
  spec.bHorizontalPage = true;
  spec.columns = {{"Title", 150}, {"Date", 150}, {"Note", 350}};
  spec.minimumSize = QSize(650, 225);
  spec.pfnPress = &DRUI::notesTableItemPress;
  spec.pfnSelect = &DRUI::notesTableItemSelectChanged;
  spec.pfnFill = table_fill::Notes;
  spec.preview.pszName = "m_pNoteText";
  spec.preview.pfnShow = &DRUI::ShowText;
  spec.preview.pLabel = &DRUI::m_pNoteText;
  spec.preview.labelSize = kLeastTextSize;
  spec.preview.pfnContent = preview_text::Note;
  spec.pSelection = &DRUI::m_mapSelNotes;
  return spec;
}

TableSpec TableSpec::WhatsApp() {
  TableSpec spec;
  spec.nNumber = kWhatsApp;
  spec.pszNodeIcon = ":/image/whatsapp.png";
  spec.pszRowIcon = kFileIcon;
  spec.pszName = "m_pWhatsappTable";
  spec.pszPageName = "whatsappPage";
  spec.pTable = &DRUI::m_pWhatsappTable;
  spec.bHorizontalPage = true;
  spec.columns = {{"Chats", 300}, {"Name", 200}, {"Phone", 200}};
  spec.minimumSize = QSize(700, 225);
  spec.pfnPress = &DRUI::whatsappTableItemPress;
  spec.pfnSelect = &DRUI::whatsappMessageTableItemSelectChanged;
  spec.pfnFill = table_fill::WhatsApp;
  spec.preview.pszName = "m_pWhatsappWebView";
  spec.preview.pfnShow = &DRUI::ShowChat;
  spec.preview.pView = &DRUI::m_pWhatsappWebView;
  spec.pSelection = &DRUI::m_mapSelWhatsapp;
  return spec;
}

TableSpec TableSpec::WhatsAppAttachments() {
  TableSpec spec;
  spec.nNumber = kWhatsAppAttachments;
  spec.pszNodeIcon = ":/image/whatsappatt.png";
  spec.pszRowIcon = kFileIcon;
  spec.pszName = "m_pWhatsappAttachTable";
  spec.pszPageName = "whatsappAttachPage";
  spec.pTable = &DRUI::m_pWhatsappAttachTable;
  spec.columns = FileColumns();
  spec.minimumSize = QSize(500, 225);
  spec.pfnPress = &DRUI::whatsappAttachTableItemPress;
  spec.pfnSelect = &DRUI::whatsappMessAttachTableItemSelectChanged;
  spec.pfnFill = table_fill::WhatsAppAttachments;
  spec.preview.pszName = "m_pWhatsappAttachPreview";
  spec.preview.pfnShow = &DRUI::ShowPicture;
  spec.preview.pLabel = &DRUI::m_pWhatsappAttachPreview;
  spec.preview.labelSize = QSize(720, 200);
  spec.preview.pictureSize = kAttachmentSize;
  spec.preview.pfnContent = PathOf<_WHATSAPP_ATTACHMENTS_>;
  spec.pSelection = &DRUI::m_mapSelWhatsappAttach;
  spec.pfnSize = SizeOf<_WHATSAPP_ATTACHMENTS_>;
  return spec;
}

TableSpec TableSpec::AppFiles() {
  TableSpec spec;
  spec.nNumber = kAppFiles;
  spec.pszRowIcon = kFileIcon;
  spec.pszName = "m_pAppsTable";
  spec.pszPageName = "appFilesPage";
  spec.pTable = &DRUI::m_pAppsTable;
  spec.columns = {{"File Name", 400}, {"Size", 300}};
  spec.minimumSize = QSize(300, 225);
  spec.pfnPress = &DRUI::appsTableItemPress;
  spec.pfnSelect = &DRUI::appsTableItemSelectChanged;
  spec.preview.pszName = "m_pAppFilePreview";
  spec.preview.pfnShow = &DRUI::ShowPicture;
  spec.preview.pLabel = &DRUI::m_pAppFilePreview;
  spec.preview.labelSize = QSize(750, 200);
  spec.preview.pictureSize = kPictureSize;
  spec.preview.pfnContent = PathOf<_IPHONE_APP_FILE_INFO_>;
  spec.preview.pCaption = &DRUI::m_pAppFileCaption;
  spec.pfnSize = SizeOf<_IPHONE_APP_FILE_INFO_>;
  return spec;
}

const std::array<TableSpec, kCategoryCount + 1>& TableSpec::All() {
  static const std::array<TableSpec, kCategoryCount + 1> specs = {
      CameraRoll(),          PhotoStream(), AppPhotos(),   AppVideos(), Messages(),
      MessageAttachments(),  Contacts(),    CallHistory(), Notes(),     WhatsApp(),
      WhatsAppAttachments(), AppFiles()};
  return specs;
}

}  // namespace orvandel

QTableWidget* DRUI::CreateTable(const TableSpec& spec) {
  auto* pTable = new KeyTickTable;
  this->*spec.pTable = pTable;
  pTable->setObjectName(spec.pszName);
  pTable->setAccessibleName(spec.nNumber == TableSpec::kAppFiles
                                ? QString("Files of the app")
                                : QString(Categories()[static_cast<size_t>(spec.nNumber)].pszLabel));
  CellDelegate::Install(pTable);
  FocusRing::Install(pTable);
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
  // A fixed row height avoids a layout per row in tables of 100,000 rows.
  pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  pTable->verticalHeader()->setMinimumSectionSize(kRowHeight);
  pTable->verticalHeader()->setDefaultSectionSize(kRowHeight);
  pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  pTable->setSelectionMode(QAbstractItemView::SingleSelection);
  connect(pTable, &QTableWidget::cellClicked, this, spec.pfnPress);
  connect(pTable, &QTableWidget::itemSelectionChanged, this, spec.pfnSelect);
  if (spec.pfnDoubleClick) connect(pTable, &QTableWidget::cellDoubleClicked, this, spec.pfnDoubleClick);
  if (spec.nNumber == TableSpec::kAppFiles) connect(pTable, &KeyTickTable::Left, this, &DRUI::LeaveAppFiles);
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
