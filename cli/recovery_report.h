#pragma once
#include <utility>

#include "cli/left_out.h"
#include "cli/progress_bar.h"
#include "cli/recover_options.h"
#include "export/written_file.h"

namespace orvandel {

/// Prints the result of each file of a recovery, and the totals at the end.
class RecoveryReport {
 public:
  /// Options and bar must outlive the report. @param nTotal number of items, for the bar.
  RecoveryReport(const RecoverOptions& options, ProgressBar& bar, qint64 nTotal);

  /// Sets a handler called for every file added. May be empty.
  void SetHandler(WrittenFileHandler handler) { m_handler = std::move(handler); }

  void Add(const WrittenFile& file);
  /// Advances the bar by one item.
  void Advance();
  /// @param leftOut printed as a field of JSON; the text has no place for it.
  void PrintTotals(const LeftOut& leftOut) const;
  qint64 Succeeded() const { return m_nSucceeded; }
  qint64 Failed() const { return m_nFailed; }

 private:
  const RecoverOptions& m_options;
  ProgressBar& m_bar;
  WrittenFileHandler m_handler;
  qint64 m_nTotal;
  qint64 m_nDone = 0;
  qint64 m_nSucceeded = 0;
  qint64 m_nFailed = 0;
  qint64 m_nBytes = 0;
};

}  // namespace orvandel
