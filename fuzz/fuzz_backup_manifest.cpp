// The manifest of an encrypted backup, listed for its keys and names: "Manifest.db" if the input begins with
// "d", else "Manifest.mbdb".
#include <filesystem>

#include "decrypt/backup_reader.h"
#include "decrypt/record_index.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

namespace {

constexpr size_t kWrappedSize = 44;

/// Visits all entries. @return false when the manifest can't be read completely.
bool Visit(const BackupReader& reader, BackupReader::Detail detail,
           const std::function<bool(ManifestEntry&&)>& visit) {
  try {
    reader.Visit(detail, visit);
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

void Read(const ScratchFolder& folder) {
  BackupReader reader(folder.Path());
  reader.OpenManifest(folder.Path(), folder.Path());
  RecordIndex index(folder.Path());
  std::vector<ManifestEntry> files;
  Visit(reader, BackupReader::Detail::Keys, [&](ManifestEntry&& entry) {
    if (!reader.IsFile(entry)) return true;
    index.Add(entry);
    files.push_back(std::move(entry));
    return true;
  });
  index.Finish();
  size_t nNames = 0, nRecords = 0;
  const bool bNames =
      Visit(reader, BackupReader::Detail::Names, [&](ManifestEntry&&) { return ++nNames != 0; });
  const bool bRecords =
      Visit(reader, BackupReader::Detail::Records, [&](ManifestEntry&&) { return ++nRecords != 0; });

  Require(!bNames || !bRecords || nNames == nRecords, "names and records are those of the same entries");
  Require(index.Size() == files.size(), "each file is in the index");
  for (const ManifestEntry& file : files) {
    const auto found = index.Find(file.strId);
    Require(found && found->strId == file.strId, "each file is found");
    Require(found->wrappedKey.size() <= kWrappedSize, "a key has its size");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  static const ScratchFolder folder;
  if (nSize == 0) return 0;
  const bool bDatabase = pData[0] == 'd';
  std::filesystem::remove(folder.Path() + "/Manifest.db");
  folder.Write(bDatabase ? "Manifest.db" : "Manifest.mbdb", pData + 1, nSize - 1);

  Read(folder);

  return 0;
}
