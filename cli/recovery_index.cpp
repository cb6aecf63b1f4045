#include "cli/recovery_index.h"

namespace orvandel {

namespace {

/// The folders of the documents; those of the copies are in the table of categories.
struct DocumentFolder {
  CategoryNumber nNumber;
  const char* pszFolder;
};

constexpr DocumentFolder kDocumentFolders[] = {
    {kMessages, "/Message/"}, {kContacts, "/Contacts/"},         {kCallHistory, "/CallHistory/"},
    {kNotes, "/Notes/"},      {kWhatsApp, "/WhatsApp Message/"},
};

/// The category that a file belongs to; kCategoryCount for none.
/// @param qstrPath relative to the destination, with a leading "/".
CategoryNumber CategoryOf(const QString& qstrPath) {
  for (const Category& category : Categories()) {
    if (category.pszFolder && qstrPath.startsWith(QLatin1String(category.pszFolder))) return category.nNumber;
  }
  if (!qstrPath.endsWith(QLatin1String(".html"))) return kCategoryCount;
  for (const DocumentFolder& folder : kDocumentFolders) {
    if (qstrPath.startsWith(QLatin1String(folder.pszFolder))) return folder.nNumber;
  }
  return kCategoryCount;
}

}  // namespace

void RecoveryIndex::Add(const WrittenFile& file) {
  if (!file.Succeeded() || !file.qstrPath.startsWith(m_qstrDestination)) return;
  QString qstrPath = file.qstrPath.mid(m_qstrDestination.size());
  if (!qstrPath.startsWith('/')) qstrPath.prepend('/');  // below the root folder
  const CategoryNumber nNumber = CategoryOf(qstrPath);
  if (nNumber != kCategoryCount) m_files[nNumber].push_back({qstrPath.mid(1), m_nKey});
}

}  // namespace orvandel
