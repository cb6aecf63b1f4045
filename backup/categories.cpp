#include "backup/categories.h"

#include <algorithm>

#include "common/status.h"

namespace orvandel {

namespace {

/// The file of one row of a list.
template <auto kList>
FileToCopy FileOf(const BackupRecords& records, size_t nRow) {
  const auto& file = (records.*kList).at(nRow);
  return {file.strFileName, file.wstrFilePath};
}

using Records = BackupRecords;

constexpr std::array<Category, kCategoryCount> kCategories = {{
    {kCameraRoll, "Camera Roll", "/Camera Roll/", [](const Records& r) { return r.m_vecCamera.size(); },
     FileOf<&Records::m_vecCamera>, nullptr},
    {kPhotoStream, "Photo Stream", "/Photo Stream/",
     [](const Records& r) { return r.m_vecPhotoStream.size(); }, FileOf<&Records::m_vecPhotoStream>, nullptr},
    {kAppPhotos, "App Photos", "/App Photos/",
     [](const Records& r) { return static_cast<size_t>(r.m_nAppPhotoCount); }, nullptr,
     &Records::m_mapAppPhotoFiles},
    {kAppVideos, "App Videos", "/App Video/",  // folder and label differ, here and below
     [](const Records& r) { return static_cast<size_t>(r.m_nAppVideoCount); }, nullptr,
     &Records::m_mapAppVideoFiles},
    {kMessages, "Message", nullptr, [](const Records& r) { return r.m_mapMessage.size(); }, nullptr, nullptr},
    {kMessageAttachments, "Messages Attachments", "/Message Attachments/",
     [](const Records& r) { return r.m_vecMessageAttachment.size(); },
     FileOf<&Records::m_vecMessageAttachment>, nullptr},
    {kContacts, "Contacts", nullptr, [](const Records& r) { return r.m_vecContact.size(); }, nullptr,
     nullptr},
    {kCallHistory, "Call History", nullptr, [](const Records& r) { return r.m_vecCall.size(); }, nullptr,
     nullptr},
    {kNotes, "Notes", nullptr, [](const Records& r) { return r.m_vecNote.size(); }, nullptr, nullptr},
    {kWhatsApp, "WhatsApp", nullptr, [](const Records& r) { return r.m_mapWhatsApp.size(); }, nullptr,
     nullptr},
    {kWhatsAppAttachments, "WhatsApp Attachments", "/WhatsApp Attachments/",
     [](const Records& r) { return r.m_vecWhatsAppAttachment.size(); },
     FileOf<&Records::m_vecWhatsAppAttachment>, nullptr},
}};

constexpr std::array<FileStep, 6> kFileSteps = {{
    {kCameraRoll, 0, 2000, 2000},
    {kPhotoStream, 20, 2000, 4000},
    {kAppPhotos, 40, 1000, 5000},
    {kAppVideos, 50, 2000, 7000},
    {kWhatsAppAttachments, 70, 1000, 8000},
    {kMessageAttachments, 80, 1000, 9000},
}};

/// One call to the parser and the categories that it fills.
struct WalkStep {
  int (*pfnRun)(IPhoneRecoveryParse& parser, BackupRecords& records);
  std::vector<CategoryNumber> categories;
  /// Filled by a later step from what this one leaves, or with parts of a store whose damage this one
  /// reports.
  std::vector<CategoryNumber> relatedCategories = {};
};

bool IsNeeded(const WalkStep& step, const std::function<bool(CategoryNumber)>& isWanted) {
  return std::any_of(step.categories.begin(), step.categories.end(), isWanted) ||
         std::any_of(step.relatedCategories.begin(), step.relatedCategories.end(), isWanted);
}

int ReadAppFiles(IPhoneRecoveryParse& parser, BackupRecords& records) {
  const int nStatus = parser.GetAppFilePath(records.m_vecAppFile);
  if (nStatus != kStatusStopWalk)
    GroupAppFiles(records.m_vecAppFile, records.m_mapAppPhotoFiles, records.m_mapAppVideoFiles,
                  records.m_nAppPhotoCount, records.m_nAppVideoCount);
  return nStatus;
}

const std::vector<WalkStep>& WalkSteps() {
  using Parser = IPhoneRecoveryParse;
  static const std::vector<WalkStep> steps = {
      {[](Parser& p, Records& r) { return p.GetCameraFilePath(r.m_vecCamera, r.m_vecPhotoStream); },
       {kCameraRoll, kPhotoStream}},
      {[](Parser& p, Records& r) { return p.GetIPhoneMessageInfo(r.m_mapMessage); }, {kMessages}},
      {[](Parser& p, Records& r) { return p.GetAttachmentsFilePath(r.m_vecMessageAttachment); },
       {kMessageAttachments}},
      {[](Parser& p, Records& r) { return p.GetIPhonePersonContent(r.m_vecContact); },
       {kContacts},
       {kMessages, kCallHistory}},
      {[](Parser& p, Records& r) { return p.GetIPhoneHistoryCallInfo(r.m_vecCall); }, {kCallHistory}},
      {[](Parser& p, Records& r) { return p.GetIPhoneNotes(r.m_vecNote); }, {kNotes}},
      {ReadAppFiles, {kAppPhotos, kAppVideos}, {kWhatsAppAttachments}},
      {[](Parser& p, Records& r) { return p.GetWhatsappMessageInfo(r.m_mapWhatsApp); }, {kWhatsApp}},
      {[](Parser& p, Records& r) { return p.GetWhatsAppAttachment(r.m_vecWhatsAppAttachment); },
       {kWhatsAppAttachments}},
  };
  return steps;
}

}  // namespace

const std::array<Category, kCategoryCount>& Categories() {
  return kCategories;
}

const std::array<FileStep, 6>& FileSteps() {
  return kFileSteps;
}

std::string CategoryLabel(const Category& category, size_t nCount) {
  return std::string(category.pszLabel) + "(" + std::to_string(nCount) + ")";
}

int WalkCategories(IPhoneRecoveryParse& parser, BackupRecords& records,
                   const std::function<void(const Category&)>& afterCategory,
                   const std::function<bool(CategoryNumber)>& isWanted) {
  int nStatus = kStatusOk;
  for (const WalkStep& step : WalkSteps()) {
    if (isWanted && !IsNeeded(step, isWanted)) continue;
    nStatus = step.pfnRun(parser, records);
    if (nStatus == kStatusStopWalk) return nStatus;
    if (!afterCategory) continue;
    for (CategoryNumber nNumber : step.categories) afterCategory(kCategories[nNumber]);
  }
  return nStatus;
}

}  // namespace orvandel
