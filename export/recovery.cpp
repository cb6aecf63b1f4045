#include "export/recovery.h"

#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "common/file.h"
#include "common/problem.h"
#include "common/text.h"
#include "export/document_file.h"
#include "export/replace.h"

using namespace orvandel;

namespace {
constexpr char kContentToken[] = "{|content|}";
constexpr char kTitleToken[] = "{|title|}";
constexpr char kPersonToken[] = "{|person|}";

/// Finds out why a store wasn't copied, since the operation that copies it returns no error.
Problem StoreFailure(const std::string& strSource, const std::string& strTarget) {
  static constexpr char kReason[] = "The store could not be copied";
  Result<OpenedFile> source = OpenBackupFile(strSource);
  if (source) return {Problem::Step::Write, EIO, strTarget, kReason};
  Problem problem = source.Error();
  problem.strReason = std::string(kReason) + " (" + problem.strReason + ")";
  return problem;
}

}  // namespace

const std::array<CRecovery::Page, 5> CRecovery::kPages = {{
    {"/template/CallHistory.html", "iPhone's Call History of ", &CRecovery::m_strCallHistoryTemplate,
     &CRecovery::m_strCallHistoryHead, &CRecovery::m_strCallHistoryBody, &CRecovery::m_strCallHistoryTail},
    {"/template/Notes.html", "iPhone's Notes of ", &CRecovery::m_strNotesTemplate, &CRecovery::m_strNotesHead,
     &CRecovery::m_strNotesBody, &CRecovery::m_strNotesTail},
    {"/template/contacts.html", "iPhone's Contacts of ", &CRecovery::m_strContactsTemplate,
     &CRecovery::m_strContactsHead, &CRecovery::m_strContactsBody, &CRecovery::m_strContactsTail},
    {"/template/Sms.html", "iPhone's Messages of ", &CRecovery::m_strSmsTemplate, &CRecovery::m_strSmsHead,
     &CRecovery::m_strSmsBody, &CRecovery::m_strSmsTail},
    {"/template/WhatsApp.html", "iPhone's WhatsApp Messages of ", &CRecovery::m_strWhatsAppTemplate,
     &CRecovery::m_strWhatsAppHead, &CRecovery::m_strWhatsAppBody, &CRecovery::m_strWhatsAppTail},
}};

CRecovery::CRecovery(const QString& qstrProgramFolder) : m_qstrProgramFolder(qstrProgramFolder) {}

void CRecovery::SetWrittenFileHandler(WrittenFileHandler handler) {
  m_handler = std::move(handler);
}

void CRecovery::Init(const QString& qstrSavePath, CIphoneBackupFile* pBackupFile) {
  m_bMessageSaved = false;
  m_strSavePath = qstrSavePath;
  m_pBackupFile = pBackupFile;
  m_pDestination = std::make_unique<Destination>(qstrSavePath, FromNarrow(pBackupFile->GetBackupFolder()));
  m_strTimeStamp = QDateTime::currentDateTime().toString("yyyyMMddhhmmss");
  LoadAllTemplateFile();
}

QString CRecovery::FindUnusableTemplate() const {
  for (const Page& page : kPages) {
    const QString qstrPath = m_qstrProgramFolder + page.pszName;
    QFile file(qstrPath);
    const QFileInfo info(qstrPath);
    if (info.exists() && !info.isFile()) return qstrPath + ": is not a regular file";
    if (!file.open(QIODevice::ReadOnly)) return qstrPath + ": " + file.errorString();
    if (!file.readAll().contains(kContentToken)) return qstrPath + ": the template lacks " + kContentToken;
  }
  return QString();
}

int CRecovery::LoadAllTemplateFile() {
  int nStatus = 0;
  for (const Page& page : kPages) nStatus = LoadTemplateFile(page.pszName);
  return nStatus;
}

int CRecovery::LoadTemplateFile(const char* pszName) {
  const std::string strPath = ToNarrow(m_qstrProgramFolder) + pszName;
  errno = 0;
  const std::ifstream file(strPath, std::ios::binary);
  if (!file) {
    const int nError = errno;
    ReportProblem(strPath, std::string(strerror(nError)) + " (its pages will contain only rows)");
    return nError;
  }
  const Page* pPage = nullptr;
  for (const Page& page : kPages) {
    if (strcmp(page.pszName, pszName) == 0) pPage = &page;
  }
  if (!pPage) return 0;

  std::string& strTemplate = this->*pPage->pTemplate;
  if (strTemplate.empty()) {
    std::ostringstream content;
    content << file.rdbuf();
    strTemplate = content.str();
  }
  const size_t nContent = strTemplate.find(kContentToken);
  std::string& strHead = this->*pPage->pHead;
  strHead = strTemplate.substr(0, nContent);
  ReplaceEvery(strHead, kTitleToken,
               pPage->pszTitle + m_pBackupFile->GetSelectBackUpFileInfo()->strDisplayName);
  // Without the token there is no place for the content: the recovery ends.
  if (nContent == std::string::npos)
    throw std::out_of_range(strPath + ": the template lacks " + kContentToken);
  this->*pPage->pTail = strTemplate.substr(nContent + strlen(kContentToken));
  return 0;
}

