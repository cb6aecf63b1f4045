// Contacts, calls and notes: one page for each category, a row for each record.

#include <algorithm>
#include <initializer_list>

#include "common/format.h"
#include "common/text.h"
#include "export/recovery.h"
#include "export/replace.h"

using namespace orvandel;

namespace {

constexpr char kContactsCsvHead[] =
    "Name,PhoneOne,PhoneTwo,PhoneThree,PhoneFour,EmailOne,EmailTwo,EmailThree,EmailFour,"
    "Address,Url,Social,Company,Department,Job Title,Birthday,Note,\n";

std::string TableRow(std::initializer_list<const std::string*> cells) {
  std::string strRow = "\t<tr>";
  for (const std::string* pCell : cells) strRow.append("<td>").append(*pCell).append("</td>");
  return strRow.append("</tr>\r\n");
}

/// The values of one kind as columns: line feeds become commas, then padded with commas to four columns.
/// Further values run into the next columns.
std::string CsvColumns(std::string strValues) {
  static constexpr int kColumns = 4;
  ReplaceEvery(strValues, "\n", ",");
  int nPadding = kColumns - static_cast<int>(std::count(strValues.begin(), strValues.end(), ','));
  if (!strValues.empty()) {
    strValues += ',';
    --nPadding;
  }
  return strValues.append(static_cast<size_t>(std::max(nPadding, 0)), ',');
}

/// The first digit of the hours only: the wide text is read as narrow, which ends at its first zero byte.
/// Required for output compatibility.
std::string FirstDigitOfDuration(int nSeconds) {
  return {static_cast<char>(GetTimeString(nSeconds).front())};
}

std::string CallLength(const __CALLHISTORY__& call) {
  if (call.nDuration != 0) return FirstDigitOfDuration(call.nDuration);
  return call.nAnswered == 0 ? "Canceled" : "Missed";
}

}  // namespace

void CRecovery::RecoveryContacts(const __PERSON_CONTENT__* pPerson) {
  MakeFolder("/Contacts/" + m_strTimeStamp + '/');
  std::string strPhones = pPerson->strPhone;
  ReplaceEvery(strPhones, "\n", "<br />");
  m_strContactsBody += TableRow({&pPerson->strName, &strPhones, &pPerson->strEmail, &pPerson->strAddress,
                                 &pPerson->strUrl, &pPerson->strSocial, &pPerson->strCompany});
  // Assigned, not appended: the text holds only the latest contact.
  m_strContactsCsv = kContactsCsvHead;
  m_strContactsCsv.append(pPerson->strName).append(",");
  m_strContactsCsv.append(CsvColumns(pPerson->strPhone)).append(CsvColumns(pPerson->strEmail));
  for (const std::string* pText :
       {&pPerson->strAddress, &pPerson->strUrl, &pPerson->strSocial, &pPerson->strCompany})
    m_strContactsCsv.append(*pText).append(",");
  m_strContactsCsv.append(" ,,,,\n");
}

int CRecovery::SaveContactsCsv() {
  SaveStore(kContactsStore, "/Contacts/" + m_strTimeStamp + '/', "Contacts.db",
            &CIphoneBackupFile::RecoveryPersonContacts, !m_strContactsBody.empty());
  return 0;
}

int CRecovery::SaveContacts() {
  return SavePage("/Contacts/" + m_strTimeStamp + '/', "Contacts.html", m_strContactsHead, m_strContactsBody,
                  m_strContactsTail);
}

void CRecovery::RecoveryCallHistory(const __CALLHISTORY__* pCall) {
  MakeFolder("/CallHistory/");
  const std::string strType = pCall->nAnswered == 0 ? "Outgoing" : "Incoming";
  const std::string strLength = CallLength(*pCall);
  m_strCallHistoryBody +=
      TableRow({&pCall->strName, &pCall->strAddress, &pCall->strDate, &strType, &strLength});
}

int CRecovery::SaveCallHistory() {
  return SavePage("/CallHistory/", "CallHistory_" + m_strTimeStamp + ".html", m_strCallHistoryHead,
                  m_strCallHistoryBody, m_strCallHistoryTail);
}

void CRecovery::RecoveryNotes(const __NOTES__* pNote) {
  MakeFolder("/Notes/");
  m_strNotesBody += TableRow({&pNote->strTitle, &pNote->strDate, &pNote->strContent});
}

int CRecovery::SaveNotes() {
  return SavePage("/Notes/", "Notes_" + m_strTimeStamp + ".html", m_strNotesHead, m_strNotesBody,
                  m_strNotesTail);
}
