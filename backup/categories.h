#pragma once
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "backup/parser.h"
#include "backup/records.h"

/// The numbers of the categories, which are their places in the tree.
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

/// A file of a backup as a recovery copies it: the narrow name that it gets, and where it lies.
struct FileToCopy {
  const std::string& strName;
  const std::u16string& wstrPath;
};

/// What is the same about the categories wherever they appear.
struct Category {
  CategoryNumber nNumber;
  const char* pszLabel;   ///< in the tree, without the count
  const char* pszFolder;  ///< of recovered files below the destination; null for a category of documents
  size_t (*pfnCount)(const BackupRecords& records);
  /// A file of a list of files; throws std::out_of_range beyond its end. Null for apps and documents.
  FileToCopy (*pfnFile)(const BackupRecords& records, size_t nRow);
  AppFileMap BackupRecords::*pApps;  ///< null but for the files of apps
};

/// All categories, in tree order.
const std::array<Category, kCategoryCount>& Categories();

/// A category of files in a recovery, and its stretch of the progress bar.
struct FileStep {
  CategoryNumber nNumber;
  int nPercent;    ///< where its files begin
  int nNumerator;  ///< how far they carry the bar, in hundredths of a percent
  int nEndMark;    ///< where the bar stands when it is done, in hundredths of a percent; one percent goes on
                   ///< top
};

/// All categories of files, in the order of a recovery, which isn't that of the tree.
const std::array<FileStep, 6>& FileSteps();

/// Label and count as the tree shows them: "Camera Roll(12)".
std::string CategoryLabel(const Category& category, size_t nCount);

/// Asks a parser for all categories in the fixed order, after its Scan.
/// @param afterCategory called for each category as soon as its records are there; may be empty.
/// @return 2 when a step asked to end the walk (later categories stay empty), else what the last step
/// returned.
int WalkCategories(IPhoneRecoveryParse& parser, BackupRecords& records,
                   const std::function<void(const Category&)>& afterCategory);
