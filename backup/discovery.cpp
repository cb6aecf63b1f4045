#include "backup/discovery.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "common/file.h"
#include "common/layout.h"
#include "common/problem.h"
#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

namespace {

using FilePointer = std::unique_ptr<FILE, decltype(&fclose)>;

Result<FilePointer> OpenForReading(const std::string& strPath) {
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) return file.Error();
  FILE* pFile = fdopen(file->descriptor.Get(), "r");
  if (!pFile) return SystemProblem(Problem::Step::Open, strPath, errno);
  file->descriptor.Release();
  return FilePointer(pFile, &fclose);
}

/// Calls visit with the full path of each entry of a folder, not recursively.
template <typename Visit>
void VisitFolder(const std::string& strFolder, Visit visit) {
  QString qstrFolder = FromNarrow(strFolder);
  if (!qstrFolder.endsWith('/')) qstrFolder += '/';
  for (const QFileInfo& entry : QDir(qstrFolder).entryInfoList())
    visit(entry, ToNarrow(qstrFolder + entry.fileName()));
}

bool IsDotEntry(const QFileInfo& entry) {
  return entry.fileName() == "." || entry.fileName() == "..";
}

// "Info.plist" by line: a key, and its value on the next line.

constexpr size_t kLineSize = 2048;
constexpr long kMostLines = 1000000;  // devices write some thousand; limits hostile files

/// Gets the text of a value line between two tags. @return false, with strText unchanged, without the opening
/// tag.
bool TextBetween(std::string strLine, const char* pszOpen, const char* pszClose, std::string& strText) {
  const size_t nClose = strLine.find(pszClose);
  if (nClose != std::string::npos) strLine.erase(nClose);
  const size_t nOpen = strLine.find(pszOpen);
  if (nOpen == std::string::npos) return false;
  strText = strLine.substr(nOpen + strlen(pszOpen));
  return true;
}

/// The integer at the start of a text, 0 without one.
int WholeNumber(const char* pszText) {
  const long nNumber = strtol(pszText, nullptr, 10);
  return static_cast<int>(std::clamp<long>(nNumber, INT_MIN, INT_MAX));
}

bool StringValue(const std::string& strLine, std::string& strText) {
  return TextBetween(strLine, "<string>", "</string>", strText);
}

void SetDisplayName(const std::string& strLine, __BACK_FILE_INFO__& info) {
  StringValue(ToNarrow(QString::fromUtf8(strLine.c_str())), info.strDisplayName);
}

void SetLastBackupDate(const std::string& strLine, __BACK_FILE_INFO__& info) {
  std::string strDate;
  if (!TextBetween(strLine, "<date>", "</date>", strDate)) return;
  const size_t nHour = strDate.find('T');
  if (nHour != std::string::npos) {
    strDate[nHour] = ' ';
    // The hour is parsed and written back as two characters; a well-formed one doesn't change.
    char szHour[16];
    snprintf(szHour, sizeof szHour, "%02d", WholeNumber(strDate.c_str() + nHour + 1));
    for (size_t i = 0; i < 2 && nHour + 1 + i < strDate.size(); ++i) strDate[nHour + 1 + i] = szHour[i];
    strDate = strDate.substr(0, strDate.find('Z'));
  }
  info.strLastBackupDate = strDate;
}

void SetPhoneNumber(const std::string& strLine, __BACK_FILE_INFO__& info) {
  StringValue(strLine, info.strPhoneNumber);
}

void SetProductVersion(const std::string& strLine, __BACK_FILE_INFO__& info) {
  std::string strVersion;
  if (StringValue(strLine, strVersion)) info.bProductVersionAbove11 = WholeNumber(strVersion.c_str()) > 11;
}

void SetSerialNumber(const std::string& strLine, __BACK_FILE_INFO__& info) {
  StringValue(strLine, info.strSerialNumber);
}

template <typename Record>
struct InfoKey {
  const char* pszTag;
  void (*pfnSet)(const std::string& strValueLine, Record& record);
  bool bEndsReading;
};

// In the order in which a line is tested. The keys of the file are sorted, so reading ends at the last one.
constexpr InfoKey<__BACK_FILE_INFO__> kInfoKeys[] = {
    {"<key>Display Name</key>", SetDisplayName, false},
    {"<key>Last Backup Date</key>", SetLastBackupDate, false},
    {"<key>Phone Number</key>", SetPhoneNumber, false},
    {"<key>Product Version</key>", SetProductVersion, false},
    {"<key>Serial Number</key>", SetSerialNumber, true},
};

void SetModelType(const std::string& strLine, DeviceModel& model) {
  StringValue(strLine, model.strProductType);
}

void SetModelVersion(const std::string& strLine, DeviceModel& model) {
  StringValue(strLine, model.strProductVersion);
}

constexpr InfoKey<DeviceModel> kModelKeys[] = {
    {"<key>Product Type</key>", SetModelType, false},
    {"<key>Product Version</key>", SetModelVersion, true},
};

