#pragma once
#include <QPointer>
#include <QTcpServer>

#include "tests/ui/preview_fixture.h"
#include "tests/ui/url_recorder.h"

/// Records every window shown during the object's lifetime, and closes modal dialogs.
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

/// Records every open of a file by any process. Records nothing if the system doesn't support it.
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

/// Tests of hostile texts: they must not cause requests, dialogs or windows, and later content must be shown.
class ChatHostileTest : public PreviewTest {
 protected:
  ChatHostileTest();

  /// Replaces HTTP, WS and FILE in a text by the test's addresses.
  std::string Filled(std::string strText) const;
  /// Shows a text as a message and optionally as a chat, in a new window.
  void ShowHostile(const std::string& strText);
  /// Clicks the element "go" of a view, which accepts events although it is hidden.
  void ClickGo(ChatView* pView);
  /// Shows another conversation and another chat, and expects them to be unaffected.
  void ExpectGoesOn();
  void ExpectNothingHappened();

  QTcpServer m_server;
  std::string m_strSecret;
  std::unique_ptr<FileWatch> m_pFileWatch;
  WindowWatch m_windows;
  UrlRecorder m_urls;
};
