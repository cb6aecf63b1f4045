#pragma once
#include <functional>
#include <string>
#include <thread>

#include "common/backup_folder.h"
#include "common/file_source.h"
#include "decrypt/backup_reader.h"
#include "decrypt/record_index.h"

namespace orvandel {

/// The files of an encrypted backup by their identifiers, decrypted where they lie.
class EncryptedSource : public FileSource {
 public:
  /// Begins to read the manifest, on another thread if the system grants one.
  /// @param reader         unlocked, with its manifest open; must outlive this object.
  /// @param strIndexFolder folder of a temporary file.
  /// @param isStopped      polled on that thread; true ends the reading.
  /// Throws std::runtime_error when the index can't be created.
  EncryptedSource(const BackupReader& reader, const std::string& strIndexFolder,
                  std::function<bool()> isStopped);
  ~EncryptedSource() override;

  /// Waits until the manifest is read. Call it before the functions below. Throws std::runtime_error when the
  /// index can't be written.
  void Finish();

  /// Why the manifest could not be read completely; empty when it was. The entries before that are there.
  const std::string& ManifestProblem() const { return m_strManifestProblem; }

  Result<Head> ReadHead(const std::string& strName, unsigned char* pBuffer, size_t nCount) const override;
  Problem Check(const std::string& strName) const override;
  Problem Copy(const std::string& strName, int nTarget, const std::string& strTarget) const override;

  /// Opens a file. Throws ContentError.
  ContentStream Open(const std::string& strId) const;

 private:
  void ReadManifest();

  const BackupReader& m_reader;
  const std::function<bool()> m_isStopped;
  BackupFolder m_folder;
  RecordIndex m_index;
  std::string m_strManifestProblem, m_strIndexProblem;
  std::thread m_thread;
};

}  // namespace orvandel
