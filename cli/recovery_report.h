#pragma once
#include "cli/progress_bar.h"
#include "cli/recover_options.h"
#include "export/written_file.h"

namespace orvandel {

/// Prints the result of each file of a recovery, and the totals at the end.
class RecoveryReport {
 public:
  /// Options and bar must outlive the report. @param nTotal number of items, for the bar.
  RecoveryReport(const RecoverOptions& options, ProgressBar& bar, qint64 nTotal);

  void Add(const WrittenFile& file);
  /// Advances the bar by one item.
  void Advance();
  void PrintTotals() const;
  bool HasFailures() const { return m_nFailed != 0; }

 private:
  const RecoverOptions& m_options;
  ProgressBar& m_bar;
  qint64 m_nTotal;
  qint64 m_nDone = 0;
  qint64 m_nSucceeded = 0;
  qint64 m_nFailed = 0;
  qint64 m_nBytes = 0;
};

}  // namespace orvandel
