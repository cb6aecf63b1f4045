#pragma once
#include <functional>
#include <memory>
#include <optional>

#include "backup/categories.h"

/// Makes the parser of a scan over a session. @return null where there is none.
using ParserMaker = std::function<std::unique_ptr<IPhoneRecoveryParse>(CIphoneBackupFile& session)>;

/// The parser of a local backup.
std::unique_ptr<IPhoneRecoveryParse> MakeLocalParser(CIphoneBackupFile& session);

/// What differs between the callers of a scan. Everything is called on the thread of the scan, and everything
/// but the decryption may be empty.
struct ScanSteps {
  ParserMaker makeParser = MakeLocalParser;
  ProgressCallback pfnProgress = nullptr;  ///< ends the walk by an answer other than 0, see CIphoneBackupFile
  void* pProgressContext = nullptr;
  /// Decrypts the backup, if it is an encrypted one.
  /// @return the folder of the decrypted files; none to end the scan.
  std::function<std::optional<QString>()> decrypt;
  /// Called when the backup is readable, before its manifest is read.
  std::function<void()> beforeManifest;
  /// Gets the status of reading the manifest, before the categories are read.
  std::function<void(int nStatus)> afterManifest;
  /// Called for each category as soon as its records are there.
  std::function<void(const Category& category)> afterCategory;
};

/// Opens a backup and reads all of it: the manifest, then the categories in their fixed order.
/// @param pParser receives the parser of this scan; an earlier one is destroyed first.
/// @param records receive what is found, behind what is there.
/// @return -1 without a parser; 0 when the decryption ended the scan; -110 when the parser's Scan returned
/// it; 2 when it returned -1 or 2, or when a category asked to end the walk; else what the last category
/// returned. A manifest that is missing or can't be read (87) doesn't end the scan.
int ScanBackup(const __BACK_FILE_INFO__& info, CIphoneBackupFile& session,
               std::unique_ptr<IPhoneRecoveryParse>& pParser, BackupRecords& records, const ScanSteps& steps);
