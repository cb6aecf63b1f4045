#include "backup/categories.h"

#include "common/status.h"

namespace {

constexpr std::array<Category, kCategoryCount> kCategories = {{
    {kCameraRoll, "Camera Roll", "/Camera Roll/",
     [](const BackupRecords& r) { return r.m_vecCamera.size(); }},
    {kPhotoStream, "Photo Stream", "/Photo Stream/",
     [](const BackupRecords& r) { return r.m_vecPhotoStream.size(); }},
    {kAppPhotos, "App Photos", "/App Photos/",
     [](const BackupRecords& r) { return static_cast<size_t>(r.m_nAppPhotoCount); }},
    {kAppVideos, "App Videos", "/App Video/",  // the folder's name differs from the label, and so below
     [](const BackupRecords& r) { return static_cast<size_t>(r.m_nAppVideoCount); }},
    {kMessages, "Message", nullptr, [](const BackupRecords& r) { return r.m_mapMessage.size(); }},
    {kMessageAttachments, "Messages Attachments", "/Message Attachments/",
     [](const BackupRecords& r) { return r.m_vecMessageAttachment.size(); }},
    {kContacts, "Contacts", nullptr, [](const BackupRecords& r) { return r.m_vecContact.size(); }},
    {kCallHistory, "Call History", nullptr, [](const BackupRecords& r) { return r.m_vecCall.size(); }},
    {kNotes, "Notes", nullptr, [](const BackupRecords& r) { return r.m_vecNote.size(); }},
    {kWhatsApp, "WhatsApp", nullptr, [](const BackupRecords& r) { return r.m_mapWhatsApp.size(); }},
    {kWhatsAppAttachments, "WhatsApp Attachments", "/WhatsApp Attachments/",
     [](const BackupRecords& r) { return r.m_vecWhatsAppAttachment.size(); }},
}};

/// One question to the parser, and the categories that its answer fills.
struct WalkStep {
  int (*pfnRun)(IPhoneRecoveryParse& parser, BackupRecords& records);
  std::vector<CategoryNumber> categories;
};

int ReadAppFiles(IPhoneRecoveryParse& parser, BackupRecords& records) {
  const int nStatus = parser.GetAppFilePath(records.m_vecAppFile);
  if (nStatus != kStatusStopWalk)
    GroupAppFiles(records.m_vecAppFile, records.m_mapAppPhotoFiles, records.m_mapAppVideoFiles,
                  records.m_nAppPhotoCount, records.m_nAppVideoCount);
  return nStatus;
}

const std::vector<WalkStep>& WalkSteps() {
  using Parser = IPhoneRecoveryParse;
  using Records = BackupRecords;
  static const std::vector<WalkStep> steps = {
      {[](Parser& p, Records& r) { return p.GetCameraFilePath(r.m_vecCamera, r.m_vecPhotoStream); },
       {kCameraRoll, kPhotoStream}},
      {[](Parser& p, Records& r) { return p.GetIPhoneMessageInfo(r.m_mapMessage); }, {kMessages}},
      {[](Parser& p, Records& r) { return p.GetAttachmentsFilePath(r.m_vecMessageAttachment); },
       {kMessageAttachments}},
      {[](Parser& p, Records& r) { return p.GetIPhonePersonContent(r.m_vecContact); }, {kContacts}},
      {[](Parser& p, Records& r) { return p.GetIPhoneHistoryCallInfo(r.m_vecCall); }, {kCallHistory}},
      {[](Parser& p, Records& r) { return p.GetIPhoneNotes(r.m_vecNote); }, {kNotes}},
      {ReadAppFiles, {kAppPhotos, kAppVideos}},
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

std::string CategoryLabel(const Category& category, size_t nCount) {
  return std::string(category.pszLabel) + "(" + std::to_string(nCount) + ")";
}

int WalkCategories(IPhoneRecoveryParse& parser, BackupRecords& records,
                   const std::function<void(const Category&)>& afterCategory) {
  int nStatus = kStatusOk;
  for (const WalkStep& step : WalkSteps()) {
    nStatus = step.pfnRun(parser, records);
    if (nStatus == kStatusStopWalk) return nStatus;
    if (!afterCategory) continue;
    for (CategoryNumber nNumber : step.categories) afterCategory(kCategories[nNumber]);
  }
  return nStatus;
}
