#include "cli/scan_json.h"

#include <QJsonObject>

#include "backup/categories.h"
#include "cli/json_stream.h"
#include "cli/json_text.h"
#include "common/text.h"

namespace orvandel {

namespace {

template <typename File>
QJsonObject FileObject(const File& file) {
  return {{"name", FromNarrow(file.strFileName)},
          {"size", static_cast<qint64>(file.uFileSize)},
          {"path", FromWide(file.wstrFilePath)}};
}

QJsonObject PersonObject(const __PERSON_CONTENT__& person) {
  return {{"name", FromNarrow(person.strName)},
          {"company", FromNarrow(person.strCompany)},
          {"phone", FromNarrow(person.strPhone)},
          {"email", FromNarrow(person.strEmail)},
          {"url", FromNarrow(person.strUrl)}};
}

QJsonObject CallObject(const __CALLHISTORY__& call) {
  return {{"answered", call.nAnswered},
          {"duration", call.nDuration},
          {"date", FromNarrow(call.strDate)},
          {"address", FromNarrow(call.strAddress)},
          {"name", FromNarrow(call.strName)}};
}

QJsonObject NoteObject(const __NOTES__& note) {
  return {{"date", FromNarrow(note.strDate)},
          {"title", FromNarrow(note.strTitle)},
          {"content", FromNarrow(note.strContent)}};
}

QJsonObject MessageObject(const __MESSAGE_INFO__& message) {
  return {{"rowId", message.nRowId},
          {"fromMe", message.nIsFromMe != 0},
          {"date", FromNarrow(message.strDate)},
          {"sender", FromNarrow(message.strSender)},
          {"contact", FromNarrow(message.strContactName)},
          {"text", FromNarrow(message.strText)}};
}

QJsonObject ChatMessageObject(const __WHATSAPP_MESSAGE__& message) {
  return {{"fromMe", message.nIsFromMe != 0},
          {"date", FromNarrow(message.strDate)},
          {"name", FromNarrow(message.strName)},
          {"phone", FromNarrow(message.strPhone)},
          {"text", FromNarrow(message.strContent)}};
}

template <typename Record, typename ToObject>
void PrintArray(JsonStream& json, const QString& qstrKey, const std::vector<Record>& records,
                ToObject toObject) {
  json.BeginArray(qstrKey);
  for (const Record& record : records) json.Element(toObject(record));
  json.EndArray();
}

void PrintApps(JsonStream& json, const QString& qstrKey, const AppFileMap& apps) {
  json.BeginObject(qstrKey);
  for (const auto& [strApp, files] : apps)
    PrintArray(json, FromNarrow(strApp), files, FileObject<_IPHONE_APP_FILE_INFO_>);
  json.EndObject();
}

void PrintManifest(JsonStream& json, const Catalogue& manifest) {
  std::string strEntry;
  json.BeginArray("manifest");
  for (const __MBDB_FILE__& entry : manifest) {
    strEntry = "{\"id\":";
    AppendJsonText(entry.strFileId, strEntry);
    strEntry += ",\"name\":";
    AppendJsonText(entry.strFileName, strEntry);
    strEntry += '}';
    json.FormattedElement(strEntry);
  }
  json.EndArray();
}

void PrintMessages(JsonStream& json, const MessageMap& conversations) {
  json.BeginArray("messages");
  for (const auto& [nHandle, messages] : conversations) {
    json.BeginElement();
    json.Member("handle", static_cast<qint64>(nHandle));
    PrintArray(json, "messages", messages, MessageObject);
    json.EndElement();
  }
  json.EndArray();
}

void PrintChats(JsonStream& json, const WhatsAppMap& chats) {
  json.BeginArray("whatsapp");
  for (const auto& [nChat, messages] : chats) {
    json.BeginElement();
    json.Member("chatId", static_cast<qint64>(nChat));
    json.Member("title", FromNarrow(messages.front().strChatTitle));
    json.Member("name", FromNarrow(messages.front().strChatName));
    json.Member("phone", FromNarrow(messages.front().strChatPhone));
    PrintArray(json, "messages", messages, ChatMessageObject);
    json.EndElement();
  }
  json.EndArray();
}

void PrintBackup(JsonStream& json, const QString& qstrPath, const __BACK_FILE_INFO__& info) {
  json.Member("backup", QJsonObject{{"displayName", FromNarrow(info.strDisplayName)},
                                    {"lastBackupDate", FromNarrow(info.strLastBackupDate)},
                                    {"phoneNumber", FromNarrow(info.strPhoneNumber)},
                                    {"serialNumber", FromNarrow(info.strSerialNumber)},
                                    {"path", qstrPath},
                                    {"encrypted", info.bEncrypted},
                                    {"productVersionAbove11", info.bProductVersionAbove11}});
}

}  // namespace

void PrintScanJson(OpenBackup& backup, bool bManifest) {
  const BackupRecords& records = backup.records;
  JsonStream json;
  PrintBackup(json, backup.qstrPath, *backup.session.GetSelectBackUpFileInfo());
  json.Member("manifestStatus", backup.nManifestStatus);
  json.Member("manifestEntries", static_cast<qint64>(backup.session.GetManifest().size()));
  QJsonObject counts;
  for (const Category& category : Categories())
    counts[category.pszLabel] = static_cast<qint64>(category.pfnCount(records));
  json.Member("counts", counts);
  PrintArray(json, "cameraRoll", records.m_vecCamera, FileObject<_IPHONE_CAMERA_INFO_>);
  PrintArray(json, "photoStream", records.m_vecPhotoStream, FileObject<_IPHONE_CAMERA_INFO_>);
  PrintApps(json, "appPhotos", records.m_mapAppPhotoFiles);
  PrintApps(json, "appVideos", records.m_mapAppVideoFiles);
  PrintMessages(json, records.m_mapMessage);
  PrintArray(json, "messageAttachments", records.m_vecMessageAttachment, FileObject<_IPHONE_ATTACHMENTS_>);
  PrintArray(json, "contacts", records.m_vecContact, PersonObject);
  PrintArray(json, "calls", records.m_vecCall, CallObject);
  PrintArray(json, "notes", records.m_vecNote, NoteObject);
  PrintChats(json, records.m_mapWhatsApp);
  PrintArray(json, "whatsappAttachments", records.m_vecWhatsAppAttachment,
             FileObject<_WHATSAPP_ATTACHMENTS_>);
  const std::vector<WrittenFile> failed = AllLosses(backup);
  if (!failed.empty()) {
    PrintArray(json, "failed", failed, [](const WrittenFile& file) {
      return QJsonObject{{"name", file.qstrPath}, {"reason", file.Reason()}};
    });
  }
  if (!backup.leftOut.IsEmpty()) json.Member("leftOut", LeftOutObject(backup.leftOut));
  if (bManifest) PrintManifest(json, backup.session.GetManifest());
}

}  // namespace orvandel
