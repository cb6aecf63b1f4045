#pragma once
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "backup/session.h"
#include "common/text.h"
#include "export/recovery.h"
#include "tests/support.h"

namespace orvandel {

/// A recovery with a temporary backup, templates and destination, which records the reports. Paths are
/// narrow.
class RecoveryTest : public testing::Test {
 protected:
  RecoveryTest() {
    m_folder.MakeFolder("backup");
    for (const char* pszName : {"CallHistory", "Notes", "contacts", "Sms", "WhatsApp"})
      WriteTemplate(pszName, "<head>\n{|content|}<tail>\n");
    UseBackup(m_folder.Path("backup"));
  }

  std::string Out() const { return m_folder.Path("out"); }
  /// @param strName without ".html".
  std::string TemplatePath(const std::string& strName) const {
    return m_folder.Path("program/template/" + strName + ".html");
  }
  void WriteTemplate(const std::string& strName, const std::string& strBytes) const {
    WriteFile(TemplatePath(strName), strBytes);
  }

  void UseBackup(const std::string& strPath, const std::string& strDisplayName = "Ann's phone") {
    __BACK_FILE_INFO__ info;
    info.strBackupPath = strPath;
    info.strDisplayName = strDisplayName;
    m_session.Init(&info);
  }

  void Begin(CRecovery& recovery, const std::string& strDestination) {
    recovery.SetWrittenFileHandler([this](const WrittenFile& file) { m_told.push_back(file); });
    recovery.Init(FromNarrow(strDestination), &m_session);
  }
  void Begin() { Begin(m_recovery, Out()); }

  /// Starts two recoveries into the destination within the same second.
  void BeginTwice(CRecovery& first, CRecovery& second) {
    do {
      Begin(first, Out());
      Begin(second, Out());
    } while (first.GetTimeStamp() != second.GetTimeStamp());
  }

  std::string Stamp() const { return ToNarrow(m_recovery.GetTimeStamp()); }

  /// Paths of the documents reported as written or failed, in order.
  std::vector<std::string> Written() const { return Told(true); }
  std::vector<std::string> Failed() const { return Told(false); }
  /// Reason of the first failure.
  std::string Reason() const {
    for (const WrittenFile& file : m_told) {
      if (!file.Succeeded()) return file.problem.strReason;
    }
    return {};
  }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
  CRecovery m_recovery{FromNarrow(m_folder.Path("program"))};
  std::vector<WrittenFile> m_told;

 private:
  std::vector<std::string> Told(bool bSucceeded) const {
    std::vector<std::string> paths;
    for (const WrittenFile& file : m_told) {
      if (file.Succeeded() == bSucceeded) paths.push_back(ToNarrow(file.qstrPath));
    }
    return paths;
  }
};

enum Direction { kReceived = 0, kSent = 1 };

constexpr unsigned int kHandle = 7;
constexpr char kDateText[] = "2014-01-01 00:00:00";

inline __MESSAGE_INFO__ Message(Direction direction, const std::string& strText, int nDeleted = 0,
                                const std::string& strName = "Ann Lee",
                                const std::string& strSender = "+49301") {
  __MESSAGE_INFO__ message;
  message.nDeleted = nDeleted;
  message.nIsFromMe = direction;
  message.nHandleId = kHandle;
  message.strDate = kDateText;
  message.strSender = strSender;
  message.strContactName = strName;
  message.strText = strText;
  return message;
}

inline __WHATSAPP_MESSAGE__ ChatMessage(Direction direction, const std::string& strText, int nDeleted = 0,
                                        const std::string& strName = "Ann Lee",
                                        const std::string& strPhone = "+49301") {
  __WHATSAPP_MESSAGE__ message;
  message.nDeleted = nDeleted;
  message.nIsFromMe = direction;
  message.nChatId = kHandle;
  message.strDate = kDateText;
  message.strName = strName;
  message.strPhone = strPhone;
  message.strContent = strText;
  message.strChatName = "Ann";
  message.strChatPhone = "+49302";
  return message;
}

inline __PERSON_CONTENT__ Person(const std::string& strName, const std::string& strPhone = "+49301",
                                 const std::string& strEmail = "a@example.net") {
  __PERSON_CONTENT__ person;
  person.strName = strName;
  person.strPhone = strPhone;
  person.strEmail = strEmail;
  person.strAddress = "Road 1";
  person.strUrl = "example.net";
  person.strSocial = "@ann";
  person.strCompany = "Mill";
  return person;
}

inline __CALLHISTORY__ Call(int nAnswered, int nDuration, const std::string& strName = "Ann Lee") {
  __CALLHISTORY__ call;
  call.nAnswered = nAnswered;
  call.nDuration = nDuration;
  call.strDate = kDateText;
  call.strAddress = "+49301";
  call.strName = strName;
  return call;
}

inline __NOTES__ Note(const std::string& strTitle, const std::string& strContent) {
  __NOTES__ note;
  note.strTitle = strTitle;
  note.strDate = kDateText;
  note.strContent = strContent;
  return note;
}

/// Writes one document of each kind that a recovery has.
inline void RecoverOneOfEach(CRecovery& recovery) {
  const MessageMap messages = {{kHandle, {Message(kReceived, "hello")}}};
  recovery.RecoveryMsg(&messages.at(kHandle).front(), messages);
  recovery.SaveMessage();
  const __PERSON_CONTENT__ person = Person("Ann Lee");
  recovery.RecoveryContacts(&person);
  recovery.SaveContactsCsv();
  recovery.SaveContacts();
  const __CALLHISTORY__ call = Call(1, 65);
  recovery.RecoveryCallHistory(&call);
  recovery.SaveCallHistory();
  const __NOTES__ note = Note("Milk", "two");
  recovery.RecoveryNotes(&note);
  recovery.SaveNotes();
  const WhatsAppMap chats = {{kHandle, {ChatMessage(kReceived, "hi")}}};
  recovery.RecoveryWhatsAppMsg(&chats.at(kHandle).front(), chats);
}

}  // namespace orvandel
