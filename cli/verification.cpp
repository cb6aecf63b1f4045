#include "cli/verification.h"

#include <cerrno>

#include "cli/content_hash.h"
#include "cli/stop_signal.h"

namespace orvandel {

namespace {

constexpr size_t kPieceSize = size_t{256} * 1024;

FileState Damaged(const std::string& strReason) {
  return {FileState::Kind::Damaged, strReason};
}

bool IsKnown(uint64_t nSize) {
  return nSize != ContentStream::kUnknownSize;
}

}  // namespace

FileVerifier::FileVerifier(const BackupReader& reader, const BackupFolder& folder,
                           std::function<void(uint64_t nBytes)> advance)
    : m_reader(reader), m_folder(folder), m_advance(std::move(advance)), m_buffer(kPieceSize) {}

bool FileVerifier::Verify(const ManifestEntry& entry, FileState& state) {
  if (StopSignal() != 0) return false;
  if (!IsIdentifier(entry.strId)) {
    state = Damaged("its identifier in the manifest is invalid");
    return true;
  }
  try {
    ContentStream content = m_reader.Open(entry, m_folder.Open(m_reader.PathOf(entry.strId)));
    content.CheckPadding();
    // The size of an unencrypted file is the file's own; that of an encrypted one is the record's already.
    if (IsKnown(entry.nSize) && content.Size() != entry.nSize) {
      state =
          Damaged("has " + std::to_string(content.Size()) + " of " + std::to_string(entry.nSize) + " bytes");
      return true;
    }
    if (content.IsLongerThanItsSize()) {
      state =
          Damaged("has more than the " + std::to_string(entry.nSize) + " bytes that the manifest records");
      return true;
    }
    return entry.strDataHash.empty() || VerifyHash(entry, content, state);
  } catch (const ContentError& error) {
    if (error.Code() == ENOENT)
      state = {FileState::Kind::Missing, {}};
    else
      state = Damaged(error.what());
  } catch (const std::exception& error) {
    state = Damaged(error.what());
  }
  return true;
}

bool FileVerifier::Hash(ContentStream& content, std::string& strHash) {
  ContentHash hash;
  while (const size_t nRead = content.Read(m_buffer.data(), m_buffer.size())) {
    if (StopSignal() != 0) return false;
    hash.Add(m_buffer.data(), nRead);
    m_advance(nRead);
  }
  strHash = hash.Text();
  return true;
}

bool FileVerifier::VerifyHash(const ManifestEntry& entry, ContentStream& content, FileState& state) {
  std::string strHash;
  if (!Hash(content, strHash)) return false;
  if (strHash == entry.strDataHash) return true;
  if (!entry.wrappedKey.empty()) {
    // The manifest of an encrypted backup may record the hash of what is in the backup.
    ContentStream stored(m_folder.Open(m_reader.PathOf(entry.strId)), Secret(), entry.nSize);
    if (!Hash(stored, strHash)) return false;
    if (strHash == entry.strDataHash) return true;
  }
  state = Damaged("its content isn't what the manifest records: its SHA-1 is another");
  return true;
}

}  // namespace orvandel
