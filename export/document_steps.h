#pragma once
#include <QVariant>
#include <array>
#include <vector>

#include "backup/categories.h"
#include "export/recovery.h"

namespace orvandel {

/// A step of a recovery that writes documents. One of three kinds: documents for each conversation of a
/// category, one page for all records of a category, or the copy of a store.
struct DocumentStep {
  /// Null except for conversations.
  struct Conversations {
    /// The keys of all conversations, in order.
    std::vector<unsigned int> (*pfnKeys)(const BackupRecords& records);
    /// Writes the documents of one of them. Does nothing for a key without messages.
    void (*pfnWrite)(CRecovery& recovery, const BackupRecords& records, unsigned int nKey);
  };
  /// Null except for a page.
  struct Rows {
    /// Adds one record, as stored in a table row. A variant of another type counts as an empty record.
    void (*pfnAdd)(CRecovery& recovery, const QVariant& record);
    void (*pfnAddAll)(CRecovery& recovery, const BackupRecords& records);
  };

  CategoryNumber nNumber;
  Conversations conversations;
  Rows rows;
  void (*pfnSave)(CRecovery& recovery);  ///< writes the page, or copies the store; null for conversations
  int nEndMark;                          ///< progress when it is done, in hundredths of a percent
  const char* pszReported;  ///< the path reported, relative to the destination; null for no report

  bool IsPage() const { return rows.pfnAdd != nullptr; }
  bool IsStore() const { return !rows.pfnAdd && !conversations.pfnWrite; }
};

/// All steps, in the order of a recovery.
const std::array<DocumentStep, 6>& DocumentSteps();

}  // namespace orvandel
