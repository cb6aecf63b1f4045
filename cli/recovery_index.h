#pragma once
#include <QString>
#include <array>
#include <vector>

#include "backup/categories.h"
#include "export/written_file.h"

namespace orvandel {

/// Remembers what a recovery has written, for its front page: the copied files and the pages of documents.
/// Holds their paths and nothing else. Not thread-safe.
class RecoveryIndex {
 public:
  struct File {
    QString qstrPath;       ///< relative to the destination, without a leading "/"
    unsigned int nKey = 0;  ///< of the conversation, for the page of one
  };

  /// @param qstrDestination absolute path of the folder that the paths are relative to.
  explicit RecoveryIndex(const QString& qstrDestination) : m_qstrDestination(qstrDestination) {}

  /// Sets the key of the conversation whose documents are written next.
  void SetConversation(unsigned int nKey) { m_nKey = nKey; }
  /// Adds a file; ignores failures, and documents that aren't pages.
  void Add(const WrittenFile& file);

  /// The files of a category, in the order of their recovery: its copies, or its pages.
  const std::vector<File>& Files(CategoryNumber nNumber) const { return m_files[nNumber]; }

 private:
  QString m_qstrDestination;
  unsigned int m_nKey = 0;
  std::array<std::vector<File>, kCategoryCount> m_files;
};

}  // namespace orvandel
