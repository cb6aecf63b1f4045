#include "cli/recovery_report.h"

#include <QFileInfo>
#include <QJsonObject>

#include "cli/json_stream.h"
#include "cli/output.h"
#include "common/format.h"
#include "common/text.h"

namespace orvandel {

RecoveryReport::RecoveryReport(const RecoverOptions& options, ProgressBar& bar, qint64 nTotal)
    : m_options(options), m_bar(bar), m_nTotal(nTotal) {}

void RecoveryReport::Add(const WrittenFile& file) {
  ++(file.Succeeded() ? m_nSucceeded : m_nFailed);
  if (file.Succeeded()) m_nBytes += QFileInfo(file.qstrPath).size();
  if (m_handler) m_handler(file);
  if (!file.qstrOriginalName.isEmpty()) {
    m_bar.Clear();
    PrintError(QString("%1: in the backup it is called \"%2\", which isn't a valid file name here")
                   .arg(file.qstrPath, file.qstrOriginalName));
  }
  if (file.Succeeded() && m_options.bQuiet) return;
  m_bar.Clear();
  if (m_options.bJson) {
    QJsonObject object{{"status", file.Succeeded() ? "Success" : "Failed"}, {"path", file.qstrPath}};
    if (!file.Succeeded()) object["reason"] = file.Reason();
    if (!file.qstrOriginalName.isEmpty()) object["originalName"] = file.qstrOriginalName;
    Print(ToJson(object) + '\n');
  } else {
    const QString qstrPath = Printable(file.qstrPath);
    PrintLine(file.Succeeded() ? "Success\t" + qstrPath
                               : "Failed\t" + qstrPath + '\t' + Printable(file.Reason()));
  }
}

void RecoveryReport::Advance() {
  if (m_nTotal > 0) m_bar.Show(static_cast<int>(++m_nDone * 100 / m_nTotal));
}

void RecoveryReport::PrintTotals(const LeftOut& leftOut) const {
  m_bar.Clear();
  if (m_options.bJson) {
    QJsonObject totals{{"destination", m_options.qstrDestination},
                       {"succeeded", m_nSucceeded},
                       {"failed", m_nFailed},
                       {"bytes", m_nBytes}};
    if (!leftOut.IsEmpty()) totals["leftOut"] = LeftOutObject(leftOut);
    Print(ToJson(totals) + '\n');
    return;
  }
  PrintLine(QString("%1 recovered, %2 failed, %3 in %4")
                .arg(m_nSucceeded)
                .arg(m_nFailed)
                .arg(FromNarrow(GetFileSizeString(m_nBytes)), m_options.qstrDestination));
}

}  // namespace orvandel
