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

/// What is the same about the categories wherever they appear.
struct Category {
  CategoryNumber nNumber;
  const char* pszLabel;   ///< in the tree, without the count
  const char* pszFolder;  ///< of recovered files below the destination; null for a category of documents
  size_t (*pfnCount)(const BackupRecords& records);
};

/// All categories, in tree order.
const std::array<Category, kCategoryCount>& Categories();

/// Label and count as the tree shows them: "Camera Roll(12)".
std::string CategoryLabel(const Category& category, size_t nCount);

/// Asks a parser for all categories in the fixed order, after its Scan.
/// @param afterCategory called for each category as soon as its records are there; may be empty.
/// @return 2 when a step asked to end the walk (later categories stay empty), else what the last step
/// returned.
int WalkCategories(IPhoneRecoveryParse& parser, BackupRecords& records,
                   const std::function<void(const Category&)>& afterCategory);
