// The preview of the current row, beside or above a table, and the file list of an app.

#include <QBoxLayout>
#include <QFile>
#include <QImageReader>

#include "common/file.h"
#include "common/places.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/chat_view.h"
#include "ui/icon_file.h"
#include "ui/row_writer.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr int kWidestUnscaled = 700;
// Limits on the size in a picture's header, so that memory and time stay bounded whatever a file claims.
// Every format is decoded at full size up to the first. Above it, a JPEG is scaled while decoding, up to the
// second (no other reader can do that); other formats are decoded at full size up to the third, or half of
// it for deep pixels. Larger pictures aren't shown.
constexpr qint64 kMostPixelsWhole = 8LL * 1000 * 1000;
constexpr qint64 kMostPixelsScaled = 100LL * 1000 * 1000;
constexpr qint64 kMostPixels = 50LL * 1000 * 1000;

/// Returns the cost of decoding a picture in 32-bit pixels, from its header; -1 if unknown.
/// @param format the reader's format; the reader itself doesn't report it after it has read the size.
qint64 PixelsOf(const QImageReader& reader, const QByteArray& format, const QSize& full) {
  if (format == "ico" || format == "cur") return PixelsOfIcon(*reader.device());
  const bool bDeep = QImage::toPixelFormat(reader.imageFormat()).bitsPerPixel() > 32;
  return static_cast<qint64>(full.width()) * full.height() * (bDeep ? 2 : 1);
}

QLabel* CreatePictureLabel(const TablePreview& preview) {
  auto* pLabel = new QLabel;
  pLabel->setAccessibleName("Preview");
  pLabel->setAlignment(Qt::AlignCenter);
  pLabel->setFixedSize(preview.labelSize);
  return pLabel;
}

QLabel* CreateTextLabel(const TablePreview& preview) {
  auto* pLabel = new QLabel;
  pLabel->setTextFormat(Qt::PlainText);
  pLabel->setWordWrap(true);
  pLabel->setFont(TextFont(12, 50));
  pLabel->setMinimumSize(preview.labelSize);
  return pLabel;
}

/// Path of the page that the chat views start from: it lies beside the program, whatever the working
/// directory.
QString StylePage() {
  return FromNarrow(ProgramFolder() + "style.html");
}

