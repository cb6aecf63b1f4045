#pragma once
#include <functional>
#include <string>
#include <vector>

#include "backup/info.h"
#include "common/text.h"
#include "sample/backup_builder.h"
#include "sample/stores.h"

// What the tests of the session and of the readers share. Paths are narrow.

/// Collects what a progress callback is told, and answers it.
struct ProgressLog {
  std::vector<int> values;
  /// What to answer a call (the first is 0) with a value; without it the answer is "go on".
  std::function<int(size_t nCall, int nValue)> answer;

  static int Receive(void* pContext, int nProgress) {
    auto* pLog = static_cast<ProgressLog*>(pContext);
    pLog->values.push_back(nProgress);
    return pLog->answer ? pLog->answer(pLog->values.size() - 1, nProgress) : 0;
  }

  /// Says stop with every call from this one on, as a user's cancel does.
  void CancelFrom(size_t nFirst) {
    answer = [nFirst](size_t nCall, int) { return nCall >= nFirst ? 1 : 0; };
  }
};

/// The facts of a backup that a scan needs.
inline __BACK_FILE_INFO__ InfoOf(const std::string& strFolder, bool bEncrypted = false) {
  __BACK_FILE_INFO__ info;
  info.strBackupPath = strFolder;
  info.bEncrypted = bEncrypted;
  return info;
}

/// Where a well-known store of a backup has to be written.
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

/// Seconds from 2001-01-01 to 2014-01-01, and how stores tell that moment.
constexpr qint64 kNewYear2014 = 410227200;
constexpr char kNewYear2014Text[] = "2014-01-01 00:00:00";
