#pragma once
#include <vector>

#include "sample/lively_backup.h"
#include "sample/stores.h"

// The parts of the lively backup. Not meant for use from elsewhere.

/// A file that a message carries.
struct SampleAttachment {
  QString path;  ///< relative to MediaDomain
  QString mimeType;
  int size;
};

void addCameraRoll(BackupBuilder& backup, const LivelyOptions& options);
void addPhotoStream(BackupBuilder& backup, const LivelyOptions& options);
void addAppFiles(BackupBuilder& backup, const LivelyOptions& options);
std::vector<SampleAttachment> addAttachments(BackupBuilder& backup, const LivelyOptions& options);

/// All stores: contacts, messages, calls, notes.
void addStores(BackupBuilder& backup, const LivelyOptions& options,
               const std::vector<SampleAttachment>& attachments, LivelySummary& summary);
