#pragma once
#include <vector>

#include "sample/demo_backup.h"
#include "sample/stores.h"

// The parts of the demo backup. Internal.

namespace orvandel {

/// A file attached to a message.
struct SampleAttachment {
  QString path;  ///< relative to MediaDomain
  QString mimeType;
  int size;
};

constexpr int kGroupAttachments = 2;

void addCameraRoll(BackupBuilder& backup, const DemoOptions& options);
void addPhotoStream(BackupBuilder& backup, const DemoOptions& options);
void addAppFiles(BackupBuilder& backup, const DemoOptions& options);
/// The files attached to messages; with --ios the last kGroupAttachments are for a group.
std::vector<SampleAttachment> addAttachments(BackupBuilder& backup, const DemoOptions& options);

using People = std::vector<ContactsStore::Person>;

constexpr qint64 kFirstDate = 410227200;  // 2014-01-01T00:00:00Z, in seconds from 2001-01-01
constexpr qint64 kDateSpan = 94348800;    // 1092 days, to 2016-12-28

/// Path of a well-known store in the backup.
inline QString reserve(BackupBuilder& backup, const StorePlace& place) {
  return backup.reserveFile(place.domain, place.relativePath);
}

/// A number that no contact has.
inline QString unknownNumber(int index) {
  return QString("+1202555%1").arg(index, 4, 10, QChar('0'));
}

/// SMS and iMessage.
void addMessages(BackupBuilder& backup, const DemoOptions& options, const People& people,
                 const std::vector<SampleAttachment>& attachments, DemoSummary& summary);

/// WhatsApp's chats and the files of their media, for options with a version of the system.
void addChats(BackupBuilder& backup, const DemoOptions& options);

/// All stores: contacts, messages, calls, notes, and chats with --ios.
void addStores(BackupBuilder& backup, const DemoOptions& options,
               const std::vector<SampleAttachment>& attachments, DemoSummary& summary);

}  // namespace orvandel
