#pragma once
#include <functional>
#include <string>
#include <vector>

#include "backup/info.h"
#include "common/text.h"
#include "sample/backup_builder.h"
#include "sample/stores.h"

// Helpers for the tests of the session and of the readers. Paths are narrow.

namespace orvandel {

/// Records the calls of a progress callback, and answers them.
struct ProgressLog {
  std::vector<int> values;
  /// Returns the answer to a call (the first is 0) with a value; if empty, the answer is "continue".
  std::function<int(size_t nCall, int nValue)> answer;

  static int Receive(void* pContext, int nProgress) {
    auto* pLog = static_cast<ProgressLog*>(pContext);
    pLog->values.push_back(nProgress);
    return pLog->answer ? pLog->answer(pLog->values.size() - 1, nProgress) : 0;
  }

  /// Answers "stop" from this call on, like a user's cancel.
  void CancelFrom(size_t nFirst) {
    answer = [nFirst](size_t nCall, int) { return nCall >= nFirst ? 1 : 0; };
  }
};

/// The record of a backup, as a scan needs it.
inline __BACK_FILE_INFO__ InfoOf(const std::string& strFolder, bool bEncrypted = false) {
  __BACK_FILE_INFO__ info;
  info.strBackupPath = strFolder;
  info.bEncrypted = bEncrypted;
  return info;
}

/// Path of a well-known store in a backup.
inline QString Reserve(BackupBuilder& backup, const StorePlace& place) {
  return backup.reserveFile(place.domain, place.relativePath);
}

/// The file names of records.
template <typename Record>
std::vector<std::string> FileNames(const std::vector<Record>& records) {
  std::vector<std::string> names;
  for (const Record& record : records) names.push_back(record.strFileName);
  return names;
}

/// One field of each record.
template <typename Record, typename Field>
std::vector<Field> Column(const std::vector<Record>& records, Field Record::*pField) {
  std::vector<Field> values;
  for (const Record& record : records) values.push_back(record.*pField);
  return values;
}

/// Seconds from 2001-01-01 to 2014-01-01, and that time in the formats of stores.
constexpr qint64 kNewYear2014 = 410227200;
constexpr char kNewYear2014Text[] = "2014-01-01 00:00:00";

}  // namespace orvandel
