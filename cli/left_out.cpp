#include "cli/left_out.h"

#include <QStringList>
#include <algorithm>
#include <utility>
#include <vector>

#include "cli/output.h"

namespace orvandel {

namespace {

CategoryNumber CategoryOf(MediaList list, bool bVideo) {
  switch (list) {
    case MediaList::CameraRoll:
      return kCameraRoll;
    case MediaList::PhotoStream:
      return kPhotoStream;
    case MediaList::MessageAttachments:
      return kMessageAttachments;
    case MediaList::WhatsAppAttachments:
      return kWhatsAppAttachments;
    default:
      return bVideo ? kAppVideos : kAppPhotos;
  }
}

/// "214 HEIC, 3 DNG": the most frequent first.
QString FilesText(const std::map<std::string, uint64_t>& files) {
  std::vector<std::pair<std::string, uint64_t>> sorted(files.begin(), files.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  QStringList parts;
  for (const auto& [strExtension, nCount] : sorted)
    parts << QString::number(nCount) + ' ' + QString::fromStdString(strExtension);
  return parts.join(", ");
}

QString Counted(uint64_t nCount, const char* pszOne, const char* pszMany) {
  return QString::number(nCount) + ' ' + (nCount == 1 ? pszOne : pszMany);
}

}  // namespace

UnknownMedia::IsWanted MediaOf(const WantedCategory& isWanted) {
  if (!isWanted) return {};
  return [isWanted](MediaList list, bool bVideo) { return isWanted(CategoryOf(list, bVideo)); };
}

QJsonObject LeftOutObject(const LeftOut& leftOut) {
  QJsonObject object;
  QJsonObject files;
  for (const auto& [strExtension, nCount] : leftOut.files)
    files[QString::fromStdString(strExtension)] = static_cast<qint64>(nCount);
  if (!files.isEmpty()) object["files"] = files;
  if (leftOut.nMessagesWithoutSender != 0)
    object["messagesWithoutSender"] = static_cast<qint64>(leftOut.nMessagesWithoutSender);
  if (leftOut.nNotesWithSnippetOnly != 0)
    object["notesWithSnippetOnly"] = static_cast<qint64>(leftOut.nNotesWithSnippetOnly);
  return object;
}

void PrintLeftOut(const LeftOut& leftOut) {
  QStringList parts;
  if (!leftOut.files.empty()) parts << FilesText(leftOut.files) + ": see orvandel-cli files";
  if (leftOut.nMessagesWithoutSender != 0)
    parts << Counted(leftOut.nMessagesWithoutSender, "message without a sender", "messages without a sender");
  if (leftOut.nNotesWithSnippetOnly != 0)
    parts << Counted(leftOut.nNotesWithSnippetOnly, "note of which only the beginning is read",
                     "notes of which only the beginning is read");
  if (!parts.isEmpty()) PrintError("not in the categories: " + parts.join("; "));
}

}  // namespace orvandel
