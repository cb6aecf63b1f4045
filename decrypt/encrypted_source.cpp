#include "decrypt/encrypted_source.h"

#include <cerrno>

#include "decrypt/protocol.h"
#include "decrypt/written_content.h"

namespace orvandel {

EncryptedSource::EncryptedSource(const BackupReader& reader, const std::string& strIndexFolder,
                                 const std::function<bool()>& isStopped)
    : m_reader(reader), m_folder(reader.Folder()), m_index(strIndexFolder) {
  std::string strIndexProblem;
  try {
    reader.Visit(BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
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
    content.CheckPadding();
    return Head{static_cast<int64_t>(content.Size()), content.Read(pBuffer, nCount)};
  } catch (const ContentError& error) {
    return Problem{error.Step(), error.Code(), strName, error.what()};
  }
}

Problem EncryptedSource::Copy(const std::string& strName, int nTarget, const std::string& strTarget) const {
  try {
    ContentStream content = Open(strName);
    content.CheckPadding();
    WriteContent(content, nTarget);
    return {};
  } catch (const ContentError& error) {
    const bool bTarget = error.Step() == Problem::Step::Write;
    return Problem{error.Step(), error.Code(), bTarget ? strTarget : strName, error.what()};
  }
}

}  // namespace orvandel
