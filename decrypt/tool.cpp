#include "decrypt/tool.h"

#include <langinfo.h>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <optional>
#include <stdexcept>

#include "decrypt/backup_files.h"
#include "decrypt/password.h"
#include "decrypt/worker_pool.h"

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

/// Unlocks the keybag of a backup; nullopt when the password is wrong in all of its forms. An empty password
/// is always wrong.
std::optional<Keybag> Unlocked(const std::string& strBackup, const Bytes& data, const Secret& password) {
  try {
    Keybag keybag(data);
    for (const Secret& form : PasswordForms(password, nl_langinfo(CODESET))) {
      if (keybag.Unlock(form)) return keybag;
    }
    return std::nullopt;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(strBackup + "/Manifest.plist: " + error.what());
  }
}

}  // namespace

ToolStatus CheckPassword(const std::string& strBackup, const Secret& password) {
  try {
    const BackupFiles files(strBackup);
    if (!Unlocked(strBackup, files.KeybagData(), password)) {
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
    BackupFiles files(strBackup);
    const std::optional<Keybag> keybag = Unlocked(strBackup, files.KeybagData(), password);
    if (!keybag) {
      PrintWrongPassword();
      return kToolWrongPassword;
    }
    const std::string strProblem = files.OpenManifest(*keybag, strManifestFolder, strFolder);
    if (!strProblem.empty()) {
      PrintFailure(strProblem);
      bFailed = true;
    }
    Progress progress(files.Count());
    WorkerPool pool([&](FileJob& job) {
      try {
        if (job.bDamaged) throw std::runtime_error("its record in the manifest is damaged");
        const Secret key = job.wrappedKey.empty() ? Secret() : keybag->FileKey(job.wrappedKey);
        WriteDecrypted(job.strSource, strFolder + "/" + job.strId, key, job.nSize);
      } catch (const std::exception& error) {
        PrintFailure(job.strSource + ": " + error.what());
        bFailed = true;
      }
      progress.Advance();
    });
    try {
      files.Visit([&](FileJob&& job) { pool.Add(std::move(job)); });
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
