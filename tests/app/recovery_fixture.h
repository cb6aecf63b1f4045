#pragma once
#include <atomic>
#include <mutex>

#include "tests/ui/selection_fixture.h"

namespace orvandel {

/// A report of a recovery's worker about a file or the end of a step.
struct Report {
  int nProgress;
  int nPercent;
  int nErrorCode;
  std::string strName;

  bool operator==(const Report& other) const;
};
void PrintTo(const Report& report, std::ostream* pStream);

using Reports = std::vector<Report>;

/// A category of files as expected in a recovery. Listed here independently of the program's table, so that a
/// wrong row of that table is detected.
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

/// Records the reports of a recovery's worker, and can block it in a report.
class ReportRecorder {
 public:
  /// @param nWaitAt the report in which the worker waits until GoOn, counted from 1; 0 for none. The dialog
  /// receives that report afterwards.
  explicit ReportRecorder(DRUI& window, size_t nWaitAt = 0);
  ~ReportRecorder();
  ReportRecorder(const ReportRecorder&) = delete;
  ReportRecorder& operator=(const ReportRecorder&) = delete;

  void GoOn() { m_bGoOn = true; }
  bool IsWaiting() const { return m_bWaiting && !m_bGoOn; }
  /// A copy, because the worker may be appending.
  Reports All() const;
  /// Those that name a file or a document.
  Reports Named() const;
  /// Whether the recovery has reported its end.
  bool HasEnd() const;

 private:
  static constexpr int kLimit = 60000;  // milliseconds

  mutable std::mutex m_mutex;
  Reports m_reports;
  std::atomic<bool> m_bWaiting{false};
  std::atomic<bool> m_bGoOn{false};
  QMetaObject::Connection m_connection;
};

/// The displayed list of recovered files.
struct DetailList {
  std::vector<std::vector<std::string>> rows;
  std::string strSummary;
};

/// Types a folder into the folder dialog, and presses Return.
void TypeFolder(ModalSteps& steps, const std::string& strFolder);

/// Whether a progress dialog shows that its recovery has finished.
bool IsFinished(const QWidget* pDialog);

/// The list of the visible progress dialog.
DetailList DetailOf(QWidget* pDialog);

/// Tests of recoveries with synthetic records. The window is open and empty from the start.
class RecoveryTest : public SelectionTest {
 protected:
  RecoveryTest();

  /// Adds a file to a list of files or to an app's, and ticks it.
  /// @param strBytes content of its source, which isn't created if this is empty.
  void AddFile(int nCategory, const std::string& strName, const std::string& strBytes = "bytes");
  /// @param pszAppOfRecord the app that the record itself names; null for the same.
  void AddAppFile(int nCategory, const std::string& strApp, const std::string& strName,
                  const std::string& strBytes = "bytes", const char* pszAppOfRecord = nullptr);
  /// Path of the source of a file, which exists if it has content.
  std::u16string Source(const std::string& strBytes);

  /// Two records of each kind of document; their tables are filled, and all of them ticked.
  void AddDocuments();
  /// Adds a conversation or a chat with one record. Its table must be filled afterwards.
  void AddConversation(unsigned int nKey, const std::string& strName);
  void AddChat(unsigned int nKey, const std::string& strName);

  const std::string& Out() const { return m_strOut; }
  /// Files below the destination without time stamps, sorted.
  std::vector<std::string> Written() const;
  /// The page of a kind of documents, the only file there with this extension.
  std::string PageIn(const std::string& strFolder) const;
  /// All ticks of the window, by category.
  std::pair<std::map<int, SelectionMap>, std::map<int, AppSelectionMap>> Ticks();

  /// Recovers what is ticked through the real dialogs, and closes the last one when it has finished.
  /// @param atEnd called before that.
  void Recover(const std::function<void(QWidget*)>& atEnd = {});

 private:
  std::string m_strOut;
  int m_nSources = 0;
};

/// Reports of a recovery of only these categories, from the first file to the end.
/// @param named of each category of files, by its number.
Reports WholeRecovery(const std::map<int, Reports>& named, const Reports& documents = {});

}  // namespace orvandel
