#include "cli/entry_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cli/stop_signal.h"
#include "common/file.h"

namespace orvandel {

namespace {

using Outcome = ExtractionReport::Outcome;

constexpr size_t kPieceSize = size_t{256} * 1024;

/// A signal requested a stop in the middle of a file.
struct Stopped {};

/// A file can't be written. what() is the reason.
struct WriteError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void WriteAll(int nDescriptor, const unsigned char* pData, size_t nCount) {
  while (nCount > 0) {
    const ssize_t nWritten = write(nDescriptor, pData, nCount);
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten < 0) throw WriteError(std::string("can't be written: ") + strerror(errno));
    pData += nWritten;
    nCount -= static_cast<size_t>(nWritten);
  }
}

bool IsComplete(const struct stat& info, uint64_t nSize, int64_t nModified) {
  return nModified >= 0 && static_cast<uint64_t>(info.st_size) == nSize && info.st_mtime == nModified;
}

}  // namespace

uint64_t CountedSize(const ManifestEntry& entry) {
  const bool bFile = entry.kind != ManifestEntry::Kind::Folder && entry.kind != ManifestEntry::Kind::Link;
  // No disk holds more.
  return bFile && entry.nSize < uint64_t{1} << 50 ? entry.nSize : 0;
}

EntryWriter::EntryWriter(const FilesOptions& options, const BackupReader& reader, const BackupFolder& source,
                         std::shared_ptr<DestinationTree> pTree, ExtractionReport& report)
    : m_options(options),
      m_reader(reader),
      m_source(source),
      m_pTree(std::move(pTree)),
      m_report(report),
      m_buffer(kPieceSize) {}

void EntryWriter::Write(const EntryJob& job) {
  if (StopSignal() != 0) return;
  std::string strReason;
  if (job.entry.kind == ManifestEntry::Kind::Folder) {
    EnterFolder(job.target.strPath, strReason);
    m_report.AddFolder(job.target, strReason);
    return;
  }
  m_nAdvanced = 0;
  uint64_t nSize = 0;
  Outcome outcome = Outcome::Failed;
  try {
    outcome = WriteFile(job, nSize, strReason);
  } catch (const Stopped&) {
    return;
  } catch (const ContentError& error) {
    strReason = error.Code() == ENOENT ? "is missing from the backup" : error.what();
  } catch (const std::exception& error) {
    strReason = error.what();
  }
  m_report.Add(outcome, job.target, nSize, strReason);
  const uint64_t nCounted = CountedSize(job.entry);
  m_report.Advance(nCounted > m_nAdvanced ? nCounted - m_nAdvanced : 0);
}

bool EntryWriter::EnterFolder(const std::string& strFolder, std::string& strReason) {
  if (m_folder && m_strFolder == strFolder) return true;
  m_folder.reset();
  Result<Descriptor> folder = m_pTree->OpenFolder(strFolder);
  if (!folder) {
    strReason = "can't be created: " + folder.Error().strReason;
    return false;
  }
  m_folder.emplace(std::move(*folder));
  m_strFolder = strFolder;
  if (m_options.bResume) m_pTree->RemoveLeftovers(m_folder->Get());
  return true;
}

/// Looks at what has the name already. @return true when it stays.
bool EntryWriter::IsKept(const EntryJob& job, const std::string& strName, Existing& existing) {
  existing.bThere = fstatat(m_folder->Get(), strName.c_str(), &existing.info, AT_SYMLINK_NOFOLLOW) == 0;
  if (!existing.bThere) return false;
  if (S_ISDIR(existing.info.st_mode)) throw WriteError("can't be created: a folder has its name");
  const bool bLink = job.entry.kind == ManifestEntry::Kind::Link;
  const bool bResumed = m_options.bResume && S_ISREG(existing.info.st_mode);
  const uint64_t nSize = bLink ? job.entry.strTarget.size() + 1 : job.entry.nSize;
  if (bResumed && IsComplete(existing.info, nSize, TimeOfCopy(job.entry))) return true;
  existing.bRewrite = m_options.bReplace;
  existing.bFragment = bResumed && !bLink && !m_options.bReplace;
  return !existing.bRewrite && !existing.bFragment;
}

