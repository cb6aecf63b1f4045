// What stands beside or above a table and shows the row in hand, and the file list of an app.

#include <QBoxLayout>
#include <QFile>
#include <QImageReader>
#include <QtWebKitWidgets/QWebFrame>
#include <QtWebKitWidgets/QWebView>

#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/row_writer.h"
#include "ui/sealed_page.h"
#include "ui/styles.h"

namespace {

constexpr int kWidestUnscaled = 700;
constexpr QSize kPictureSize(750, 300);
constexpr QSize kAttachmentSize(700, 200);
constexpr qint64 kMostPixels = 200LL * 1000 * 1000;  // of a picture that isn't decoded at a smaller size

constexpr char kReceivedScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-left left'>%1</p></div>\")";
constexpr char kSentScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-right right'>%1</p></div>\")";

QLabel* CreatePictureLabel(const char* pszName, int nWidth, int nHeight) {
  auto* pLabel = new QLabel;
  pLabel->setObjectName(pszName);
  pLabel->setAccessibleName("Preview");
  pLabel->setAlignment(Qt::AlignCenter);
  pLabel->setFixedSize(nWidth, nHeight);
  return pLabel;
}

QLabel* CreateTextLabel(const char* pszName) {
  auto* pLabel = new QLabel;
  pLabel->setObjectName(pszName);
  pLabel->setTextFormat(Qt::PlainText);
  pLabel->setWordWrap(true);
  pLabel->setFont(TextFont(12, 50));
  pLabel->setMinimumSize(200, 300);
  return pLabel;
}

QWebView* CreateChatView(const char* pszName) {
  auto* pView = new QWebView;
  pView->setObjectName(pszName);
  pView->setPage(new SealedPage(pView));
  QFile style("style.html");
  style.open(QIODevice::ReadOnly);
  pView->setHtml(QString::fromUtf8(style.readAll()), QUrl());
  return pView;
}

void RunScript(QWebView* pView, const QString& qstrScript) {
  pView->page()->mainFrame()->evaluateJavaScript(qstrScript);
}

/// The text goes into the script as it stands: one that ends the script's string loses its bubble.
void AddBubble(QWebView* pView, bool bReceived, const QString& qstrText) {
  RunScript(pView, QString(bReceived ? kReceivedScript : kSentScript).arg(qstrText));
}

/// A picture as the label shows it: as it is up to 700 wide, else scaled into a size. Null for what is no
/// picture. Large ones are decoded no larger than needed, so that memory stays bounded.
QPixmap LoadPicture(const QString& qstrPath, const QSize& size) {
  if (qstrPath.isEmpty()) return QPixmap();  // the record of a row that has none
  QImageReader reader(qstrPath);
  reader.setDecideFormatFromContent(true);
  const QSize full = reader.size();
  const bool bScaled = full.width() > kWidestUnscaled;
  if (bScaled && full.isValid()) reader.setScaledSize(full.scaled(size, Qt::KeepAspectRatio));
  if (static_cast<qint64>(full.width()) * full.height() > kMostPixels &&
      !reader.supportsOption(QImageIOHandler::ScaledSize))
    return QPixmap();
  QPixmap pixmap = QPixmap::fromImageReader(&reader);
  if (pixmap.width() > kWidestUnscaled)
    pixmap = pixmap.scaled(size, Qt::KeepAspectRatio, Qt::FastTransformation);
  return pixmap;
}

QString ContactText(const __PERSON_CONTENT__& person) {
  std::string strText = person.strName + "\n" + person.strPhone;
  // A person with a company shows the phone once more in its place.
  if (!person.strCompany.empty()) strText += "\n" + person.strPhone;
  for (const std::string* pText : {&person.strAddress, &person.strUrl, &person.strEmail}) {
    if (!pText->empty()) strText += "\n" + *pText;
  }
  return FromNarrow(strText);
}

}  // namespace

void DRUI::AddPreview(const TableSpec& spec, QBoxLayout* pLayout, QTableWidget* pTable) {
  switch (spec.nNumber) {
    case kCameraRoll:
      pLayout->addWidget(m_pCameraPreview = CreatePictureLabel("m_pCameraPreview", 750, 300));
      break;
    case kPhotoStream:
      pLayout->addWidget(m_pPhotoStreamPreview = CreatePictureLabel("m_pPhotoStreamPreview", 750, 300));
      break;
    case kMessageAttachments:
      pLayout->addWidget(m_pMessAttachPreview = CreatePictureLabel("m_pMessAttachPreview", 720, 200));
      break;
    case kWhatsAppAttachments:
      pLayout->addWidget(m_pWhatsappAttachPreview = CreatePictureLabel("m_pWhatsappAttachPreview", 720, 200));
      break;
    case TableSpec::kAppFiles:
      pLayout->addWidget(m_pAppFileCaption = new QLabel);
      m_pAppFileCaption->setObjectName("m_pAppFileCaption");
      pLayout->addWidget(m_pAppFilePreview = CreatePictureLabel("m_pAppFilePreview", 750, 200));
      break;
    default:
      break;
  }
  pLayout->addWidget(pTable);
  // What stands beside a table is kept current and stays out of sight: the table takes the width.
  QWidget* pHidden = nullptr;
  switch (spec.nNumber) {
    case kMessages:
      pHidden = m_pMessageWebView = CreateChatView("m_pMessageWebView");
      break;
    case kWhatsApp:
      pHidden = m_pWhatsappWebView = CreateChatView("m_pWhatsappWebView");
      break;
    case kContacts:
      pHidden = m_pContactText = CreateTextLabel("m_pContactText");
      break;
    case kNotes:
      pHidden = m_pNoteText = CreateTextLabel("m_pNoteText");
      break;
    default:
      return;
  }
  pLayout->addWidget(pHidden);
  pHidden->setVisible(false);
}

