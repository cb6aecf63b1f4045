#pragma once
#include <QPointer>
#include <QTcpServer>

#include "tests/ui/preview_fixture.h"
#include "tests/ui/url_recorder.h"

namespace orvandel {

/// Takes note of each window that comes up while the object lives, and closes dialogs that would wait.
class WindowWatch : public QObject {
 public:
  WindowWatch();
  const std::vector<std::string>& Shown() const { return m_shown; }
  void Forget() { m_shown.clear(); }

 protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

 private:
  std::vector<std::string> m_shown;
};

/// Takes note of each opening of a file, by anybody. Tells nothing where the system can't.
class FileWatch {
 public:
  explicit FileWatch(const std::string& strPath);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  bool WasOpened() const;

 private:
  int m_nHandle = -1;
};

/// Tests of texts that mean harm: whatever they say, nothing is reached, asked or opened, and what comes
/// after them is shown.
class ChatHostileTest : public PreviewTest {
 protected:
  ChatHostileTest();

  /// A text with the addresses of the test in place of HTTP, WS and FILE.
  std::string Filled(std::string strText) const;
  /// Selects a text as a message and as a chat, in a fresh window. As ever, no view is shown.
  void SelectHostile(const std::string& strText);
  /// The same, with the views' engines started.
  void ShowHostile(const std::string& strText);
  /// Clicks on the element "go" of a view. Hidden as it is, it takes the events.
  void ClickGo(ChatView* pView);
  /// Shows another conversation and another chat, which stand as if nothing had been.
  void ExpectGoesOn();
  void ExpectNothingHappened();

  QTcpServer m_server;
  std::string m_strSecret;
  std::unique_ptr<FileWatch> m_pFileWatch;
  WindowWatch m_windows;
  UrlRecorder m_urls;
};

}  // namespace orvandel
