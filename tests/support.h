#pragma once
#include <QStringConverter>
#include <QTemporaryDir>
#include <string>
#include <utility>
#include <vector>

// What the tests share. All paths are narrow, and narrow text is UTF-8 unless a LocaleCodec says otherwise.

/// A folder of its own, gone with the object.
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
  /// Makes a folder inside, with its parents. @return its full path.
  std::string MakeFolder(const std::string& strName) const;
  /// Writes a file inside, with its parents. @return its full path.
  std::string Write(const std::string& strName, const std::string& strBytes) const;

 private:
  QTemporaryDir m_folder;
  std::string m_strPath;
};

/// Writes a file, in place of one that is there; its folder is made where it is missing. Fails the test if it
/// can't.
void WriteFile(const std::string& strPath, const std::string& strBytes);

/// All bytes of a file. Fails the test and gives an empty text if it can't be read.
std::string ReadFile(const std::string& strPath);

/// Whether a file or folder is there.
bool Exists(const std::string& strPath);

/// Names of everything in a folder, hidden entries too, sorted.
std::vector<std::string> NamesIn(const std::string& strFolder);

/// Says what ProgramFolder answers, to the end of the test. Gets a trailing "/" if it lacks it. Without it,
/// it is the folder of the test's executable, where the real decrypt tool lies.
void SetProgramFolder(const std::string& strFolder);

/// Says what BackupRoot and WorkFolder answer, to the end of the test. Both get a trailing "/" if they lack
/// it. Without it, both lie inside a temporary folder of the process.
void SetPlaces(const std::string& strBackupRoot, const std::string& strWorkFolder);

/// Collects what the engine reports while the object lives. One at a time.
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

  /// A copy, since a worker may be reporting.
  std::vector<Problem> Problems() const;
};

/// Makes another encoding the one of narrow text while the object lives.
class LocaleCodec {
 public:
  explicit LocaleCodec(const char* pszEncoding);
  ~LocaleCodec();
  LocaleCodec(const LocaleCodec&) = delete;
  LocaleCodec& operator=(const LocaleCodec&) = delete;

 private:
  QStringConverter::Encoding m_old;
};

/// Announces a Qt warning of the running test. A warning that no test announced fails it, and so does an
/// announced one that doesn't come.
/// @param pszPattern regular expression, found anywhere in the message.
void ExpectQtWarning(const char* pszPattern);

/// For main: watches Qt's messages and sets the places back before each test. Call it once, after
/// InitGoogleTest.
void InstallTestEnvironment();
