#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/descriptor.h"
#include "decrypt/manifest_entry.h"

namespace orvandel {

/// What is needed to decrypt each file of a backup, by its identifier. Takes 16 bytes of memory and 76 of
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
  static constexpr size_t kIdSize = 20, kKeySize = 44;

  /// One file, as stored.
  struct Record {
    unsigned char id[kIdSize];
    unsigned char key[kKeySize];
    uint32_t nState;
    uint64_t nSize;
  };

  /// Where the record of a file is.
  struct Place {
    uint64_t nPrefix;  // the first bytes of the identifier
    uint64_t nRecord;
    bool operator<(const Place& other) const {
      return nPrefix != other.nPrefix ? nPrefix < other.nPrefix : nRecord < other.nRecord;
    }
  };

  static bool ParseId(const std::string& strId, unsigned char* pId);
  static uint64_t PrefixOf(const unsigned char* pId);
  void Flush();

  Descriptor m_file;
  std::vector<Record> m_unwritten;
  std::vector<Place> m_places;
};

}  // namespace orvandel
