#pragma once
#include <string>

#include "common/descriptor.h"
#include "common/result.h"

/// A file that is being made. Where the system can do that, it gets its name only once it is whole, so that a
/// process that is killed leaves no fragment under it. Elsewhere it has its name from the start. One thread.
class NewFile {
 public:
  /// Makes it, open for writing. Nothing may exist under its path: an entry there stays untouched.
  /// @param strPath narrow. @param nRights its access rights, less the process's mask.
  static Result<NewFile> Create(const std::string& strPath, unsigned int nRights);
  /// Drops it, unless it is finished.
  ~NewFile();
  NewFile(NewFile&&) noexcept = default;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// The descriptor to write to; stays the object's.
  int Get() const { return m_file.Get(); }

  /// Closes it and gives it its name. After a problem there is no file: one of the step Create when it could
  /// not get its name, of the step Write when that was not the reason.
  Problem Finish();

 private:
  NewFile(const std::string& strPath, Descriptor file, bool bNamed);

  std::string m_strPath;
  Descriptor m_file;
  bool m_bNamed;
};
