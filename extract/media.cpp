#include "extract/media.h"

#include <strings.h>

#include <QFile>
#include <algorithm>
#include <cerrno>

#include "common/file.h"
#include "common/status.h"
#include "common/text.h"
#include "extract/file_type.h"
#include "extract/sorting.h"

using namespace orvandel;

namespace {

constexpr char kCameraRoll[] = "CameraRollDomain-Media/DCIM/";
constexpr char kPhotoStream[] = "MediaDomain-Media/PhotoStreamsData/";
constexpr char kAttachments[] = "/Attachments/";

bool Contains(const std::string& strText, const char* pszPart) {
  return strText.find(pszPart) != std::string::npos;
}

/// Result of examining a file listed in the manifest.
enum class Verdict { Missing, Unknown, Known };

/// @param strJudged receives the judge's text for a known type.
Verdict JudgeFile(CFileTypeJudge& judge, const HeadReader::File& file, std::string& strJudged) {
  strJudged.clear();
  const int nStatus = judge.JudgeHead(file.strPath.c_str(), file.head, strJudged);
  if (!strJudged.empty()) return Verdict::Known;
  if (nStatus == ENOENT) return Verdict::Missing;
  // Only a file that can't be opened may be missing, so only those are tested.
  const bool bOpened = nStatus == kStatusOk || nStatus == kStatusShortRead;
  return bOpened || QFile::exists(FromNarrow(file.strPath)) ? Verdict::Unknown : Verdict::Missing;
}

bool IsCameraName(const std::string& strName) {
  return Contains(strName, kCameraRoll) || Contains(strName, kPhotoStream);
}

bool IsAttachmentName(const std::string& strName) {
  return Contains(strName, kAttachments);
}

/// Calls visit for each catalogue entry whose file is wanted. Entries for which visit returns false aren't
/// counted in the progress; all others are.
/// @param nFactor number of steps that the walk covers.
/// @return the callback's last result; not 0 when it ended the walk.
template <typename Visit>
int WalkCatalogue(const Catalogue& catalogue, const BackupLayout& layout, HeadReader::IsWanted pfnIsWanted,
                  const WalkProgress& progress, uint32_t nFactor, Visit visit) {
  const auto nTotal = static_cast<uint32_t>(catalogue.size());
  HeadReader reader(catalogue, layout, pfnIsWanted);
  uint32_t nCount = 0;
  int nAnswer = 0;
  for (size_t i = 0; i < catalogue.size(); ++i) {
    const HeadReader::File* pFile = reader.FileOf(i);
    if (pFile && !visit(catalogue[i], *pFile)) continue;
    ++nCount;
    if (!progress.pfnCallback) continue;
    const uint32_t nDone = static_cast<uint32_t>(progress.nStep) * nCount * nFactor / nTotal;
    nAnswer = progress.pfnCallback(progress.pContext,
                                   static_cast<int>(static_cast<uint32_t>(progress.nBase) + nDone));
    if (nAnswer != 0) break;
  }
  return nAnswer;
}

}  // namespace

bool CamVectorCmp(const _IPHONE_CAMERA_INFO_& first, const _IPHONE_CAMERA_INFO_& second) {
  return strcasecmp(first.strFileName.c_str(), second.strFileName.c_str()) < 0;
}

bool AttVectorCmp(const _IPHONE_ATTACHMENTS_& first, const _IPHONE_ATTACHMENTS_& second) {
  return strcasecmp(first.strFileName.c_str(), second.strFileName.c_str()) < 0;
}

bool WhatsAppAttVectorCmp(const _WHATSAPP_ATTACHMENTS_& first, const _WHATSAPP_ATTACHMENTS_& second) {
  return strcasecmp(first.strFileName.c_str(), second.strFileName.c_str()) < 0;
}

