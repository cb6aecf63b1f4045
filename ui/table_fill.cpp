// Fills the tables. Deleted records come first, in a style of their own.

#include "common/format.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/row_writer.h"

using namespace orvandel;

namespace {

constexpr char kFolderText[] = "Folder";

template <typename File>
void AddFiles(RowWriter& writer, const std::vector<File>& files) {
  writer.SetRowCount(files.size());
  for (const File& file : files)
    writer.Add({{FromNarrow(file.strFileName), FromNarrow(GetFileSizeString(file.uFileSize))},
                QVariant::fromValue(file)});
}

void AddApps(RowWriter& writer, const AppFileMap& apps) {
  writer.SetRowCount(apps.size());
  for (const auto& [strApp, files] : apps) {
    const QString qstrApp = FromNarrow(strApp);
    writer.Add({{qstrApp, kFolderText}, qstrApp});
  }
}

/// Adds the rows of deleted records, then those of live ones, each group in list order.
template <typename List, typename IsDeleted, typename AddRow>
void AddSplit(RowWriter& writer, const List& list, IsDeleted isDeleted, AddRow addRow) {
  writer.SetRowCount(list.size());
  for (const bool bDeleted : {true, false}) {
    for (const auto& element : list) {
      if (isDeleted(element) == bDeleted) addRow(element, bDeleted);
    }
  }
}

template <typename Record>
bool IsDeletedRecord(const Record& record) {
  return record.nDeleted != 0;
}

/// A conversation counts as deleted if any of its records is.
template <typename Conversation>
bool IsDeletedConversation(const Conversation& conversation) {
  for (const auto& record : conversation.second) {
    if (record.nDeleted != 0) return true;
  }
  return false;
}

/// Adds a row for each conversation, showing its first record.
template <typename Map, typename Cells>
void AddConversations(RowWriter& writer, const Map& conversations, Cells cells) {
  using Conversation = typename Map::value_type;
  AddSplit(writer, conversations, IsDeletedConversation<Conversation>,
           [&](const Conversation& conversation, bool bDeleted) {
             if (conversation.second.empty()) return writer.AddBlank();
             const unsigned int nKey = conversation.first;
             writer.Add({cells(conversation.second.front()), QVariant::fromValue(nKey), bDeleted, true});
           });
}

QString CallLength(const __CALLHISTORY__& call, bool bDeleted) {
  // A deleted call shows its time even if that is 0.
  if (call.nDuration != 0 || bDeleted) return FromNarrow(GetTimeStringA(call.nDuration));
  return call.nAnswered == 0 ? "Canceled" : "Missed";
}

}  // namespace

namespace orvandel {

void table_fill::Camera(RowWriter& writer, const BackupRecords& records) {
  AddFiles(writer, records.m_vecCamera);
}

void table_fill::PhotoStream(RowWriter& writer, const BackupRecords& records) {
  AddFiles(writer, records.m_vecPhotoStream);
}

void table_fill::AppPhotos(RowWriter& writer, const BackupRecords& records) {
  AddApps(writer, records.m_mapAppPhotoFiles);
}

void table_fill::AppVideos(RowWriter& writer, const BackupRecords& records) {
  AddApps(writer, records.m_mapAppVideoFiles);
}

void table_fill::AppFiles(RowWriter& writer, const std::vector<_IPHONE_APP_FILE_INFO_>& files) {
  AddFiles(writer, files);
}

void table_fill::MessageAttachments(RowWriter& writer, const BackupRecords& records) {
  AddFiles(writer, records.m_vecMessageAttachment);
}

void table_fill::WhatsAppAttachments(RowWriter& writer, const BackupRecords& records) {
  AddFiles(writer, records.m_vecWhatsAppAttachment);
}

void table_fill::Messages(RowWriter& writer, const BackupRecords& records) {
  AddConversations(writer, records.m_mapMessage, [](const __MESSAGE_INFO__& message) {
    return QStringList{FromNarrow(message.strContactName), FromNarrow(message.strSender),
                       FromNarrow(message.strDate), FromNarrow(message.strText)};
  });
}

void table_fill::WhatsApp(RowWriter& writer, const BackupRecords& records) {
  AddConversations(writer, records.m_mapWhatsApp, [](const __WHATSAPP_MESSAGE__& message) {
    return QStringList{FromNarrow(message.strChatTitle),
                       FromNarrow(message.strChatName.empty() ? message.strName : message.strChatName),
                       FromNarrow(message.strChatPhone.empty() ? message.strPhone : message.strChatPhone)};
  });
}

void table_fill::Contacts(RowWriter& writer, const BackupRecords& records) {
  AddSplit(writer, records.m_vecContact, IsDeletedRecord<__PERSON_CONTENT__>,
           [&](const __PERSON_CONTENT__& person, bool bDeleted) {
             // Deliberate: the last cell of a deleted contact is the address rather than the home page.
             const std::string& strLast = bDeleted ? person.strAddress : person.strUrl;
             writer.Add({{FromNarrow(person.strName), FromNarrow(person.strCompany),
                          FromNarrow(person.strPhone), FromNarrow(person.strEmail), FromNarrow(strLast)},
                         QVariant::fromValue(person),
                         bDeleted,
                         true});
           });
}

void table_fill::Calls(RowWriter& writer, const BackupRecords& records) {
  AddSplit(writer, records.m_vecCall, IsDeletedRecord<__CALLHISTORY__>,
           [&](const __CALLHISTORY__& call, bool bDeleted) {
             writer.Add({{FromNarrow(call.strName), FromNarrow(call.strAddress), FromNarrow(call.strDate),
                          call.nAnswered == 0 ? "Outgoing" : "Incoming", CallLength(call, bDeleted)},
                         QVariant::fromValue(call),
                         bDeleted,
                         true});
           });
}

void table_fill::Notes(RowWriter& writer, const BackupRecords& records) {
  AddSplit(writer, records.m_vecNote, IsDeletedRecord<__NOTES__>, [&](const __NOTES__& note, bool bDeleted) {
    writer.Add({{FromNarrow(note.strTitle), FromNarrow(note.strDate), FromNarrow(note.strContent)},
                QVariant::fromValue(note),
                bDeleted,
                true});
  });
}

}  // namespace orvandel

void DRUI::FillTable(const TableSpec& spec) {
  RowWriter writer(this->*spec.pTable, spec.pszRowIcon);
  spec.pfnFill(writer, m_records);
}