void DRUI::ShowPicture(QLabel* pLabel, const std::u16string& wstrPath, const QSize& size) {
  const QPixmap pixmap = LoadPicture(FromWide(wstrPath), size);
  pLabel->setAlignment(Qt::AlignCenter);
  pLabel->setPixmap(pixmap);
}

void DRUI::ShowMessages(unsigned int nHandleId) {
  RunScript(m_pMessageWebView, "document.body.innerHTML=''");
  RunScript(m_pMessageWebView, "document.getElementById(\"content\").removeAttribute(\"disabled\")");
  const auto it = m_records.m_mapMessage.find(nHandleId);
  if (it == m_records.m_mapMessage.end()) return;
  for (const __MESSAGE_INFO__& message : it->second) {
    const bool bReceived = message.nIsFromMe == 0;
    AddBubble(m_pMessageWebView, bReceived,
              FromNarrow(message.strDate + (bReceived ? message.strContactName : "Me") + "<br />" +
                         message.strText));
  }
}

void DRUI::ShowChat(unsigned int nChatId) {
  // The view of the messages is cleared and not that of the chats, so that each chat adds to those before.
  // And each bubble holds all texts up to its own.
  RunScript(m_pMessageWebView, "document.body.innerHTML=''");
  const auto it = m_records.m_mapWhatsApp.find(nChatId);
  if (it == m_records.m_mapWhatsApp.end()) return;
  std::string strTexts;
  for (const __WHATSAPP_MESSAGE__& message : it->second) {
    strTexts += message.strContent;
    AddBubble(m_pWhatsappWebView, message.nIsFromMe == 0, FromNarrow(strTexts));
  }
}

void DRUI::tableItemClick(QTableWidgetItem* pItem) {
  if (!pItem) return;
  const QVariant hidden = pItem->data(Qt::UserRole);
  switch (m_nCurrentCategory) {
    case kCameraRoll:
      return ShowPicture(m_pCameraPreview, hidden.value<_IPHONE_CAMERA_INFO_>().wstrFilePath, kPictureSize);
    case kPhotoStream:
      return ShowPicture(m_pPhotoStreamPreview, hidden.value<_IPHONE_CAMERA_INFO_>().wstrFilePath,
                         kPictureSize);
    case kAppPhotos:
    case kAppVideos:
      return ShowPicture(m_pAppFilePreview, hidden.value<_IPHONE_APP_FILE_INFO_>().wstrFilePath,
                         kPictureSize);
    case kMessages:
      return ShowMessages(static_cast<unsigned int>(hidden.toInt()));
    case kMessageAttachments:
      return ShowPicture(m_pMessAttachPreview, hidden.value<_IPHONE_ATTACHMENTS_>().wstrFilePath,
                         kAttachmentSize);
    case kContacts:
      return m_pContactText->setText(ContactText(hidden.value<__PERSON_CONTENT__>()));
    case kNotes: {
      const auto note = hidden.value<__NOTES__>();
      return m_pNoteText->setText(FromNarrow("Title:\n" + note.strTitle + "\nNote:\n" + note.strContent));
    }
    case kWhatsApp:
      return ShowChat(hidden.toUInt());
    case kWhatsAppAttachments:
      return ShowPicture(m_pWhatsappAttachPreview, hidden.value<_WHATSAPP_ATTACHMENTS_>().wstrFilePath,
                         kAttachmentSize);
    default:
      return;
  }
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
  if (!selected.isEmpty()) m_pCurrentAppItem = selected.first();  // the table of videos doesn't keep it
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
  const AppFileMap& apps = m_records.*spec.pApps;
  const auto it = apps.find(ToNarrow(m_strPressedApp));
  if (it != apps.end()) {
    {
      RowWriter writer(m_pAppsTable);
      table_fill::AppFiles(writer, it->second);
    }
    tableItemClick(m_pAppsTable->item(0, 0));
  }
  ApplyAppRowState(spec, pAppItem->checkState());
}

void DRUI::appPhotosTableItemSelectDoubleClick(int nRow, int) {
  OpenAppFiles(kAppPhotos, kAppVideos, nRow);
}
void DRUI::appVideosTableItemSelectDoubleClick(int nRow, int) {
  OpenAppFiles(kAppVideos, kAppPhotos, nRow);
}
