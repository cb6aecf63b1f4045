#pragma once
#include <QString>
#include <string>

#include "backup/records.h"
#include "cli/recover_options.h"
#include "cli/recovery_index.h"
#include "common/result.h"

namespace orvandel {

/// What the front page shows beside the files. All texts come from the backup or the clock, unescaped.
struct IndexFacts {
  QString qstrDevice;      ///< display name
  QString qstrModel;       ///< product type, such as "iPhone7,2"; empty if unknown
  QString qstrVersion;     ///< of iOS; empty if unknown
  QString qstrBackupDate;  ///< YYYY-MM-DD HH:MM:SS, UTC; empty if unknown
  QString qstrTime;        ///< of the recovery
  qint64 nFailed = 0;      ///< files that could not be read, decrypted or written
};

/// The front page of a recovery: "index.html" in the destination. It shows the device, the number of items of
/// each category, links to all pages, and a gallery of the copied pictures and videos.
///
/// The template has tokens in a fixed order; the page is written piece by piece between them, so inserted
/// text isn't searched for tokens. The list of media files is JSON in an element that doesn't run, with every
/// character escaped that could end the element; everything else is HTML with its text escaped. Links are
/// relative and percent-encoded by segment, so no file name can lead elsewhere.
class IndexPage {
 public:
  /// Reads the template. @param qstrProgramFolder the folder that contains "template".
  /// @return a problem of the step Open when it can't be read or lacks a token.
  static Result<IndexPage> Load(const QString& qstrProgramFolder);

  /// Writes the page, whole or not at all. Replaces a page of an earlier run, and nothing else: any other
  /// entry named "index.html", such as a link, stays, and the page gets the next free name.
  WrittenFile Write(const RecoverOptions& options, const IndexFacts& facts, const BackupRecords& records,
                    const RecoveryIndex& index) const;

 private:
  explicit IndexPage(std::vector<std::string> parts) : m_parts(std::move(parts)) {}

  std::vector<std::string> m_parts;  // between the tokens: one more than there are tokens
};

/// The path to write the front page to: the first of "index.html", "index(1).html" and so on that is free or
/// holds a front page. @param strFolder narrow, without a trailing "/". @return narrow.
std::string IndexPath(const std::string& strFolder);

}  // namespace orvandel
