#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/descriptor.h"
#include "decrypt/manifest_entry.h"

namespace orvandel {

/// What is needed to decrypt each file of a backup, by its identifier. Takes 24 bytes of memory and 56 of
/// disk space for each file. Add all, then Finish, then Find; Find is thread-safe.
class RecordIndex {
 public:
  /// @param strFolder folder of the index, which has no name there. Throws std::runtime_error.
  explicit RecordIndex(const std::string& strFolder);

  /// Adds a file. Of several with one identifier the last counts. Throws std::runtime_error.
  /// @param entry a file with its record and a valid identifier.
  void Add(const ManifestEntry& entry);
  void Finish();

  /// @return identifier, key, size and damage of a file; nullopt when there is none. Throws
  /// std::runtime_error when the index can't be read.
  std::optional<ManifestEntry> Find(const std::string& strId) const;

  size_t Size() const { return m_places.size(); }

 private:
  static constexpr size_t kKeySize = 44;

  /// One file, as stored.
  struct Record {
    unsigned char key[kKeySize];
    uint32_t nState;
    uint64_t nSize;
  };

  /// Where the record of a file is.
  struct Place {
    IdentifierBytes id;
    uint32_t nRecord;
    bool operator<(const Place& other) const {
      return id != other.id ? id < other.id : nRecord < other.nRecord;
    }
  };

  void Flush();

  Descriptor m_file;
  std::vector<Record> m_unwritten;
  std::vector<Place> m_places;
};

}  // namespace orvandel
