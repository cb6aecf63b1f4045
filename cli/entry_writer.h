#pragma once
#include <sys/stat.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/destination_tree.h"
#include "cli/extraction_report.h"
#include "cli/placed_file.h"
#include "common/backup_folder.h"
#include "decrypt/backup_reader.h"

namespace orvandel {

/// An entry to extract.
struct EntryJob {
  ManifestEntry entry;  ///< with its record
  TargetNames::Target target;
};

/// The bytes of an entry that a progress bar counts.
uint64_t CountedSize(const ManifestEntry& entry);

/// Extracts entries and reports each. One object per thread.
class EntryWriter {
 public:
  /// All must outlive this object.
  EntryWriter(const FilesOptions& options, const BackupReader& reader, const BackupFolder& source,
              std::shared_ptr<DestinationTree> pTree, ExtractionReport& report);

  /// Extracts an entry. Does nothing after a signal.
  void Write(const EntryJob& job);

 private:
  /// What is at the path of an entry.
  struct Existing {
    bool bThere = false;
    bool bRewrite = false;   // to be replaced
    bool bFragment = false;  // perhaps the beginning of the entry, to be replaced then
    struct stat info;
  };

  bool EnterFolder(const std::string& strFolder, std::string& strReason);
  ExtractionReport::Outcome WriteFile(const EntryJob& job, uint64_t& nSize, std::string& strReason);
  bool IsKept(const EntryJob& job, const std::string& strName, Existing& existing);
  bool IsFragment(ContentStream& content, const std::string& strName) const;
  ContentStream OpenContent(const ManifestEntry& entry) const;
  void CopyContent(ContentStream& content, const PlacedFile& file);

  const FilesOptions& m_options;
  const BackupReader& m_reader;
  const BackupFolder& m_source;
  std::shared_ptr<DestinationTree> m_pTree;
  ExtractionReport& m_report;
  std::string m_strFolder;              // of the previous file
  std::optional<Descriptor> m_folder;   // opened; empty before the first file
  std::vector<unsigned char> m_buffer;  // a piece of content
  uint64_t m_nAdvanced = 0;             // bytes of the entry at hand that the bar has counted
};

}  // namespace orvandel
