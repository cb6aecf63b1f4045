#include "decrypt/encrypted_source.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "decrypt/protocol.h"
#include "decrypt/written_content.h"

namespace orvandel {

namespace {
constexpr size_t kSmallFile = 1024;  // bytes
}

EncryptedSource::EncryptedSource(const BackupReader& reader, const std::string& strIndexFolder,
                                 std::function<bool()> isStopped)
    : m_reader(reader),
      m_isStopped(std::move(isStopped)),
      m_folder(reader.Folder()),
      m_index(strIndexFolder) {
  try {
    m_thread = std::thread([this] { ReadManifest(); });
  } catch (const std::system_error&) {
    ReadManifest();  // no thread available
  }
}

EncryptedSource::~EncryptedSource() {
  if (m_thread.joinable()) m_thread.join();
}

void EncryptedSource::ReadManifest() {
  try {
    m_reader.Visit(BackupReader::Detail::Keys, [&](ManifestEntry&& entry) {
      try {
        if (m_reader.IsFile(entry)) m_index.Add(entry);
      } catch (const std::runtime_error& error) {
        m_strIndexProblem = error.what();
      }
      return m_strIndexProblem.empty() && !m_isStopped();
    });
  } catch (const std::exception& error) {
    m_strManifestProblem = error.what();
  }
  try {
    m_index.Finish();
  } catch (const std::exception& error) {
    m_strIndexProblem = error.what();
  }
}

void EncryptedSource::Finish() {
  if (m_thread.joinable()) m_thread.join();
  if (!m_strIndexProblem.empty()) throw std::runtime_error(m_strIndexProblem);
}

ContentStream EncryptedSource::Open(const std::string& strId) const {
  try {
    if (const auto entry = m_index.Find(strId))
      return m_reader.Open(*entry, m_folder.Open(m_reader.PathOf(strId)));
  } catch (const ContentError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw ContentError(Problem::Step::Read, EIO, error.what());
  }
  throw ContentError(Problem::Step::Open, ENOENT, kMissingSource);
}

Result<FileSource::Head> EncryptedSource::ReadHead(const std::string& strName, unsigned char* pBuffer,
                                                   size_t nCount) const {
  try {
    ContentStream content = Open(strName);
    const auto nSize = static_cast<int64_t>(content.Size());
    if (content.Size() > kSmallFile) return Head{nSize, content.Read(pBuffer, nCount)};
    // With the end the padding is checked, too. Of a large file the end may be far away on the disk.
    unsigned char bytes[kSmallFile];
    const size_t nRead = std::min(content.Read(bytes, sizeof bytes), nCount);
    std::copy_n(bytes, nRead, pBuffer);
    return Head{nSize, nRead};
  } catch (const ContentError& error) {
    return Problem{error.Step(), error.Code(), strName, error.what()};
  }
}

Problem EncryptedSource::Check(const std::string& strName) const {
  try {
    Open(strName).CheckPadding();
    return {};
  } catch (const ContentError& error) {
    return Problem{error.Step(), error.Code(), strName, error.what()};
  }
}

Problem EncryptedSource::Copy(const std::string& strName, int nTarget, const std::string& strTarget) const {
  try {
    ContentStream content = Open(strName);
    WriteContent(content, nTarget);
    return {};
  } catch (const ContentError& error) {
    const bool bTarget = error.Step() == Problem::Step::Write;
    return Problem{error.Step(), error.Code(), bTarget ? strTarget : strName, error.what()};
  }
}

}  // namespace orvandel
