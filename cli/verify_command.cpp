#include <QJsonObject>
#include <chrono>
#include <mutex>
#include <optional>

#include "cli/commands.h"
#include "cli/json_stream.h"
#include "cli/manifest_access.h"
#include "cli/options.h"
#include "cli/output.h"
#include "cli/progress_bar.h"
#include "cli/stop_signal.h"
#include "cli/verification.h"
#include "common/text.h"
#include "decrypt/worker_pool.h"

namespace orvandel {

namespace {

/// Counts and prints the files that aren't sound, and the totals at the end. Thread-safe.
class VerifyReport {
 public:
  /// @param nTotal the work, for the bar.
  VerifyReport(const Options& options, ProgressBar& bar, uint64_t nTotal)
      : m_bar(bar), m_nTotal(nTotal), m_json(options.bJson ? std::make_unique<JsonStream>() : nullptr) {
    if (m_json) m_json->BeginArray("problems");
  }

  void Add(const ManifestEntry& entry, const FileState& state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_nFiles;
    if (state.kind == FileState::Kind::Sound) return;
    const bool bMissing = state.kind == FileState::Kind::Missing;
    ++(bMissing ? m_nMissing : m_nDamaged);
    std::string strName;
    SetEntryName(entry, strName);
    PrintProblem(bMissing ? "Missing" : "Damaged", FromNarrow(strName), FromNarrow(state.strReason));
  }

  void Advance(uint64_t nWork) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nDone += nWork;
    m_bar.Show(ProgressPercent(m_nDone, m_nTotal));
  }

  void PrintTotals() {
    m_bar.Clear();
    const qint64 nSound = m_nFiles - m_nMissing - m_nDamaged;
    if (!m_json) {
      PrintLine(QString("%1 files, %2 sound, %3 missing, %4 damaged")
                    .arg(m_nFiles)
                    .arg(nSound)
                    .arg(m_nMissing)
                    .arg(m_nDamaged));
      return;
    }
    m_json->EndArray();
    m_json->Member("files", m_nFiles);
    m_json->Member("sound", nSound);
    m_json->Member("missing", m_nMissing);
    m_json->Member("damaged", m_nDamaged);
    m_json.reset();
  }

  bool IsSound() const { return m_nMissing == 0 && m_nDamaged == 0; }

 private:
  void PrintProblem(const char* pszStatus, const QString& qstrName, const QString& qstrReason) {
    m_bar.Clear();
    if (m_json) {
      QJsonObject object{{"status", pszStatus}, {"name", qstrName}};
      if (!qstrReason.isEmpty()) object["reason"] = qstrReason;
      return m_json->Element(object);
    }
    const QString qstrLine = QString(pszStatus) + '\t' + Printable(qstrName);
    PrintLine(qstrReason.isEmpty() ? qstrLine : qstrLine + '\t' + Printable(qstrReason));
  }

  ProgressBar& m_bar;
  const uint64_t m_nTotal;
  std::unique_ptr<JsonStream> m_json;
  std::mutex m_mutex;
  uint64_t m_nDone = 0;
  qint64 m_nFiles = 0;
  qint64 m_nMissing = 0;
  qint64 m_nDamaged = 0;
};

/// The work that a file takes, in bytes; looking at one counts as some.
constexpr uint64_t kWorkPerFile = 4096;

bool IsToVerify(const BackupReader& reader, const ManifestEntry& entry) {
  // A file with an invalid identifier is damaged, but not one for the reader.
  return entry.kind == ManifestEntry::Kind::File || reader.IsFile(entry);
}

uint64_t CountWork(const BackupReader& reader) {
  // Only a binary manifest has hashes, for which files are read.
  if (reader.IsSharded()) return reader.CountFiles() * kWorkPerFile;
  uint64_t nWork = 0;
  VisitManifest(reader, BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
    if (!IsToVerify(reader, entry)) return true;
    const bool bRead = !entry.strDataHash.empty() && entry.nSize < uint64_t{1} << 50;
    nWork += kWorkPerFile + (bRead ? entry.nSize : 0);
    return true;
  });
  return nWork;
}

bool VerifyAll(const Options& options, const BackupReader& reader) {
  ProgressBar bar(!options.bQuiet);
  VerifyReport report(options, bar, bar.IsActive() ? CountWork(reader) : 0);
  const BackupFolder folder(reader.Folder());
  const auto advance = [&](uint64_t nBytes) { report.Advance(nBytes); };
  WorkerPool<ManifestEntry> pool([&] {
    return
        [&report, pVerifier = std::make_shared<FileVerifier>(reader, folder, advance)](ManifestEntry& entry) {
          FileState state;
          if (!pVerifier->Verify(entry, state)) return;
          report.Add(entry, state);
          report.Advance(kWorkPerFile);
        };
  });
  const bool bComplete = VisitManifest(reader, BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
    if (IsToVerify(reader, entry)) pool.Add(std::move(entry));
    return true;
  });
  pool.Finish();
  report.PrintTotals();
  return bComplete && report.IsSound();
}

int Verify(const QCommandLineParser& parser, const QStringList& arguments) {
  BackupOptions options;
  ReadBackupOptions(parser, arguments[0], options);
  std::unique_ptr<BackupReader> pReader;
  if (const int nStatus = OpenManifest(options, pReader)) return nStatus;
  return FinishCommand(VerifyAll(options, *pReader));
}

}  // namespace

Command VerifyCommand() {
  return {"verify",
          "checks the files of a backup",
          "Compares every file in a backup's manifest with what the backup contains, and prints a line for "
          "each that\n"
          "is missing or damaged. Contents are only read where the manifest records a hash.",
          {kBackupArgument},
          AddBackupOptions,
          Verify,
          "  orvandel-cli verify BACKUP\n"
          "  orvandel-cli verify BACKUP --password-file FILE --json | jq '.problems[].name'"};
}

}  // namespace orvandel
