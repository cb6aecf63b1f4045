#include "decrypt/record_index.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace orvandel {

namespace {

constexpr size_t kMostUnwritten = 1024;  // records
/// What is known of a file's key.
enum State : uint32_t { kPlain, kHasKey, kOddKey, kDamaged };

[[noreturn]] void Fail(const std::string& strWhat) {
  throw std::runtime_error(strWhat + ": " + strerror(errno));
}

/// Creates a file without a name.
int MakeUnnamed(const std::string& strFolder) {
#ifdef O_TMPFILE
  const int nFile = open(strFolder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (nFile != -1) return nFile;
#endif
  std::string strPath = strFolder + "/index-XXXXXX";
  const int nNamed = mkostemp(strPath.data(), O_CLOEXEC);
  if (nNamed == -1) Fail(strFolder + ": the index of the files can't be created");
  unlink(strPath.c_str());
  return nNamed;
}

}  // namespace

RecordIndex::RecordIndex(const std::string& strFolder) : m_file(MakeUnnamed(strFolder)) {
  m_unwritten.reserve(kMostUnwritten);
}

void RecordIndex::Add(const ManifestEntry& entry) {
  Record record{};
  Place place{{}, static_cast<uint32_t>(m_places.size())};
  if (!ParseIdentifier(entry.strId, place.id)) return;
  record.nSize = entry.nSize;
  record.nState = entry.wrappedKey.empty() ? kPlain : kHasKey;
  if (record.nState == kHasKey && entry.wrappedKey.size() != kKeySize) record.nState = kOddKey;
  if (record.nState == kHasKey) std::copy_n(entry.wrappedKey.data(), kKeySize, record.key);
  if (entry.bDamaged) record.nState = kDamaged;
  m_places.push_back(place);
  m_unwritten.push_back(record);
  if (m_unwritten.size() == kMostUnwritten) Flush();
}

void RecordIndex::Flush() {
  const char* pData = reinterpret_cast<const char*>(m_unwritten.data());
  size_t nLeft = m_unwritten.size() * sizeof(Record);
  while (nLeft > 0) {
    const ssize_t nWritten = write(m_file.Get(), pData, nLeft);
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten < 0) Fail("the index of the files can't be written");
    pData += nWritten;
    nLeft -= static_cast<size_t>(nWritten);
  }
  m_unwritten.clear();
}

void RecordIndex::Finish() {
  Flush();
  m_unwritten.shrink_to_fit();
  std::sort(m_places.begin(), m_places.end());
}

std::optional<ManifestEntry> RecordIndex::Find(const std::string& strId) const {
  Place wanted{{}, UINT32_MAX};
  if (!ParseIdentifier(strId, wanted.id)) return std::nullopt;
  // The last of equal identifiers is before this place.
  const auto it = std::upper_bound(m_places.begin(), m_places.end(), wanted);
  if (it == m_places.begin() || std::prev(it)->id != wanted.id) return std::nullopt;
  Record record;
  const auto nOffset = static_cast<off_t>(std::prev(it)->nRecord) * static_cast<off_t>(sizeof record);
  if (pread(m_file.Get(), &record, sizeof record, nOffset) != static_cast<ssize_t>(sizeof record))
    throw std::runtime_error("the index of the files can't be read");
  ManifestEntry entry;
  entry.strId = strId;
  entry.kind = ManifestEntry::Kind::File;
  entry.nSize = record.nSize;
  entry.bDamaged = record.nState == kDamaged;
  if (record.nState == kHasKey) entry.wrappedKey.assign(record.key, record.key + kKeySize);
  if (record.nState == kOddKey) entry.wrappedKey.assign(1, 0);  // no key has one byte: it is refused
  return entry;
}

}  // namespace orvandel
