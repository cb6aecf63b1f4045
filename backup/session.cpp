#include "backup/session.h"

#include <unistd.h>

#include "backup/discovery.h"
#include "backup/manifest.h"
#include "common/file.h"
#include "common/places.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

namespace {

constexpr int kStartProgress = 1;
constexpr int kPlainStep = 11;      // the steps of a scan move the bar from 1 to 98
constexpr int kEncryptedStep = 10;  // smaller, since decrypting moved the bar to 11

bool HasFile(const std::string& strFolder, const char* pszName) {
  return EntryExists(strFolder + pszName);
}

}  // namespace

CIphoneBackupFile::CIphoneBackupFile() : m_strWorkDir(WorkFolder()) {
  ClearTempDir();
  LocalBackUpFileInfo();
}

CIphoneBackupFile::~CIphoneBackupFile() = default;

int CIphoneBackupFile::LocalBackUpFileInfo() {
  m_strBackupPath += BackupRoot();
  m_vecBackupDirs.clear();
  TraverseFolder(m_strBackupPath, m_vecBackupDirs);
  return kStatusOk;
}

int CIphoneBackupFile::GetBackFileInfo(std::vector<__BACK_FILE_INFO__>& backups) {
  // Deliberately not cleared between backups: for a missing key a backup shows the value of the previous one.
  __BACK_FILE_INFO__ info;
  for (const std::string& strFolder : m_vecBackupDirs) {
    if (!ReadBackupInfo(strFolder, info)) backups.push_back(info);
  }
  return kStatusOk;
}

int CIphoneBackupFile::GetBackFileInfo(const char* pszFolder, __BACK_FILE_INFO__* pInfo) {
  return ReadBackupInfo(pszFolder, *pInfo) ? kStatusMissing : kStatusOk;
}

int CIphoneBackupFile::IsEncrypted(const char* pszFolder) {
  return IsBackupEncrypted(pszFolder);
}

int CIphoneBackupFile::TraverseFolder(const std::string& strFolder, std::vector<std::string>& folders) {
  return TraverseSubFolders(strFolder, folders);
}

int CIphoneBackupFile::TraverseFile(const std::string& strFolder, std::vector<std::string>& files) {
  return TraverseFiles(strFolder, files);
}

int CIphoneBackupFile::ClearTempDir() {
  if (m_strWorkDir.empty()) return kStatusOk;  // else the paths below would be relative
  std::vector<std::string> files;
  TraverseFile(m_strWorkDir + kDecryptFolderName + "/", files);
  for (const std::string& strFile : files) unlink(strFile.c_str());
  for (const std::string& strFile : m_vecDecryptedFiles) unlink(strFile.c_str());
  m_vecDecryptedFiles.clear();
  for (const char* pszName : {"tmp.jpg", "tmp.avi", "tmp.wav"}) unlink((m_strWorkDir + pszName).c_str());
  return kStatusOk;
}

int CIphoneBackupFile::Init(const __BACK_FILE_INFO__* pInfo) {
  m_backupInfo = *pInfo;
  m_strBackupPath = pInfo->strBackupPath;
  m_strBackupFolder = pInfo->strBackupPath;
  return kStatusOk;
}

int CIphoneBackupFile::InitCallback(ProgressCallback pfnCallback, void* pContext) {
  m_pfnCallback = pfnCallback;
  m_pCallbackContext = pContext;
  return kStatusOk;
}

__BACK_FILE_INFO__* CIphoneBackupFile::GetSelectBackUpFileInfo() {
  return &m_backupInfo;
}

BackupLayout CIphoneBackupFile::GetLayout() const {
  return {FromNarrow(m_strBackupPath), m_backupInfo.bEncrypted, m_bHasManifestDb};
}

std::string CIphoneBackupFile::StorePath(const char* pszStoreId) const {
  return ToNarrow(GetLayout().PathOf(pszStoreId));
}

WalkProgress CIphoneBackupFile::GetWalkProgress() const {
  return {m_pfnCallback, m_pCallbackContext, m_nProgress, m_nProgressStep};
}

int CIphoneBackupFile::Advance(int nShare) {
  m_nProgress += nShare;
  return m_pfnCallback ? m_pfnCallback(m_pCallbackContext, m_nProgress) : 0;
}

int CIphoneBackupFile::Scan(const QString& qstrDecryptedFolder) {
  const std::string strDecryptedFolder = ToNarrow(qstrDecryptedFolder);
  m_nProgress = kStartProgress;
  m_nProgressStep = kPlainStep;
  m_mapMessages.clear();
  m_vecDecryptedFiles.clear();
  m_vecBackupDirs.clear();
  Catalogue().swap(m_vecManifest);  // frees the memory before the next manifest is read
  m_bHasManifestDb = HasFile(m_strBackupPath, "/Manifest.db");

  if (m_backupInfo.bEncrypted) {
    m_nProgressStep = kEncryptedStep;
    // ClearTempDir removes what is listed here; an empty path would list the root folder.
    if (!strDecryptedFolder.empty()) TraverseFile(strDecryptedFolder, m_vecDecryptedFiles);
  } else if (m_pfnCallback) {
    m_pfnCallback(m_pCallbackContext, m_nProgress);
  }

  const int nStatus = ReadManifest(strDecryptedFolder);

  if (!strDecryptedFolder.empty()) {
    m_strBackupPath = strDecryptedFolder;
    m_backupInfo.strBackupPath = strDecryptedFolder;
  }
  Advance(m_nProgressStep);
  return nStatus;
}

int CIphoneBackupFile::ReadManifest(const std::string& strDecryptedFolder) {
  const char* pszName = m_bHasManifestDb ? "/Manifest.db" : "/Manifest.mbdb";
  if (!HasFile(m_strBackupPath, pszName)) {
    ReportProblem(m_strBackupPath, "has neither a \"Manifest.db\" nor a \"Manifest.mbdb\"");
    return kStatusMissing;
  }
  if (!m_bHasManifestDb)
    return process_mbdb_file(Ansi2Unicode((m_strBackupPath + pszName).c_str()).c_str(), m_vecManifest);
  // The decrypt tool writes the decrypted manifest beside the original, or among the decrypted files when run
  // with the option to leave the backup unchanged.
  const auto decryptedIn = [](const std::string& strFolder) {
    return strFolder + "/" + kDecryptedManifestName;
  };
  std::string strManifest = m_strBackupPath + pszName;
  if (!strDecryptedFolder.empty() && EntryExists(decryptedIn(strDecryptedFolder)))
    strManifest = decryptedIn(strDecryptedFolder);
  else if (EntryExists(decryptedIn(m_strBackupPath)))
    strManifest = decryptedIn(m_strBackupPath);
  return process_db_file(Ansi2Unicode(strManifest.c_str()).c_str(), m_vecManifest);
}
