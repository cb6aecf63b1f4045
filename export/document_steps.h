#pragma once
#include <QVariant>
#include <array>
#include <vector>

#include "backup/categories.h"
#include "export/recovery.h"

/// A step of a recovery that writes documents. It is of one of three kinds: a category of conversations with
/// documents for each, a category whose records make one page, or the copy of a store.
struct DocumentStep {
  /// Null but for conversations.
  struct Conversations {
    /// The keys of all conversations, in order.
    std::vector<unsigned int> (*pfnKeys)(const BackupRecords& records);
    /// Writes the documents of one of them. Does nothing for a key without messages.
    void (*pfnWrite)(CRecovery& recovery, const BackupRecords& records, unsigned int nKey);
  };
  /// Null but for a page.
  struct Rows {
    /// Adds one record, as the row of a table carries it. The record of another kind is an empty one.
    void (*pfnAdd)(CRecovery& recovery, const QVariant& record);
    void (*pfnAddAll)(CRecovery& recovery, const BackupRecords& records);
  };

  CategoryNumber nNumber;
  Conversations conversations;
  Rows rows;
  void (*pfnSave)(CRecovery& recovery);  ///< writes the page, or copies the store; null for conversations
  int nEndMark;                          ///< where the bar stands when it is done, in hundredths of a percent
  const char* pszReported;  ///< the path in the report of that, below the destination; null for no report

  bool IsPage() const { return rows.pfnAdd != nullptr; }
  bool IsStore() const { return !rows.pfnAdd && !conversations.pfnWrite; }
};

/// All of them, in the order of a recovery.
const std::array<DocumentStep, 6>& DocumentSteps();
