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

void addCameraRoll(BackupBuilder& backup, const DemoOptions& options);
void addPhotoStream(BackupBuilder& backup, const DemoOptions& options);
void addAppFiles(BackupBuilder& backup, const DemoOptions& options);
std::vector<SampleAttachment> addAttachments(BackupBuilder& backup, const DemoOptions& options);

/// All stores: contacts, messages, calls, notes.
void addStores(BackupBuilder& backup, const DemoOptions& options,
               const std::vector<SampleAttachment>& attachments, DemoSummary& summary);

}  // namespace orvandel