template <typename Record, size_t kCount>
const InfoKey<Record>* FindKey(const InfoKey<Record> (&keys)[kCount], const char* pszLine) {
  for (const InfoKey<Record>& key : keys) {
    if (strstr(pszLine, key.pszTag)) return &key;
  }
  return nullptr;
}

/// @return 0, or an errno value on a read error.
template <typename Record, size_t kCount>
int ReadInfoLines(FILE* pFile, const InfoKey<Record> (&keys)[kCount], Record& record) {
  char szLine[kLineSize];
  for (long nLine = 0; fgets(szLine, sizeof szLine, pFile); ++nLine) {
    if (nLine == kMostLines) return EFBIG;
    const InfoKey<Record>* pKey = FindKey(keys, szLine);
    if (!pKey || !fgets(szLine, sizeof szLine, pFile)) continue;
    pKey->pfnSet(szLine, record);
    if (pKey->bEndsReading) return 0;
  }
  if (ferror(pFile) == 0) return 0;
  return errno != 0 ? errno : EIO;
}

}  // namespace

namespace orvandel {

int TraverseSubFolders(const std::string& strFolder, std::vector<std::string>& folders) {
  // Reverse order is intended: the table of backups is filled from the last row up. One insertion for all,
  // since inserting each at the front would be quadratic.
  std::vector<std::string> found;
  VisitFolder(strFolder, [&](const QFileInfo& entry, std::string strPath) {
    if (entry.isDir() && !IsDotEntry(entry)) found.push_back(std::move(strPath));
  });
  folders.insert(folders.begin(), found.rbegin(), found.rend());
  return 1;
}

int TraverseFiles(const std::string& strFolder, std::vector<std::string>& files) {
  std::vector<std::string> found;
  VisitFolder(strFolder, [&](const QFileInfo& entry, std::string strPath) {
    if (entry.isFile()) found.push_back(std::move(strPath));
  });
  files.insert(files.begin(), found.rbegin(), found.rend());
  return 1;
}

}  // namespace orvandel

int TraverseFolderAndFile(const std::string& strFolder, std::vector<std::string>& entries) {
  VisitFolder(strFolder, [&](const QFileInfo& entry, std::string strPath) {
    if (!IsDotEntry(entry)) entries.push_back(std::move(strPath));
  });
  return 1;
}

int64_t TraverseFileCnt(const std::string& strFolder) {
  int64_t nCount = 0;
  VisitFolder(strFolder,
              [&](const QFileInfo& entry, const std::string&) { nCount += entry.isFile() ? 1 : 0; });
  return nCount;
}

namespace orvandel {

int64_t CountBackupFiles(const std::string& strFolder) {
  std::vector<std::string> entries;
  TraverseFolderAndFile(strFolder, entries);
  int64_t nCount = 0;
  for (const std::string& strEntry : entries)
    nCount += QFileInfo(FromNarrow(strEntry)).isDir() ? TraverseFileCnt(strEntry) : 1;
  return nCount;
}

Problem ReadBackupInfo(const std::string& strFolder, __BACK_FILE_INFO__& info) {
  const std::string strPath = strFolder + "/Info.plist";
  Result<FilePointer> file = OpenForReading(strPath);
  if (!file) {
    const int nError = file.Error().nCode;
    // Anything but a regular file counts as missing; a file that can't be read is reported.
    const bool bMissing =
        nError == ENOENT || nError == ENOTDIR || nError == EISDIR || nError == ENXIO || nError == ELOOP;
    if (!bMissing) ReportProblem(file.Error());
    return file.Error();
  }
  info.strBackupPath = strFolder;
  if (const int nError = ReadInfoLines(file->get(), kInfoKeys, info))
    ReportLoss(SystemProblem(Problem::Step::Read, strPath, nError));
  info.bEncrypted = IsBackupEncrypted(strFolder) != 0;
  return {};
}

DeviceModel ReadDeviceModel(const std::string& strFolder) {
  DeviceModel model;
  Result<FilePointer> file = OpenForReading(strFolder + "/Info.plist");
  if (file) ReadInfoLines(file->get(), kModelKeys, model);
  return model;
}

int IsBackupEncrypted(const std::string& strFolder) {
  BackupLayout layout;
  layout.qstrRoot = FromNarrow(strFolder);
  layout.bHasManifestDb = EntryExists(strFolder + "/Manifest.db");
  const std::string strProbe = ToNarrow(layout.PathOf(kContactsStore));
  Result<FilePointer> file = OpenForReading(strProbe);
  if (!file) file = OpenForReading(strProbe + ".mddata");
  if (!file) return 0;
  char head[512] = {};
  if (fread(head, 1, sizeof head, file->get()) < 6) return 1;
  return memcmp(head, "SQLite", 6) == 0 ? 0 : 1;
}

}  // namespace orvandel
