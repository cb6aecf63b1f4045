#pragma once
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "backup/parser.h"
#include "backup/records.h"

namespace orvandel {

/// Numbers of the categories: their indexes in the tree.
enum CategoryNumber {
  kCameraRoll,
  kPhotoStream,
  kAppPhotos,
  kAppVideos,
  kMessages,
  kMessageAttachments,
  kContacts,
  kCallHistory,
  kNotes,
  kWhatsApp,
  kWhatsAppAttachments,
  kCategoryCount
};

/// A file for a recovery to copy: the name of the copy, narrow, and the path in the backup.
struct FileToCopy {
  const std::string& strName;
  const std::u16string& wstrPath;
};

/// Properties of a category, shared by window, command line and recovery.
struct Category {
  CategoryNumber nNumber;
  const char* pszLabel;   ///< label in the tree, without the count
  const char* pszFolder;  ///< folder of recovered files, relative to the destination; null for documents
  size_t (*pfnCount)(const BackupRecords& records);
  /// Returns one file of a list of files; throws std::out_of_range for an invalid row. Null for apps and
  /// documents.
  FileToCopy (*pfnFile)(const BackupRecords& records, size_t nRow);
  AppFileMap BackupRecords::*pApps;  ///< null except for app files
};

/// All categories, in tree order.
const std::array<Category, kCategoryCount>& Categories();

/// A category of files in a recovery, and its range of the progress bar.
struct FileStep {
  CategoryNumber nNumber;
  int nPercent;    ///< percentage at its start
  int nNumerator;  ///< length of its range, in hundredths of a percent
  int nEndMark;    ///< progress when it is done, less 1%, in hundredths of a percent
};

/// All categories of files in the order of a recovery, which differs from the order in the tree.
const std::array<FileStep, 6>& FileSteps();

/// Label and count as shown in the tree: "Camera Roll(12)".
std::string CategoryLabel(const Category& category, size_t nCount);

/// Reads the categories from a parser, in the fixed order. Call its Scan first.
/// @param afterCategory called for each category once its records are complete; may be empty.
/// @param isWanted steps that no wanted category needs are left out; empty for all.
/// @return 2 when a step returned 2, which ends the walk (later categories stay empty), else the result of
/// the last step.
int WalkCategories(IPhoneRecoveryParse& parser, BackupRecords& records,
                   const std::function<void(const Category&)>& afterCategory,
                   const std::function<bool(CategoryNumber)>& isWanted = {});

}  // namespace orvandel
