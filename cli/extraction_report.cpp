#include "cli/extraction_report.h"

#include <QJsonObject>

#include "cli/json_stream.h"
#include "cli/output.h"
#include "common/format.h"
#include "common/text.h"

namespace orvandel {

ExtractionReport::ExtractionReport(const FilesOptions& options, ProgressBar& bar, uint64_t nTotal)
    : m_options(options), m_bar(bar), m_nTotal(nTotal) {}

QString ExtractionReport::PathOf(const TargetNames::Target& target) const {
  return m_options.qstrDestination + '/' + FromNarrow(target.strPath);
}

void ExtractionReport::PrintOriginal(const TargetNames::Target& target) {
  if (target.strOriginal.empty()) return;
  m_bar.Clear();
  PrintError(
      QString("%1: in the backup it is called \"%2\", %3")
          .arg(PathOf(target), FromNarrow(target.strOriginal),
               target.bTaken ? "a name that another file of it has" : "which isn't a valid file name here"));
}

void ExtractionReport::PrintResult(const char* pszStatus, const TargetNames::Target& target,
                                   const std::string& strReason) {
  m_bar.Clear();
  if (m_options.bJson) {
    QJsonObject object{{"status", pszStatus}, {"path", PathOf(target)}};
    if (!strReason.empty()) object["reason"] = FromNarrow(strReason);
    if (!target.strOriginal.empty()) object["originalName"] = FromNarrow(target.strOriginal);
    Print(ToJson(object) + '\n');
    return;
  }
  QString qstrLine = QString(pszStatus) + '\t' + Printable(PathOf(target));
  if (!strReason.empty()) qstrLine += '\t' + Printable(FromNarrow(strReason));
  PrintLine(qstrLine);
}

void ExtractionReport::Add(Outcome outcome, const TargetNames::Target& target, uint64_t nSize,
                           const std::string& strReason) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  PrintOriginal(target);
  switch (outcome) {
    case Outcome::Extracted:
      ++m_nExtracted;
      m_nBytes += nSize;
      if (!m_options.bQuiet) PrintResult("Success", target, {});
      return;
    case Outcome::Kept:
      ++m_nKept;
      if (!m_options.bQuiet) PrintResult("Kept", target, {});
      return;
    case Outcome::Failed:
      ++m_nFailed;
      PrintResult("Failed", target, strReason);
      return;
  }
}

void ExtractionReport::AddFolder(const TargetNames::Target& target, const std::string& strReason) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  PrintOriginal(target);
  if (strReason.empty()) return;
  ++m_nFailed;
  PrintResult("Failed", target, strReason);
}

void ExtractionReport::Advance(uint64_t nBytes) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_nDone += nBytes;
  if (!m_bar.IsActive()) return;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
  m_bar.Show(ProgressPercent(m_nDone, m_nTotal), ProgressText(m_nDone, m_nTotal, elapsed.count()));
}

void ExtractionReport::PrintTotals() {
  m_bar.Clear();
  if (m_options.bJson) {
    Print(ToJson(QJsonObject{{"destination", m_options.qstrDestination},
                             {"extracted", m_nExtracted},
                             {"kept", m_nKept},
                             {"failed", m_nFailed},
                             {"bytes", static_cast<qint64>(m_nBytes)}}) +
          '\n');
    return;
  }
  PrintLine(QString("%1 extracted, %2 kept, %3 failed, %4 in %5")
                .arg(m_nExtracted)
                .arg(m_nKept)
                .arg(m_nFailed)
                .arg(FromNarrow(GetFileSizeString(static_cast<long long>(m_nBytes))),
                     Printable(m_options.qstrDestination)));
}

}  // namespace orvandel