/// Returns a picture as the label shows it: unscaled up to a width of 700, else scaled to fit a size. Null if
/// the file isn't a picture or is too large.
QPixmap LoadPicture(const QString& qstrPath, const QSize& size) {
  Result<OpenedFile> opened = OpenBackupFile(ToNarrow(qstrPath));
  QFile file;
  if (!opened || !file.open(opened->descriptor.Release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
    return QPixmap();                   // also for the empty path of a row without a record
  QImageReader::setAllocationLimit(0);  // the limits above hold
  QImageReader reader(&file);
  reader.setDecideFormatFromContent(true);
  if (!reader.canRead()) return QPixmap();
  const QByteArray format = reader.format();
  const QSize full = reader.size();
  // SVG isn't shown: it may refer to other files and take unbounded time to render.
  if (!full.isValid() || format.startsWith("svg")) return QPixmap();
  const bool bScales = format == "jpeg" && full.width() > kWidestUnscaled;
  const qint64 nPixels = PixelsOf(reader, format, full);
  if (nPixels < 0 || nPixels > (bScales ? kMostPixelsScaled : kMostPixels)) return QPixmap();
  if (bScales && nPixels > kMostPixelsWhole) reader.setScaledSize(full.scaled(size, Qt::KeepAspectRatio));
  QPixmap pixmap = QPixmap::fromImageReader(&reader);
  if (pixmap.width() > kWidestUnscaled)
    pixmap = pixmap.scaled(size, Qt::KeepAspectRatio, Qt::FastTransformation);
  return pixmap;
}

}  // namespace

namespace orvandel {

QString preview_text::Contact(const QVariant& hidden) {
  const auto person = hidden.value<__PERSON_CONTENT__>();
  std::string strText = person.strName + "\n" + person.strPhone;
  // Deliberate: a contact with a company shows the phone number again in its place.
  if (!person.strCompany.empty()) strText += "\n" + person.strPhone;
  for (const std::string* pText : {&person.strAddress, &person.strUrl, &person.strEmail}) {
    if (!pText->empty()) strText += "\n" + *pText;
  }
  return FromNarrow(strText);
}

QString preview_text::Note(const QVariant& hidden) {
  const auto note = hidden.value<__NOTES__>();
  return FromNarrow("Title:\n" + note.strTitle + "\nNote:\n" + note.strContent);
}

}  // namespace orvandel

void DRUI::AddPreview(const TablePreview& preview, QBoxLayout* pLayout, QTableWidget* pTable) {
  if (!preview.pszName) return pLayout->addWidget(pTable);
  QWidget* pPreview = nullptr;
  if (preview.pView)
    pPreview = this->*preview.pView = new ChatView(StylePage());
  else
    pPreview = this->*preview.pLabel =
                   preview.IsPicture() ? CreatePictureLabel(preview) : CreateTextLabel(preview);
  pPreview->setObjectName(preview.pszName);
  if (preview.pCaption) {
    pLayout->addWidget(this->*preview.pCaption = new QLabel);
    (this->*preview.pCaption)->setObjectName("m_pAppFileCaption");
  }
  if (preview.IsPicture()) {
    pLayout->addWidget(pPreview);
    pLayout->addWidget(pTable);
    return;
  }
  // Previews beside a table are updated but hidden; the table takes the full width.
  pLayout->addWidget(pTable);
  pLayout->addWidget(pPreview);
  pPreview->setVisible(false);
}

void DRUI::ShowPicture(const TablePreview& preview, const QVariant& hidden) {
  QLabel* pLabel = this->*preview.pLabel;
  pLabel->setAlignment(Qt::AlignCenter);
  pLabel->setPixmap(LoadPicture(preview.pfnContent(hidden), preview.pictureSize));
}

void DRUI::ShowText(const TablePreview& preview, const QVariant& hidden) {
  (this->*preview.pLabel)->setText(preview.pfnContent(hidden));
}

void DRUI::ShowMessages(const TablePreview& preview, const QVariant& hidden) {
  ChatView* pView = this->*preview.pView;
  pView->Clear();
  pView->Enable();
  const auto it = m_records.m_mapMessage.find(static_cast<unsigned int>(hidden.toInt()));
  if (it == m_records.m_mapMessage.end()) return;
  for (const __MESSAGE_INFO__& message : it->second) {
    const bool bReceived = message.nIsFromMe == 0;
    const std::string strText =
        message.strDate + (bReceived ? message.strContactName : "Me") + "<br />" + message.strText;
    if (!pView->AddBubble(bReceived, FromNarrow(strText))) return;
  }
}

void DRUI::ShowChat(const TablePreview& preview, const QVariant& hidden) {
  // Deliberate: clears the view of messages rather than that of chats, so chats accumulate, and each bubble
  // contains all texts up to its own.
  m_pMessageWebView->Clear();
  const auto it = m_records.m_mapWhatsApp.find(hidden.toUInt());
  if (it == m_records.m_mapWhatsApp.end()) return;
  QString qstrTexts;
  for (const __WHATSAPP_MESSAGE__& message : it->second) {
    qstrTexts += FromNarrow(message.strContent);
    if (!(this->*preview.pView)->AddBubble(message.nIsFromMe == 0, qstrTexts)) return;
  }
}

void DRUI::tableItemClick(QTableWidgetItem* pItem) {
  if (!pItem) return;
  const TableSpec& shown = TableSpec::Of(m_nCurrentCategory);
  const TablePreview& preview = (shown.IsAppTable() ? TableSpec::Of(TableSpec::kAppFiles) : shown).preview;
  if (preview.pfnShow) (this->*preview.pfnShow)(preview, pItem->data(Qt::UserRole));
}

void DRUI::ShowSelected(const QTableWidget* pTable) {
  const QList<QTableWidgetItem*> selected = pTable->selectedItems();
  if (!selected.isEmpty()) tableItemClick(selected.first());
}

void DRUI::cameraTableItemSelectChanged() {
  ShowSelected(m_pCameraTable);
}
void DRUI::photoStreamTableItemSelectChanged() {
  ShowSelected(m_pPhotoStreamTable);
}
void DRUI::appVideosTableItemSelectChanged() {
  ShowSelected(m_pAppVideosTable);
}
void DRUI::appsTableItemSelectChanged() {
  ShowSelected(m_pAppsTable);
}
void DRUI::messageTableItemSelectChanged() {
  ShowSelected(m_pMessageTable);
}
void DRUI::messAttachTableItemSelectChanged() {
  ShowSelected(m_pMessAttachTable);
}
void DRUI::contactsTableItemSelectChanged() {
  ShowSelected(m_pContactsTable);
}
void DRUI::callHistoryTableItemSelectChanged() {
  ShowSelected(m_pCallHistoryTable);
}
void DRUI::notesTableItemSelectChanged() {
  ShowSelected(m_pNotesTable);
}
void DRUI::whatsappMessageTableItemSelectChanged() {
  ShowSelected(m_pWhatsappTable);
}
void DRUI::whatsappMessAttachTableItemSelectChanged() {
  ShowSelected(m_pWhatsappAttachTable);
}

void DRUI::appPhotosTableItemSelectChanged() {
  const QList<QTableWidgetItem*> selected = m_pAppPhotosTable->selectedItems();
  if (!selected.isEmpty()) m_pCurrentAppItem = selected.first();  // the video table doesn't do this
  ShowSelected(m_pAppPhotosTable);
}

void DRUI::OpenAppFiles(CategoryNumber nNumber, CategoryNumber nPreviewNumber, int nRow) {
  const TableSpec& spec = TableSpec::Of(nNumber);
  m_nPressedCategory = nNumber;
  const QTableWidgetItem* pAppItem = (this->*spec.pTable)->item(nRow, 0);
  if (!pAppItem) return;
  m_strPressedApp = pAppItem->text();
  m_nCurrentCategory = nPreviewNumber;
  m_pAppsTable->setRowCount(0);
  m_pPageStack->setCurrentWidget(m_pAppsTable->parentWidget());
  const AppFileMap& apps = m_records.*Categories()[spec.nNumber].pApps;
  const auto it = apps.find(ToNarrow(m_strPressedApp));
  if (it != apps.end()) {
    {
      RowWriter writer(m_pAppsTable, TableSpec::Of(TableSpec::kAppFiles).pszRowIcon);
      table_fill::AppFiles(writer, it->second);
    }
    tableItemClick(m_pAppsTable->item(0, 0));
  }
  ApplyAppRowState(spec, pAppItem->checkState());
  m_pAppsTable->setFocus();
}

void DRUI::LeaveAppFiles() {
  QTreeWidgetItem* pNode = m_pCategoryTree->currentItem();
  if (!pNode) return;
  treeItemClick(pNode, 0);
  QWidget* pPage = m_pPageStack->currentWidget();
  if (auto* pTable = pPage->findChild<QTableWidget*>()) pTable->setFocus();
}

void DRUI::appPhotosTableItemSelectDoubleClick(int nRow, int) {
  OpenAppFiles(kAppPhotos, kAppVideos, nRow);
}
void DRUI::appVideosTableItemSelectDoubleClick(int nRow, int) {
  OpenAppFiles(kAppVideos, kAppPhotos, nRow);
}
