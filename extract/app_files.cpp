#include "extract/app_files.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

#include "common/path.h"
#include "common/text.h"
#include "extract/file_type.h"
#include "extract/sorting.h"

using namespace orvandel;

namespace {

constexpr char kAppDomain[] = "AppDomain-";
constexpr char kWhatsAppDomain[] = "net.whatsapp.WhatsApp";
constexpr char kOtherApps[] = "other";

// clang-format off
// Looked up by searching for the extension plus "|". So the tail of a longer item matches too, and the last
// sound, which has no "|" after it, never does.
constexpr char kImages[] =
    "*.bmp|*.gif|*.jpg|*.jpeg|*.png|*.psd|*.tif|*.tiff|*.pcx|*.scr|*.ico|*.nef|*.nrw|*.crw|*.cr2|*.sr2|"
    "*.arw|*.srf|*.divu|*.pgm|*.k25|*.kdc|*.dcr|*.raf|*.iff|*.pbm|*.mef|*.jp2|*.mos|*.x3f|*.orf|*.erf|"
    "*.indd|*.pef|*.psp|*.mrw|*.dng|*.raw|*.pct|*.tga|*.thm|*.icns|";
constexpr char kVideos[] =
    "*.rmvb|*.rm|*.mpeg|*.mov|*.avi|*.wmv|*.asf|*.mp4|*.flv|*.fla|*.swf|*.m4v|*.3gp|*.dv|*.3g2|*.m4b|*.mkv|"
    "*.mts|*.divx|*.ogm|*.moi|*.vob|*.ajp|*.f4v|*.mqv|*.svi|*.vid|*.tod|*.hdmov|*.mod|*.mxf|*.lrv|";
constexpr char kSounds[] =
    "*.mp3|*.wav|*.ape|*.aiff|*.rps|*.mid|*.midi|*.m4a|*.m4p|*.au|*.ogg|*.wma|*.rm|*.ra|*.acd|*.amr|"
    "*.at3|*.caf|*.dss|*.m4r|*.nra|*.snd";
// clang-format on

/// The text between the first "com." (or else the first "net.") of the name and the next "-".
std::string AppName(const std::string& strName) {
  static constexpr size_t kPrefixLength = 4;
  const std::string strCatalogueName = strName.c_str();  // a name ends at its first zero byte
  size_t nHit = strCatalogueName.find("com.");
  if (nHit == std::string::npos) nHit = strCatalogueName.find("net.");
  if (nHit == std::string::npos) return kOtherApps;
  const size_t nEnd = strCatalogueName.find('-', nHit + 1);
  if (nEnd == std::string::npos) return kOtherApps;
  return strCatalogueName.substr(nHit + kPrefixLength, nEnd - nHit - kPrefixLength);
}

bool IsAppName(const std::string& strName) {
  return strName.find(kAppDomain) != std::string::npos;
}

bool IsWhatsAppName(const std::string& strName) {
  return strName.find(kWhatsAppDomain) != std::string::npos;
}

bool ReadAppFile(CFileTypeJudge& judge, const HeadReader::File& file, const __MBDB_FILE__& entry,
                 const BackupLayout& layout, _IPHONE_APP_FILE_INFO_& info) {
  std::string strJudged;
  judge.JudgeHead(file.strPath.c_str(), file.head, strJudged);
  if (strJudged.empty()) return false;
  info.strFileName = DisplayName(entry.strFileName, strJudged.c_str());
  info.strAppName = AppName(entry.strFileName);
  info.wstrFilePath = WidePathOf(file, entry, layout);
  info.uFileSize = SizeOf(file, info.wstrFilePath);
  return true;
}

}  // namespace

bool AppVectorCmp(const _IPHONE_APP_FILE_INFO_& first, const _IPHONE_APP_FILE_INFO_& second) {
  return strcasecmp(first.strFileName.c_str(), second.strFileName.c_str()) < 0;
}

namespace orvandel {

int WalkAppFiles(const Catalogue& catalogue, const BackupLayout& layout, const WalkProgress& progress,
                 std::vector<_IPHONE_APP_FILE_INFO_>& files, std::vector<_WHATSAPP_ATTACHMENTS_>& whatsApp,
                 UnknownMedia* pUnknown) {
  const auto nTotal = static_cast<uint32_t>(catalogue.size());
  CFileTypeJudge judge;
  uint32_t nCount = 2;  // counts to twice the total: the bar overshoots by a step and drops back at the end
  int nAnswer = 0;
  HeadReader reader(catalogue, layout, IsAppName);
  for (size_t i = 0; i < catalogue.size(); ++i) {
    const __MBDB_FILE__& entry = catalogue[i];
    const HeadReader::File* pFile = reader.FileOf(i);
    _IPHONE_APP_FILE_INFO_ info;
    if (pFile && ReadAppFile(judge, *pFile, entry, layout, info)) {
      if (!IsWhatsAppName(entry.strFileName))
        files.push_back(std::move(info));
      else if (info.uFileSize != 0)
        whatsApp.push_back({info.uFileSize, std::move(info.strFileName), std::move(info.wstrFilePath)});
    } else if (pFile && pUnknown) {
      const bool bWhatsApp = IsWhatsAppName(entry.strFileName);
      pUnknown->Add(bWhatsApp ? MediaList::WhatsAppAttachments : MediaList::AppFiles, *pFile,
                    entry.strFileName);
    }
    if (progress.pfnCallback) {
      const uint32_t nDone = static_cast<uint32_t>(progress.nStep) * nCount / nTotal;
      nAnswer = progress.pfnCallback(progress.pContext,
                                     static_cast<int>(static_cast<uint32_t>(progress.nBase) + nDone));
      if (nAnswer != 0) break;
    }
    nCount += 2;
  }
  SortRecords(files, AppVectorCmp);
  SortRecords(whatsApp, WhatsAppAttVectorCmp);
  return nAnswer;
}

bool IsAppVideo(const std::string& strFileName) {
  std::string strExtension;
  GetExtendName(strFileName.c_str(), strExtension);
  GetCharLowerA(strExtension.data());
  strExtension += '|';
  if (strstr(kImages, strExtension.c_str())) return false;
  return strstr(kVideos, strExtension.c_str()) || strstr(kSounds, strExtension.c_str());
}

void GroupAppFiles(const std::vector<_IPHONE_APP_FILE_INFO_>& files, AppFileMap& photos, AppFileMap& videos,
                   int& nPhotos, int& nVideos) {
  nPhotos = 0;
  nVideos = 0;
  for (const _IPHONE_APP_FILE_INFO_& file : files) {
    const bool bVideo = IsAppVideo(file.strFileName);
    (bVideo ? videos : photos)[file.strAppName].push_back(file);
    ++(bVideo ? nVideos : nPhotos);
  }
}

}  // namespace orvandel
