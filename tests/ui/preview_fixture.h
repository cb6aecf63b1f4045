#pragma once
#include <QImage>

#include "tests/ui/selection_fixture.h"
#include "ui/chat_engine.h"
#include "ui/chat_view.h"

namespace orvandel {

/// Ends the process when a test hangs: nothing inside it could.
class Deadline {
 public:
  explicit Deadline(int nSeconds);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
};

/// Starts the engine of a view as its first show does, and waits until all scripts have run. The view stays
/// as hidden as it was, so that nothing is laid out.
ChatEngine& EngineOf(ChatView* pView);
/// The value of a script of the test's in a view's page.
QVariant Ask(ChatView* pView, const QString& qstrScript);
/// Serves what the engine of a view has put off: all that is due within a tenth of a second of its page's own
/// clock.
void ServeEngine(ChatView* pView);

/// A category whose rows are files, shown as pictures.
struct PictureCategory {
  int nNumber;
  const char* pszName;
  const char* pszTable;  ///< of the files
  const char* pszLabel;
  QSize labelSize;
  QSize area;  ///< that wide pictures are scaled into
  bool bApps;  ///< its files lie below an app
};

inline void PrintTo(const PictureCategory& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

/// The six of them.
extern const std::vector<PictureCategory> kPictureCategories;

/// Tests of what stands beside or above a table.
class PreviewTest : public SelectionTest {
 protected:
  /// Puts one file after the other into a category, under "Alpha" where it has apps.
  void PutFiles(const PictureCategory& category, const std::vector<std::string>& paths);
  /// Opens a data screen, puts files into a category and brings them on view.
  void ShowFiles(const PictureCategory& category, const std::vector<std::string>& paths);
  /// The same with one file. @return the size of the picture on view, 0 by 0 for a blank label.
  QSize ShowFile(const PictureCategory& category, const std::string& strPath);
  /// Selects a node once; a click on one that isn't selected brings its page up twice.
  void SelectNode(int nCategory) { WindowAccess::Tree(*m_pWindow)->setCurrentItem(Node(nCategory)); }
  QLabel* Preview(const PictureCategory& category) { return Find<QLabel>(category.pszLabel); }
  QSize Shown(const PictureCategory& category) { return PictureSize(Preview(category)); }
  static QSize PictureSize(const QLabel* pLabel);
  /// What is on view, in one format to compare.
  QImage Picture(const PictureCategory& category);
  /// Selects a row as the user does with the keys.
  void PressKey(QTableWidget* pTable, int nKey);

  /// Writes a picture of black and white pixels at random. The name's ending tells its format.
  std::string WritePicture(const std::string& strName, const QSize& size) const;

  ChatView* Messages() { return Find<ChatView>("m_pMessageWebView"); }
  ChatView* Chats() { return Find<ChatView>("m_pWhatsappWebView"); }
  /// Markup inside a view's body.
  static std::string BodyOf(ChatView* pView);
  /// Markup of the bubbles themselves, from the top.
  static std::vector<std::string> BubblesOf(ChatView* pView);

  Deadline m_deadline{60};
};

/// Markup of a bubble as it stands in a view.
std::string Received(const std::string& strText);
std::string Sent(const std::string& strText);

__MESSAGE_INFO__ Message(int nIsFromMe, const std::string& strText, const std::string& strDate = "",
                         const std::string& strName = "");
__WHATSAPP_MESSAGE__ ChatMessage(int nIsFromMe, const std::string& strText);

}  // namespace orvandel
