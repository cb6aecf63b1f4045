#include "decrypt/tool.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <stdexcept>

#include "decrypt/backup_reader.h"
#include "decrypt/worker_pool.h"
#include "decrypt/written_content.h"

namespace orvandel {

namespace {

constexpr uint64_t kProgressLines = 200;  // per run

void PrintWrongPassword() {
  puts(kWrongPasswordMark);
  fflush(stdout);
}

/// Prints one failure as a line. Thread-safe.
void PrintFailure(std::string strWhat) {
  // A path may contain a line feed, which would split the line.
  for (char& nByte : strWhat) {
    if (static_cast<unsigned char>(nByte) < 0x20 || nByte == 0x7F) nByte = '?';
  }
  fprintf(stderr, "%s\n", strWhat.c_str());
}

/// Counts finished files and prints the count at regular intervals.
class Progress {
 public:
  explicit Progress(uint64_t nTotal) : m_nStep(nTotal / kProgressLines + 1) {}

  void Advance() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (++m_nDone % m_nStep == 0) Print();
  }

  /// Prints the last count, unless already printed.
  void Finish() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_nDone == 0 || m_nDone % m_nStep != 0) Print();
  }

 private:
  void Print() const {
    printf("%s%llu\n", kCountMark, static_cast<unsigned long long>(m_nDone));
    fflush(stdout);
  }

  std::mutex m_mutex;
  uint64_t m_nStep;
  uint64_t m_nDone = 0;
};

}  // namespace

ToolStatus CheckPassword(const std::string& strBackup, const Secret& password) {
  try {
    if (!BackupReader(strBackup).Unlock(password)) {
      PrintWrongPassword();
      return kToolWrongPassword;
    }
  } catch (const std::runtime_error& error) {
    PrintFailure(error.what());
    return kToolFailed;
  }
  Progress(0).Finish();
  return kToolDone;
}

ToolStatus DecryptBackup(const std::string& strBackup, const std::string& strFolder,
                         const std::string& strManifestFolder, const Secret& password) {
  std::atomic<bool> bFailed{false};
  try {
    BackupReader reader(strBackup);
    if (!reader.Unlock(password)) {
      PrintWrongPassword();
      return kToolWrongPassword;
    }
    const std::string strProblem = reader.OpenManifest(strManifestFolder, strFolder);
    if (!strProblem.empty()) {
      PrintFailure(strProblem);
      bFailed = true;
    }
    Progress progress(reader.CountFiles());
    const auto decrypt = [&](ManifestEntry& entry) {
      try {
        ContentStream content = reader.Open(entry);
        WriteContent(content, strFolder + "/" + entry.strId);
      } catch (const std::exception& error) {
        PrintFailure(reader.PathOf(entry.strId) + ": " + error.what());
        bFailed = true;
      }
      progress.Advance();
    };
    WorkerPool<ManifestEntry> pool([&] { return decrypt; });
    try {
      reader.Visit(BackupReader::Detail::Keys, [&](ManifestEntry&& entry) {
        if (reader.IsFile(entry)) pool.Add(std::move(entry));
        return true;
      });
    } catch (const std::runtime_error& error) {
      PrintFailure(error.what());
      bFailed = true;
    }
    pool.Finish();
    progress.Finish();
  } catch (const std::runtime_error& error) {
    PrintFailure(error.what());
    bFailed = true;
  }
  return bFailed ? kToolFailed : kToolDone;
}

}  // namespace orvandel
