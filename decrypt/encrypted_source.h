#pragma once
#include <string>

#include "common/backup_folder.h"
#include "common/file_source.h"
#include "decrypt/backup_reader.h"
#include "decrypt/record_index.h"

namespace orvandel {

/// The files of an encrypted backup by their identifiers, decrypted where they lie.
class EncryptedSource : public FileSource {
 public:
  /// Reads the manifest.
  /// @param reader         unlocked, with its manifest open; must outlive this object.
  /// @param strIndexFolder folder of a temporary file.
  /// @param isStopped      polled; true ends the reading.
  /// Throws std::runtime_error when the index can't be written.
  EncryptedSource(const BackupReader& reader, const std::string& strIndexFolder,
                  const std::function<bool()>& isStopped);

  /// Why the manifest could not be read completely; empty when it was. The entries before that are there.
  const std::string& ManifestProblem() const { return m_strManifestProblem; }

  Result<Head> ReadHead(const std::string& strName, unsigned char* pBuffer, size_t nCount) const override;
  Problem Copy(const std::string& strName, int nTarget, const std::string& strTarget) const override;

  /// Opens a file. Throws ContentError.
  ContentStream Open(const std::string& strId) const;

 private:
  const BackupReader& m_reader;
  BackupFolder m_folder;
  RecordIndex m_index;
  std::string m_strManifestProblem;
};

}  // namespace orvandel