std::string CRecovery::HeadFor(const std::string& strHead, const std::string& strName,
                               const std::string& strPhone) {
  std::string strPageHead = strHead;
  ReplaceEvery(strPageHead, kPersonToken, "Name: " + strName + ", Phone: " + strPhone);
  return strPageHead;
}

Problem CRecovery::MakeFolder(const QString& qstrFolder) {
  return m_pDestination->MakeFolder(qstrFolder);
}

Result<CRecovery::ConversationPlace> CRecovery::TryPlace(const char* pszCategoryFolder,
                                                         const std::string& strLabel,
                                                         const std::string& strStem) {
  // A "/" in a name separates folders; only a path that leads out of the destination is refused.
  const QString qstrFolder = pszCategoryFolder + FromNarrow(strLabel) + '-' + m_strTimeStamp + '/';
  const std::string strFolder = ToNarrow(m_strSavePath + qstrFolder);
  if (const Problem problem = MakeFolder(qstrFolder)) return problem;
  if (HasParentStep(strStem + ".txt"))  // with an extension, as used for the files
    return Problem{Problem::Step::Create, EACCES, strFolder, "The name leads out of the destination"};
  return ConversationPlace{strFolder, strStem, {}};
}

std::optional<CRecovery::ConversationPlace> CRecovery::MakePlace(
    const char* pszCategoryFolder, const std::string& strLabel, const std::string& strStem,
    std::initializer_list<const char*> extensions) {
  Problem problem;
  const bool bMakeSafe = m_namePolicy == NamePolicy::MadeSafe;
  if (!bMakeSafe || (CanBeFileName(strLabel) && CanBeFileName(strStem))) {
    Result<ConversationPlace> place = TryPlace(pszCategoryFolder, strLabel, strStem);
    if (place) return *place;
    problem = place.Error();
  }
  // Also for a name that only this file system rejects.
  const std::string strSafeLabel = SafeFileName(strLabel), strSafeStem = SafeFileName(strStem);
  if (bMakeSafe && (strSafeLabel != strLabel || strSafeStem != strStem)) {
    Result<ConversationPlace> place = TryPlace(pszCategoryFolder, strSafeLabel, strSafeStem);
    if (place) {
      place->strOriginalStem = strStem;
      return *place;
    }
    problem = place.Error();
  }
  for (const char* pszExtension : extensions) {
    if (m_handler) m_handler({FromNarrow(problem.strFile + strStem + pszExtension), problem, {}});
  }
  return std::nullopt;
}

std::u16string CRecovery::FreePath(const ConversationPlace& place, const char* pszExtension) {
  const std::string strWanted = ToNarrow(FromNarrow(place.strFolder + place.strStem + pszExtension));
  return Ansi2Unicode(m_freeNames.Take(strWanted).c_str());
}

int CRecovery::SavePage(const QString& qstrFolder, const QString& qstrFileName, const std::string& strHead,
                        const std::string& strBody, const std::string& strTail) {
  const QString qstrPath = m_strSavePath + qstrFolder + qstrFileName;
  if (const Problem problem = MakeFolder(qstrFolder)) {
    if (m_handler) m_handler({qstrPath, problem, {}});
    return problem.nCode;
  }
  return Tell(qstrPath, WritePage(ToNarrow(qstrPath), {&strHead, &strBody, &strTail}).nCode);
}

int CRecovery::Tell(const QString& qstrPath, int nError, const std::string& strOriginalName) const {
  WrittenFile file;
  file.qstrPath = qstrPath;
  if (nError != 0) file.problem = SystemProblem(Problem::Step::Write, ToNarrow(qstrPath), nError);
  file.qstrOriginalName = FromNarrow(strOriginalName);
  if (m_handler) m_handler(file);
  return nError;
}

void CRecovery::SaveStore(const char* pszStoreId, const QString& qstrFolder, const char* pszName,
                          int (CIphoneBackupFile::*copy)(const char* pszDestination), bool bWasRead) {
  WrittenFile file;
  file.qstrPath = m_strSavePath + qstrFolder + pszName;
  const std::string strSource = ToNarrow(m_pBackupFile->GetLayout().PathOf(pszStoreId));
  const bool bHasStore = EntryExists(strSource);
  file.problem = MakeFolder(qstrFolder);
  if (!file.problem) {
    const std::string strTarget = ToNarrow(file.qstrPath);
    // The copy of an earlier run is replaced, or removed when there is nothing to copy.
    const std::string strPart = m_freeNames.Take(strTarget + ".part");
    if (!bHasStore) QFile::remove(file.qstrPath);
    (m_pBackupFile->*copy)(strPart.c_str());
    if (!EntryExists(strPart)) {
      file.problem = StoreFailure(strSource, strTarget);
    } else if (rename(strPart.c_str(), strTarget.c_str()) != 0) {
      file.problem = {Problem::Step::Create, errno, strTarget, "The existing entry can't be replaced"};
      unlink(strPart.c_str());
    }
  }
  if (m_handler && (bHasStore || bWasRead)) m_handler(file);
}
