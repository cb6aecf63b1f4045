#pragma once
#include <cstdint>
#include <string>

#include "common/descriptor.h"
#include "common/problem.h"
#include "common/result.h"

namespace orvandel {

/// A file under construction in an opened folder. It gets its name only when it is whole, so that a killed
/// process leaves no fragment under that name: it has none before, or, where the system doesn't support that,
/// a temporary one (cli/temporary_name.h). Not thread-safe.
class PlacedFile {
 public:
  /// @param nFolder descriptor of the folder, which must outlive this object.
  static Result<PlacedFile> Create(int nFolder);
  /// Discards the file unless Place was called.
  ~PlacedFile();
  PlacedFile(PlacedFile&& other) noexcept;
  PlacedFile(const PlacedFile&) = delete;

  /// The descriptor to write to; owned by this object.
  int Get() const { return m_file.Get(); }

  /// Makes it readable by everybody, whatever the umask, sets its modification time, and gives it its name.
  /// @param nModified seconds since 1970; -1 leaves the present time.
  /// @param bReplace  replaces what has that name, unless it is a folder; a link isn't followed.
  /// @return a problem of the step Create, with EEXIST when the name is taken, or of the step Write.
  Problem Place(const std::string& strName, int64_t nModified, bool bReplace);

 private:
  PlacedFile(int nFolder, Descriptor file, std::string strTemporary)
      : m_nFolder(nFolder), m_file(std::move(file)), m_strTemporary(std::move(strTemporary)) {}
  int Link(const std::string& strName);
  int LinkTemporary(const std::string& strName);

  int m_nFolder;
  Descriptor m_file;
  std::string m_strTemporary;  // its name so far; empty for none
};

}  // namespace orvandel
