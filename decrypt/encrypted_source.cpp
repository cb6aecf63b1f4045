#include "decrypt/encrypted_source.h"

#include <algorithm>
#include <cerrno>

#include "decrypt/protocol.h"
#include "decrypt/written_content.h"

namespace orvandel {

namespace {
constexpr size_t kSmallFile = 4096;  // bytes
}

EncryptedSource::EncryptedSource(const BackupReader& reader, const std::string& strIndexFolder,
                                 const std::function<bool()>& isStopped)
    : m_reader(reader), m_folder(reader.Folder()), m_index(strIndexFolder) {
  std::string strIndexProblem;
  try {
    reader.Visit(BackupReader::Detail::Keys, [&](ManifestEntry&& entry) {
      try {
        if (reader.IsFile(entry)) m_index.Add(entry);
      } catch (const std::runtime_error& error) {
        strIndexProblem = error.what();
        return false;
      }
      return !isStopped();
    });
  } catch (const std::runtime_error& error) {
    m_strManifestProblem = error.what();
  }
  if (!strIndexProblem.empty()) throw std::runtime_error(strIndexProblem);
  m_index.Finish();
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
