#pragma once
#include <functional>
#include <memory>
#include <optional>

#include "backup/categories.h"

namespace orvandel {

/// Creates the parser of a scan. @return null when there is none.
using ParserMaker = std::function<std::unique_ptr<IPhoneRecoveryParse>(CIphoneBackupFile& session)>;

/// Creates the parser of a local backup.
std::unique_ptr<IPhoneRecoveryParse> MakeLocalParser(CIphoneBackupFile& session);

/// Hooks of a scan. All are called on the scan's thread, and all but decrypt may be empty.
struct ScanSteps {
  ParserMaker makeParser = MakeLocalParser;
  ProgressCallback pfnProgress = nullptr;  ///< anything but 0 ends the walk, see CIphoneBackupFile
  void* pProgressContext = nullptr;
  /// Decrypts an encrypted backup.
  /// @return the folder of the decrypted files, or nullopt to end the scan.
  std::function<std::optional<QString>()> decrypt;
  /// Called after decryption, before the manifest is read.
  std::function<void()> beforeManifest;
  /// Called with the status of reading the manifest, before the categories are read.
  std::function<void(int nStatus)> afterManifest;
  /// Called for each category once its records are complete.
  std::function<void(const Category& category)> afterCategory;
  /// False for a category that needn't be read; its records may stay empty.
  std::function<bool(CategoryNumber nNumber)> isWanted;
};

/// Opens a backup and reads its manifest, then the categories in their fixed order.
/// @param pParser receives the parser of this scan; the previous one is destroyed first.
/// @param records the records are appended to it.
/// @return -1 without a parser; 0 when the decryption ended the scan; -110 when the parser's Scan returned
/// it; 2 when Scan returned -1 or 2, or when a category returned 2; else the result of the last category. A
/// missing or unreadable manifest (87) doesn't end the scan.
int ScanBackup(const __BACK_FILE_INFO__& info, CIphoneBackupFile& session,
               std::unique_ptr<IPhoneRecoveryParse>& pParser, BackupRecords& records, const ScanSteps& steps);

}  // namespace orvandel
