#pragma once
#include <string>

/// A file that is being made. Where the system can do that, it gets its name only once it is whole, so that a
/// process that is killed leaves no fragment under it. Elsewhere it has its name from the start. One thread.
class NewFile {
 public:
  /// Makes it. Nothing may exist under its path: an entry there stays untouched.
  /// @param strPath narrow. @param nRights its access rights, less the process's mask.
  NewFile(const std::string& strPath, unsigned int nRights);
  /// Drops it, unless it is finished.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Open for writing; -1, with errno set, when it could not be made.
  int Descriptor() const { return m_nDescriptor; }

  /// Closes it and gives it its name.
  /// @param bNamed receives whether it has got so far as to have one.
  /// @return 0, or the system's error number; then there is no file.
  int Finish(bool& bNamed);

 private:
  std::string DescriptorPath() const;

  std::string m_strPath;
  int m_nDescriptor = -1;
  bool m_bNamed = false;
};
