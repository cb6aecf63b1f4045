#include "cli/check_destination.h"
#include "cli/commands.h"
#include "cli/entry_text.h"
#include "cli/exit_status.h"
#include "cli/extraction.h"
#include "cli/files_options.h"
#include "cli/manifest_access.h"
#include "cli/output.h"

namespace orvandel {

namespace {

constexpr size_t kBufferSize = 64 * 1024;

/// Prints the entries that are accepted.
class FileListing {
 public:
  FileListing(const FilesOptions& options, const BackupReader& reader)
      : m_options(options),
        m_reader(reader),
        m_present(reader.Folder(), reader.IsSharded()),
        m_filter(options.conditions, m_present) {}

  /// @return false when the manifest could not be read completely.
  bool Print() {
    const bool bRecords = m_options.conditions.NeedRecords() || !(m_options.bNames || m_options.bCount);
    const auto detail = bRecords ? BackupReader::Detail::Records : BackupReader::Detail::Names;
    const bool bComplete = VisitManifest(m_reader, detail, [this](ManifestEntry&& entry) {
      Add(entry);
      return true;
    });
    if (m_options.bCount) m_strBuffer = std::to_string(m_nCount) + '\n';
    Flush();
    if (bComplete) m_filter.ReportUnmatched();
    return bComplete;
  }

 private:
  void Add(const ManifestEntry& entry) {
    SetEntryName(entry, m_strName);
    if (!m_filter.Accepts(entry, m_strName)) return;
    ++m_nCount;
    if (m_options.bCount) return;
    AppendTo(entry);
    if (m_strBuffer.size() >= kBufferSize) Flush();
  }

  void AppendTo(const ManifestEntry& entry) {
    if (m_options.bNames && m_options.bJson) return AppendNameJson(entry, m_strBuffer);
    if (m_options.bNames) {
      AppendPrintable(m_strName, m_strBuffer);
      m_strBuffer += '\n';
      return;
    }
    const bool bFile = entry.kind == ManifestEntry::Kind::File || entry.kind == ManifestEntry::Kind::Unknown;
    const std::optional<bool> isPresent =
        bFile ? std::optional<bool>(m_present.Contains(entry.strId)) : std::nullopt;
    if (m_options.bJson)
      AppendEntryJson(entry, isPresent, m_strBuffer);
    else
      AppendEntryLine(entry, m_strName, isPresent, m_strBuffer);
  }

  void Flush() {
    orvandel::Print(QByteArray::fromRawData(m_strBuffer.data(), static_cast<int>(m_strBuffer.size())));
    m_strBuffer.clear();
  }

  const FilesOptions& m_options;
  const BackupReader& m_reader;
  PresentFiles m_present;
  EntryFilter m_filter;
  std::string m_strName;    // of the entry at hand
  std::string m_strBuffer;  // lines not yet printed
  uint64_t m_nCount = 0;
};

int Files(const QCommandLineParser& parser, const QStringList& arguments) {
  FilesOptions options;
  if (const int nStatus = ReadFilesOptions(parser, arguments, options)) return nStatus;
  std::unique_ptr<BackupReader> pReader;
  if (const int nStatus = OpenManifest(options, pReader)) return nStatus;
  if (options.qstrDestination.isEmpty()) return FinishCommand(FileListing(options, *pReader).Print());
  if (const int nStatus = CheckDestination(options.qstrBackup, options.qstrDestination)) return nStatus;
  return FinishCommand(ExtractFiles(options, *pReader));
}

}  // namespace

Command FilesCommand() {
  return {
      "files",
      "lists or extracts the files of a backup",
      "Lists the entries of a backup's manifest, or extracts files with --to. A line has kind and mode, "
      "size,\n"
      "time (UTC), identifier, whether the backup contains the file, \"Domain/relative/path\", and of a "
      "link\n"
      "its target.",
      {kBackupArgument,
       {"[PATTERN...]",
        "Names of entries: * and ? match within a segment, ** across segments, [a-z] one of some characters, "
        "a backslash takes the next character literally. Without a / it matches the last segment at any "
        "depth; "
        "a / at the end matches folders only. Default: all entries."}},
      AddFilesOptions,
      Files,
      "  orvandel-cli files BACKUP '**/*.HEIC' --to photos\n"
      "  orvandel-cli files BACKUP --domain CameraRollDomain --larger 100M\n"
      "  orvandel-cli files BACKUP 'AppDomain-*/Documents/**' --newer 2016-05-01 --names"};
}

}  // namespace orvandel
