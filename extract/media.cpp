#include "extract/media.h"

#include <strings.h>

#include <QFile>
#include <algorithm>

#include "common/file.h"
#include "common/status.h"
#include "common/text.h"
#include "extract/file_type.h"
#include "extract/sorting.h"

namespace {

constexpr char kCameraRoll[] = "CameraRollDomain-Media/DCIM/";
constexpr char kPhotoStream[] = "MediaDomain-Media/PhotoStreamsData/";
constexpr char kAttachments[] = "/Attachments/";

bool Contains(const std::string& strText, const char* pszPart) {
  return strText.find(pszPart) != std::string::npos;
}

/// What the judge says of a file that the manifest promises.
enum class Verdict { Missing, Unknown, Known };

/// @param strJudged receives the judge's text for a known type.
Verdict JudgeFile(CFileTypeJudge& judge, const QString& qstrPath, std::string& strJudged) {
  strJudged.clear();
  const int nStatus = judge.ParseFileBuf(ToNarrow(qstrPath).c_str(), strJudged);
  if (!strJudged.empty()) return Verdict::Known;
  // Only a file that can't be opened may be missing, so that the others need no test of their own.
  const bool bOpened = nStatus == kStatusOk || nStatus == kStatusShortRead;
  return bOpened || QFile::exists(qstrPath) ? Verdict::Unknown : Verdict::Missing;
}

/// Goes over the catalogue and calls visit for each entry. An entry for which it answers false isn't counted.
/// @param nFactor how many steps the walk covers.
/// @return the callback's last answer; other than 0 when it ended the walk.
template <typename Visit>
int WalkCatalogue(const Catalogue& catalogue, const WalkProgress& progress, uint32_t nFactor, Visit visit) {
  const auto nTotal = static_cast<uint32_t>(catalogue.size());
  uint32_t nCount = 0;
  int nAnswer = 0;
  for (const __MBDB_FILE__& entry : catalogue) {
    if (!visit(entry)) continue;
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

std::string DeviceFileName(const std::string& strCatalogueName) {
  const std::string strName =
      strCatalogueName.c_str();  // a name ends at its first zero byte, whatever follows
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

uint32_t FileSize32(const std::u16string& wstrPath) {
  long long nSize = 0;
  GetFileByteSize(wstrPath.c_str(), nSize);
  return static_cast<uint32_t>(nSize);
}

int WalkCameraFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                    std::vector<_IPHONE_CAMERA_INFO_>& camera,
                    std::vector<_IPHONE_CAMERA_INFO_>& photoStream) {
  static constexpr uint32_t kSteps = 2;
  CFileTypeJudge judge;
  std::string strJudged;
  const int nAnswer = WalkCatalogue(catalogue, progress, kSteps, [&](const __MBDB_FILE__& entry) {
    const bool bCamera = Contains(entry.strFileName, kCameraRoll);
    if (!bCamera && !Contains(entry.strFileName, kPhotoStream)) return true;
    const QString qstrPath = layout.PathOf(entry.strFileId);
    const Verdict verdict = JudgeFile(judge, qstrPath, strJudged);
    if (verdict == Verdict::Missing) return false;  // not counted, so that the bar may end short of its mark
    if (verdict == Verdict::Unknown) return true;
    _IPHONE_CAMERA_INFO_ info;
    info.strFileName = DeviceFileName(entry.strFileName);
    info.wstrFilePath = ToWide(qstrPath);
    info.uFileSize = FileSize32(info.wstrFilePath);
    (bCamera ? camera : photoStream).push_back(std::move(info));
    return true;
  });
  // The photo stream keeps the order of the catalogue; only the camera roll is in the order of names.
  SortRecords(camera, CamVectorCmp);
  return nAnswer;
}

int WalkMsgAttachments(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                       std::vector<_IPHONE_ATTACHMENTS_>& attachments) {
  CFileTypeJudge judge;
  std::string strJudged;
  const int nAnswer = WalkCatalogue(catalogue, progress, 1, [&](const __MBDB_FILE__& entry) {
    if (!Contains(entry.strFileName, kAttachments)) return true;
    const QString qstrPath = layout.PathOf(entry.strFileId);
    const Verdict verdict = JudgeFile(judge, qstrPath, strJudged);
    if (verdict == Verdict::Missing) return false;
    if (verdict == Verdict::Unknown) return true;
    _IPHONE_ATTACHMENTS_ info;
    info.strFileName = DisplayName(entry.strFileName, strJudged.c_str());
    info.wstrFilePath = ToWide(qstrPath);
    info.uFileSize = FileSize32(info.wstrFilePath);
    if (info.uFileSize != 0) attachments.push_back(std::move(info));
    return true;
  });
  SortRecords(attachments, AttVectorCmp);
  return nAnswer;
}
