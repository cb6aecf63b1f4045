#pragma once
#include "backup/records.h"
#include "cli/index_page.h"
#include "cli/recover_options.h"
#include "cli/recovery_index.h"
#include "export/document_file.h"

// The pieces of the front page. Each writes HTML with all texts escaped, or JSON that can't end its element.

namespace orvandel {

/// What the pieces are made of. Refers to the caller's objects.
struct IndexContent {
  const RecoverOptions& options;
  const IndexFacts& facts;
  const BackupRecords& records;
  const RecoveryIndex& index;
};

/// The name of the device.
void WriteTitle(TextFile& file, const IndexContent& content);
/// Terms and descriptions: device, backup, recovery, failures.
void WriteFacts(TextFile& file, const IndexContent& content);
/// A list item for each wanted category: the number of items, and a link to its page if it has one.
void WriteCounts(TextFile& file, const IndexContent& content);
/// A list item for each conversation, the latest first: link to the page, number, messages, last date.
void WriteConversations(TextFile& file, const IndexContent& content);
/// The copied files as JSON: {"folders":[{"path":["Camera Roll"],"files":["IMG_0001.JPG"]}]}.
void WriteMedia(TextFile& file, const IndexContent& content);

}  // namespace orvandel