/// Whether a file is the beginning of some content, as left by a power cut. Moves the content.
bool EntryWriter::IsFragment(ContentStream& content, const std::string& strName) const {
  const Descriptor file(
      openat(m_folder->Get(), strName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat info;
  if (file.Get() == -1 || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  auto nLeft = static_cast<uint64_t>(info.st_size);
  if (nLeft >= content.Size()) return false;
  std::vector<unsigned char> wanted(kPieceSize), found(kPieceSize);
  while (nLeft > 0) {
    const size_t nCount = std::min<uint64_t>(content.Read(wanted.data(), wanted.size()), nLeft);
    uint32_t nRead = 0;
    ReadData(file.Get(), found.data(), static_cast<uint32_t>(nCount), nRead);
    if (nRead != nCount || !std::equal(found.begin(), found.begin() + nRead, wanted.begin())) return false;
    nLeft -= nCount;
  }
  return true;
}

ContentStream EntryWriter::OpenContent(const ManifestEntry& entry) const {
  if (!IsIdentifier(entry.strId))
    throw ContentError(Problem::Step::Open, EINVAL, "its identifier in the manifest is invalid");
  return m_reader.Open(entry, m_source.Open(m_reader.PathOf(entry.strId)));
}

void EntryWriter::CopyContent(ContentStream& content, const PlacedFile& file) {
  while (const size_t nRead = content.Read(m_buffer.data(), m_buffer.size())) {
    if (StopSignal() != 0) throw Stopped();
    WriteAll(file.Get(), m_buffer.data(), nRead);
    m_nAdvanced += nRead;
    m_report.Advance(nRead);
  }
}

Outcome EntryWriter::WriteFile(const EntryJob& job, uint64_t& nSize, std::string& strReason) {
  const std::string& strPath = job.target.strPath;
  const size_t nSlash = strPath.rfind('/');
  const std::string strName = strPath.substr(nSlash + 1);
  if (!EnterFolder(nSlash == std::string::npos ? std::string() : strPath.substr(0, nSlash), strReason))
    return Outcome::Failed;
  Existing existing;
  if (IsKept(job, strName, existing)) return Outcome::Kept;

  const bool bLink = job.entry.kind == ManifestEntry::Kind::Link;
  std::optional<ContentStream> content;
  if (!bLink) {
    content.emplace(OpenContent(job.entry));
    // The size of an unencrypted file is that of the file, whatever its record says.
    if (m_options.bResume && existing.bThere && S_ISREG(existing.info.st_mode) &&
        IsComplete(existing.info, content->Size(), TimeOfCopy(job.entry)))
      return Outcome::Kept;
    content->CheckPadding();
    if (existing.bFragment) {
      if (!IsFragment(*content, strName)) return Outcome::Kept;
      existing.bRewrite = true;
      content.emplace(OpenContent(job.entry));
    }
  }
  Result<PlacedFile> file = PlacedFile::Create(m_folder->Get());
  if (!file) throw WriteError("can't be created: " + file.Error().strReason);
  nSize = bLink ? job.entry.strTarget.size() + 1 : content->Size();
  if (bLink) {
    const std::string strNote = job.entry.strTarget + '\n';
    WriteAll(file->Get(), reinterpret_cast<const unsigned char*>(strNote.data()), strNote.size());
  } else {
    CopyContent(*content, *file);
  }
  const Problem problem = file->Place(strName, TimeOfCopy(job.entry), existing.bRewrite);
  if (!problem) return Outcome::Extracted;
  if (problem.nCode == EEXIST && !existing.bRewrite) return Outcome::Kept;
  throw WriteError((problem.step == Problem::Step::Write ? "can't be written: " : "can't be created: ") +
                   problem.strReason);
}

}  // namespace orvandel
