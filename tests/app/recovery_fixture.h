#pragma once
#include <atomic>
#include <mutex>

#include "tests/ui/selection_fixture.h"

/// What the worker of a recovery says of a file or at the end of a step.
struct Report {
  int nProgress;
  int nPercent;
  int nErrorCode;
  std::string strName;

  bool operator==(const Report& other) const;
};
void PrintTo(const Report& report, std::ostream* pStream);

using Reports = std::vector<Report>;

/// A category of files as a recovery takes it. Written here once more, and not taken from the program's own
/// table, so that a wrong row of that table shows.
struct RecoveryStep {
  int nCategory;
  const char* pszName;
  const char* pszFolder;
  int nPercent;
  int nNumerator;
  int nEndMark;

  bool IsApps() const { return nCategory == 2 || nCategory == 3; }
};

inline void PrintTo(const RecoveryStep& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

/// The six of them, in the order of a recovery.
extern const std::vector<RecoveryStep> kRecoverySteps;

/// Listens to the worker of a window's recovery, and can make it wait with a report.
class ReportRecorder {
 public:
  /// @param nWaitAt the report with which the worker waits until GoOn, counted from 1; 0 for none. The
  /// dialog hears of that report afterwards.
  explicit ReportRecorder(DRUI& window, size_t nWaitAt = 0);
  ~ReportRecorder();
  ReportRecorder(const ReportRecorder&) = delete;
  ReportRecorder& operator=(const ReportRecorder&) = delete;

  void GoOn() { m_bGoOn = true; }
  bool IsWaiting() const { return m_bWaiting && !m_bGoOn; }
  /// A copy, since the worker may be at it.
  Reports All() const;
  /// Those that name a file or a document.
  Reports Named() const;
  /// Whether the recovery has told of its end.
  bool HasEnd() const;

 private:
  static constexpr int kLimit = 60000;  // milliseconds

  mutable std::mutex m_mutex;
  Reports m_reports;
  std::atomic<bool> m_bWaiting{false};
  std::atomic<bool> m_bGoOn{false};
  QMetaObject::Connection m_connection;
};

/// The list of what was recovered, as the user sees it.
struct DetailList {
  std::vector<std::vector<std::string>> rows;
  std::string strSummary;
};

/// Types a folder into the dialog that asks for one, and presses Return.
void TypeFolder(ModalSteps& steps, const std::string& strFolder);

/// Whether a progress dialog tells that its recovery is over.
bool IsFinished(const QWidget* pDialog);

/// The list of the progress dialog on view.
DetailList DetailOf(QWidget* pDialog);

/// Tests of recoveries over records that the test makes up. The window is open from the start, with nothing
/// in it.
class RecoveryTest : public SelectionTest {
 protected:
  RecoveryTest();

  /// Adds a file to a list of files or to an app's, and ticks it.
  /// @param strBytes of its source, which isn't written when it is empty.
  void AddFile(int nCategory, const std::string& strName, const std::string& strBytes = "bytes");
  /// @param pszAppOfRecord the app that the record itself names; null for the same.
  void AddAppFile(int nCategory, const std::string& strApp, const std::string& strName,
                  const std::string& strBytes = "bytes", const char* pszAppOfRecord = nullptr);
  /// A path for a source of a file. The file is there if it has bytes.
  std::u16string Source(const std::string& strBytes);

  /// Two records of each kind of document; their tables are filled, and all of them ticked.
  void AddDocuments();
  /// Adds a conversation or a chat with one record. Its table has to be filled afterwards.
  void AddConversation(unsigned int nKey, const std::string& strName);
  void AddChat(unsigned int nKey, const std::string& strName);

  const std::string& Out() const { return m_strOut; }
  /// Files below the destination without time stamps, sorted.
  std::vector<std::string> Written() const;
  /// The page of a kind of documents, which is the only file there with this ending.
  std::string PageIn(const std::string& strFolder) const;
  /// All ticks of the window, by category.
  std::pair<std::map<int, SelectionMap>, std::map<int, AppSelectionMap>> Ticks();

  /// Recovers what is ticked as a user does, with the real dialogs, and closes the last one once it has
  /// finished. @param atEnd is called before that.
  void Recover(const std::function<void(QWidget*)>& atEnd = {});

 private:
  std::string m_strOut;
  int m_nSources = 0;
};

/// Reports of a recovery of these categories alone, from the first file to the end.
/// @param named of each category of files, by its number.
Reports WholeRecovery(const std::map<int, Reports>& named, const Reports& documents = {});