namespace orvandel {

std::string DeviceFileName(const std::string& strCatalogueName) {
  const std::string strName = strCatalogueName.c_str();  // a name ends at its first zero byte
  const size_t nSlash = strName.rfind('/');
  return nSlash == std::string::npos ? strName : strName.substr(nSlash + 1);
}

std::string DisplayName(const std::string& strCatalogueName, const char* pszJudged) {
  std::string strName = DeviceFileName(strCatalogueName);
  strName = strName.substr(0, strName.rfind('.'));
  const QString qstrJudged = FromNarrow(pszJudged);
  const int nDot = qstrJudged.indexOf('.');
  return strName + (nDot == -1 ? ".JPG" : ToNarrow(qstrJudged.mid(nDot).toUpper()));
}

std::u16string WidePathOf(const HeadReader::File& file, const __MBDB_FILE__& entry,
                          const BackupLayout& layout) {
  if (file.bPlain) return {file.strPath.begin(), file.strPath.end()};
  return ToWide(layout.PathOf(entry.strFileId));
}

uint32_t SizeOf(const HeadReader::File& file, const std::u16string& wstrPath) {
  return file.bPlain ? static_cast<uint32_t>(file.head.nFileSize) : FileSize32(wstrPath);
}

uint32_t FileSize32(const std::u16string& wstrPath) {
  long long nSize = 0;
  GetFileByteSize(wstrPath.c_str(), nSize);
  return static_cast<uint32_t>(nSize);
}

int WalkCameraFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                    std::vector<_IPHONE_CAMERA_INFO_>& camera, std::vector<_IPHONE_CAMERA_INFO_>& photoStream,
                    UnknownMedia* pUnknown) {
  static constexpr uint32_t kSteps = 2;
  CFileTypeJudge judge;
  std::string strJudged;
  const auto visit = [&](const __MBDB_FILE__& entry, const HeadReader::File& file) {
    const Verdict verdict = JudgeFile(judge, file, strJudged);
    if (verdict == Verdict::Missing) return false;  // not counted, so the bar may end before its mark
    const bool bRoll = Contains(entry.strFileName, kCameraRoll);
    if (verdict == Verdict::Unknown) {
      if (pUnknown)
        pUnknown->Add(bRoll ? MediaList::CameraRoll : MediaList::PhotoStream, file, entry.strFileName);
      return true;
    }
    _IPHONE_CAMERA_INFO_ info;
    info.strFileName = DeviceFileName(entry.strFileName);
    info.wstrFilePath = WidePathOf(file, entry, layout);
    info.uFileSize = SizeOf(file, info.wstrFilePath);
    (bRoll ? camera : photoStream).push_back(std::move(info));
    return true;
  };
  const int nAnswer = WalkCatalogue(catalogue, layout, IsCameraName, progress, kSteps, visit);
  // The photo stream stays in catalogue order; only the camera roll is sorted by name.
  SortRecords(camera, CamVectorCmp);
  return nAnswer;
}

int WalkMsgAttachments(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                       std::vector<_IPHONE_ATTACHMENTS_>& attachments, UnknownMedia* pUnknown) {
  CFileTypeJudge judge;
  std::string strJudged;
  const auto visit = [&](const __MBDB_FILE__& entry, const HeadReader::File& file) {
    const Verdict verdict = JudgeFile(judge, file, strJudged);
    if (verdict == Verdict::Missing) return false;
    if (verdict == Verdict::Unknown) {
      if (pUnknown) pUnknown->Add(MediaList::MessageAttachments, file, entry.strFileName);
      return true;
    }
    _IPHONE_ATTACHMENTS_ info;
    info.strFileName = DisplayName(entry.strFileName, strJudged.c_str());
    info.wstrFilePath = WidePathOf(file, entry, layout);
    info.uFileSize = SizeOf(file, info.wstrFilePath);
    if (info.uFileSize != 0) attachments.push_back(std::move(info));
    return true;
  };
  const int nAnswer = WalkCatalogue(catalogue, layout, IsAttachmentName, progress, 1, visit);
  SortRecords(attachments, AttVectorCmp);
  return nAnswer;
}

}  // namespace orvandel
