#pragma once
#include <string>

#include "common/descriptor.h"
#include "common/result.h"

namespace orvandel {

/// A file under construction. Where the system supports unnamed files, it is linked to its path only by
/// Finish, so a killed process leaves no partial file. Elsewhere it has its name from the start. Not
/// thread-safe.
class NewFile {
 public:
  /// Creates it, open for writing. Fails when the path exists, and leaves what is there untouched.
  /// @param strPath narrow. @param nRights its mode; the umask applies.
  static Result<NewFile> Create(const std::string& strPath, unsigned int nRights);
  /// Discards the file unless Finish was called.
  ~NewFile();
  NewFile(NewFile&&) noexcept = default;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// The descriptor to write to; owned by this object.
  int Get() const { return m_file.Get(); }

  /// Closes the file and links it to its path. On failure there is no file. @return a problem of the step
  /// Create when linking failed, else of the step Write.
  Problem Finish();

 private:
  NewFile(const std::string& strPath, Descriptor file, bool bNamed);

  std::string m_strPath;
  Descriptor m_file;
  bool m_bNamed;
};

}  // namespace orvandel
