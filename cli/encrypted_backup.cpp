#include "cli/encrypted_backup.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <future>
#include <thread>

#include "cli/exit_status.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/password.h"
#include "cli/places.h"
#include "cli/stop_signal.h"
#include "common/format.h"
#include "common/places.h"
#include "common/text.h"
#include "decrypt/written_content.h"

namespace orvandel {

namespace {

constexpr std::chrono::milliseconds kStopCheck(20);

/// Moves a password into memory that is wiped.
Secret ToSecret(QByteArray& password) {
  Secret secret(password.constData(), static_cast<size_t>(password.size()));
  password.fill('\0');
  return secret;
}

/// Unlocks on another thread, so that a signal ends the process at once: the derivation of the key takes
/// seconds and can't be stopped.
bool UnlockUnlessStopped(BackupReader& reader, const Secret& password) {
  std::promise<bool> promise;
  std::future<bool> unlocked = promise.get_future();
  std::thread thread([&] {
    try {
      promise.set_value(reader.Unlock(password));
    } catch (...) {
      promise.set_exception(std::current_exception());
    }
  });
  while (unlocked.wait_for(kStopCheck) != std::future_status::ready) {
    if (StopSignal() != 0) EndProcess(Interrupted());
  }
  thread.join();
  return unlocked.get();
}

}  // namespace

int CheckRoom(const BackupOptions& options, const std::vector<std::string>& files) {
  struct statvfs disk;
  if (options.bForce || statvfs(WorkFolder().c_str(), &disk) != 0) return kExitDone;
  const quint64 nBlock = disk.f_frsize;
  quint64 nNeeded = 0;
  for (const std::string& strFile : files) {
    struct stat info;
    if (lstat(strFile.c_str(), &info) == 0 && S_ISREG(info.st_mode))
      nNeeded += (static_cast<quint64>(info.st_size) + nBlock - 1) / nBlock * nBlock;
  }
  const quint64 nFree = static_cast<quint64>(disk.f_bavail) * nBlock;
  if (nNeeded <= nFree) return kExitDone;
  PrintError(
      QString("%1: decrypting its manifest and stores takes %2, and %3 has %4 free; use --force to try "
              "anyway")
          .arg(options.qstrBackup, FromNarrow(GetFileSizeString(static_cast<qint64>(nNeeded))),
               FromNarrow(WorkFolder()), FromNarrow(GetFileSizeString(static_cast<qint64>(nFree)))));
  return kExitNotWritten;
}

int Unlock(const BackupOptions& options, BackupReader& reader) {
  try {
    QByteArray password;
    if (!ReadPassword(options, password)) return StopSignal() != 0 ? Interrupted() : kExitPassword;
    const Secret secret = ToSecret(password);
    if (UnlockUnlessStopped(reader, secret)) return kExitDone;
  } catch (const std::runtime_error& error) {
    PrintError(FromNarrow(error.what()));
    PrintError(options.qstrBackup + ": the backup could not be decrypted");
    return kExitNotWritten;
  }
  PrintError(options.qstrBackup + ": wrong password");
  return kExitPassword;
}

EncryptedBackup::EncryptedBackup() : m_qstrFolder(FromNarrow(WorkFolder() + kDecryptFolderName)) {}

EncryptedBackup::~EncryptedBackup() {
  if (!m_pSource) return;
  SetFileNaming({});
  InstallFileSource(ToNarrow(m_qstrFolder), nullptr);
}

int EncryptedBackup::Open(const BackupOptions& options, const WantedCategory& isWanted) {
  if (!WorkFolderProblem().isEmpty()) {
    PrintError("the private folder for the decrypted files can't be created: " + WorkFolderProblem());
    return kExitNotWritten;
  }
  m_qstrBackup = options.qstrBackup;
  m_pReader = std::make_unique<BackupReader>(ToNarrow(options.qstrBackup));
  std::vector<std::string> files = {m_pReader->Folder() + "/Manifest.db"};
  for (const StoreUse& store : StoreUses()) {
    if (store.IsWanted(isWanted)) files.push_back(m_pReader->PathOf(store.pszId));
  }
  if (const int nStatus = CheckRoom(options, files)) return nStatus;
  if (const int nStatus = Unlock(options, *m_pReader)) return nStatus;
  const std::string strFolder = ToNarrow(m_qstrFolder);
  if (mkdir(strFolder.c_str(), 0700) != 0) {
    PrintError(QString("%1: the folder for the decrypted files can't be created (%2)")
                   .arg(m_qstrFolder, QString::fromLocal8Bit(strerror(errno))));
    return kExitNotWritten;
  }
  try {
    m_pReader->OpenManifest(strFolder, strFolder);
    m_pSource = std::make_shared<EncryptedSource>(*m_pReader, strFolder, [] { return StopSignal() != 0; });
  } catch (const std::runtime_error& error) {
    return Refuse(error);
  }
  return kExitDone;
}

int EncryptedBackup::OpenFiles(const WantedCategory& isWanted) {
  try {
    m_pSource->Finish();
  } catch (const std::runtime_error& error) {
    return Refuse(error);
  }
  if (!m_pSource->ManifestProblem().empty()) m_failures.push_back({{}, m_pSource->ManifestProblem()});
  DecryptStores(isWanted);
  InstallFileSource(ToNarrow(m_qstrFolder), m_pSource);
  return kExitDone;
}

int EncryptedBackup::Refuse(const std::exception& error) const {
  PrintError(FromNarrow(error.what()));
  PrintError(m_qstrBackup + ": the backup could not be decrypted");
  return kExitNotWritten;
}

void EncryptedBackup::DecryptStores(const WantedCategory& isWanted) {
  for (const StoreUse& store : StoreUses()) {
    if (StopSignal() != 0) return;
    if (!store.IsWanted(isWanted)) continue;
    try {
      ContentStream content = m_pSource->Open(store.pszId);
      WriteContent(content, ToNarrow(m_qstrFolder) + "/" + store.pszId);
    } catch (const ContentError& error) {
      if (error.Code() != ENOENT) m_failures.push_back({m_pReader->PathOf(store.pszId), error.what()});
    } catch (const std::runtime_error& error) {
      m_failures.push_back({m_pReader->PathOf(store.pszId), error.what()});
    }
  }
}

}  // namespace orvandel
