#pragma once
#include <QString>
#include <chrono>
#include <mutex>
#include <string>

#include "cli/files_options.h"
#include "cli/progress_bar.h"
#include "cli/target_names.h"

namespace orvandel {

/// Counts and prints the result of each extracted file, and the totals at the end. Thread-safe.
class ExtractionReport {
 public:
  enum class Outcome { Extracted, Kept, Failed };

  /// @param options must outlive the report. @param nTotal bytes to extract, for the bar.
  ExtractionReport(const FilesOptions& options, ProgressBar& bar, uint64_t nTotal);

  /// Reports a file. @param nSize its size if extracted. @param strReason why it failed, narrow.
  void Add(Outcome outcome, const TargetNames::Target& target, uint64_t nSize, const std::string& strReason);
  /// Reports a folder, which counts only if it failed, with a reason.
  void AddFolder(const TargetNames::Target& target, const std::string& strReason);
  /// Advances the bar.
  void Advance(uint64_t nBytes);

  void PrintTotals();
  bool HasFailed() const { return m_nFailed != 0; }

 private:
  void PrintOriginal(const TargetNames::Target& target);
  void PrintResult(const char* pszStatus, const TargetNames::Target& target, const std::string& strReason);
  QString PathOf(const TargetNames::Target& target) const;

  const FilesOptions& m_options;
  ProgressBar& m_bar;
  const uint64_t m_nTotal;
  const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  std::mutex m_mutex;
  uint64_t m_nDone = 0;  // bytes, as far as the bar is concerned
  uint64_t m_nBytes = 0;
  qint64 m_nExtracted = 0;
  qint64 m_nKept = 0;
  qint64 m_nFailed = 0;
};

}  // namespace orvandel
