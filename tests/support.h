#pragma once
#include <QStringConverter>
#include <QTemporaryDir>
#include <string>
#include <utility>
#include <vector>

// Shared test helpers. All paths are narrow, and narrow text is UTF-8 unless a LocaleCodec is active.

namespace orvandel {

/// A temporary folder, removed by the destructor.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Without a trailing "/".
  const std::string& Path() const { return m_strPath; }
  /// Full path of something inside, which need not exist.
  std::string Path(const std::string& strName) const { return m_strPath + "/" + strName; }
  /// Creates a folder inside, with its parents. @return its full path.
  std::string MakeFolder(const std::string& strName) const;
  /// Writes a file inside, with its parents. @return its full path.
  std::string Write(const std::string& strName, const std::string& strBytes) const;

 private:
  QTemporaryDir m_folder;
  std::string m_strPath;
};

/// Writes or overwrites a file, and creates its folder if missing. Fails the test on error.
void WriteFile(const std::string& strPath, const std::string& strBytes);

/// Returns all bytes of a file. If it can't be read, fails the test and returns an empty string.
std::string ReadFile(const std::string& strPath);

/// Whether a file or folder exists.
bool Exists(const std::string& strPath);

/// Sorted names of all entries of a folder, including hidden ones.
std::vector<std::string> NamesIn(const std::string& strFolder);

/// Sets the result of ProgramFolder until the end of the test, adding a trailing "/" if missing. The default
/// is the folder of the test's executable, which contains the real decrypt tool.
void SetProgramFolder(const std::string& strFolder);

/// Sets the results of BackupRoot and WorkFolder until the end of the test, adding a trailing "/" if missing.
/// By default, both are inside a temporary folder of the process.
void SetPlaces(const std::string& strBackupRoot, const std::string& strWorkFolder);

/// Records the engine's problems during the object's lifetime. Only one at a time.
class ProblemRecorder {
 public:
  struct Problem {
    std::string strFile;
    std::string strReason;
  };

  ProblemRecorder();
  ~ProblemRecorder();
  ProblemRecorder(const ProblemRecorder&) = delete;
  ProblemRecorder& operator=(const ProblemRecorder&) = delete;

  /// A copy, because a worker may be reporting.
  std::vector<Problem> Problems() const;
};

/// Sets the encoding of narrow text during the object's lifetime.
class LocaleCodec {
 public:
  explicit LocaleCodec(const char* pszEncoding);
  ~LocaleCodec();
  LocaleCodec(const LocaleCodec&) = delete;
  LocaleCodec& operator=(const LocaleCodec&) = delete;

 private:
  QStringConverter::Encoding m_old;
};

/// Expects a Qt warning in the running test. Unexpected warnings and missing expected ones fail the test.
/// @param pszPattern regular expression that matches anywhere in the message.
void ExpectQtWarning(const char* pszPattern);

/// For main: checks Qt's messages and resets the places before each test. Call it once, after InitGoogleTest.
void InstallTestEnvironment();

}  // namespace orvandel
