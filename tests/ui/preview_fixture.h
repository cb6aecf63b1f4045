#pragma once
#include <QImage>

#include "tests/ui/selection_fixture.h"
#include "ui/chat_engine.h"
#include "ui/chat_view.h"

/// Terminates the process if a test hangs.
class Deadline {
 public:
  explicit Deadline(int nSeconds);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
};

/// Shows a view (on its own if its page isn't visible), waits until its engine has run all scripts, and hides
/// it again if it was hidden.
ChatEngine& EngineOf(ChatView* pView);
/// Runs a script of the test in a view's page. @return its result.
QVariant Ask(ChatView* pView, const QString& qstrScript);
/// Runs the timers of a view's page that are due within 100 ms of its clock.
void ServeEngine(ChatView* pView);

/// A category whose rows are files, shown as pictures.
struct PictureCategory {
  int nNumber;
  const char* pszName;
  const char* pszTable;  ///< of the files
  const char* pszLabel;
  QSize labelSize;
  QSize area;  ///< bounds that wide pictures are scaled to
  bool bApps;  ///< its files are grouped by app
};

inline void PrintTo(const PictureCategory& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

/// The six of them.
extern const std::vector<PictureCategory> kPictureCategories;

/// Tests of the preview beside or above a table.
class PreviewTest : public SelectionTest {
 protected:
  /// Adds files to a category, in app "Alpha" if it has apps.
  void PutFiles(const PictureCategory& category, const std::vector<std::string>& paths);
  /// Opens a data screen, adds files to a category and shows them.
  void ShowFiles(const PictureCategory& category, const std::vector<std::string>& paths);
  /// The same with one file. @return size of the visible picture, 0 by 0 for a blank label.
  QSize ShowFile(const PictureCategory& category, const std::string& strPath);
  /// Selects a node once; a click on an unselected one would show its page twice.
  void SelectNode(int nCategory) { WindowAccess::Tree(*m_pWindow)->setCurrentItem(Node(nCategory)); }
  QLabel* Preview(const PictureCategory& category) { return Find<QLabel>(category.pszLabel); }
  QSize Shown(const PictureCategory& category) { return PictureSize(Preview(category)); }
  static QSize PictureSize(const QLabel* pLabel);
  /// The visible picture, in a fixed format for comparison.
  QImage Picture(const PictureCategory& category);
  /// Selects a row by keyboard.
  void PressKey(QTableWidget* pTable, int nKey);

  /// Writes a picture of random black and white pixels, in the format of its extension.
  std::string WritePicture(const std::string& strName, const QSize& size) const;

  ChatView* Messages() { return Find<ChatView>("m_pMessageWebView"); }
  ChatView* Chats() { return Find<ChatView>("m_pWhatsappWebView"); }
  /// Markup inside a view's body.
  static std::string BodyOf(ChatView* pView);
  /// Markup of the bubbles themselves, from the top.
  static std::vector<std::string> BubblesOf(ChatView* pView);

  Deadline m_deadline{60};
};

/// Expected markup of a bubble in a view.
std::string Received(const std::string& strText);
std::string Sent(const std::string& strText);

__MESSAGE_INFO__ Message(int nIsFromMe, const std::string& strText, const std::string& strDate = "",
                         const std::string& strName = "");
__WHATSAPP_MESSAGE__ ChatMessage(int nIsFromMe, const std::string& strText);
