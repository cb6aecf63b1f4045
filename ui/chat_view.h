#pragma once
#include <QWidget>
#include <vector>

namespace orvandel {

class ChatEngine;

/// A chat of speech bubbles.
///
/// The view records the scripts that build its content, loads a browser engine when it is first shown, and
/// runs the scripts there in order. Each fails silently if the page has no element "content".
class ChatView : public QWidget {
  Q_OBJECT

 public:
  /// @param qstrStyleFile initial page, UTF-8; read immediately. If it can't be read, the page is empty.
  explicit ChatView(const QString& qstrStyleFile, QWidget* pParent = nullptr);
  ~ChatView() override;

  /// Removes all bubbles.
  void Clear();
  /// Removes the attribute "disabled" from the page.
  void Enable();
  /// Appends a bubble. The text is inserted verbatim, including markup; text that would end the script's
  /// string literal (a double quote or a line break) adds no bubble.
  /// @return false if the view is full; it then rejects further bubbles until it is cleared.
  bool AddBubble(bool bReceived, const QString& qstrText);

  /// Null until the view is first shown, or if no engine can run.
  ChatEngine* Engine() const { return m_pEngine; }
  /// True if all scripts so far have run.
  bool IsLoaded() const { return m_bPageLoaded && m_nSent == m_scripts.size() && m_nRunning == 0; }

  /// Capacity of a view, in characters plus kBubbleCost for each bubble. Each bubble of a chat repeats all
  /// preceding texts, so memory and time would otherwise grow quadratically.
  static constexpr qint64 kMostContent = 32LL * 1024 * 1024;
  static constexpr qint64 kBubbleCost = 1000;
  static constexpr qint64 kNamesCost = 50000;  ///< extra cost of a bubble that may contain named elements

  /// True if a text can be placed between double quotes in a script without ending the string literal.
  static bool StaysInString(const QString& qstrText);

 protected:
  void showEvent(QShowEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;

 private:
  enum class Step { Clear, Enable, Received, Sent, RemoveNames };
  struct Script {
    Step step;
    QString qstrText;  // of a bubble
  };

  void Add(Step step, const QString& qstrText = QString());
  static QString TextOf(const Script& script);
  static bool MayFail(const Script& script);
  void ScheduleSending();
  void Send();
  void Run(const QString& qstrScript);
  void StartEngine();

  const QString m_qstrPage;
  std::vector<Script> m_scripts;  // since the last Clear; kept for an engine created later
  qint64 m_nContent = 0;
  bool m_bEnabled = false;  // not reset when cleared
  ChatEngine* m_pEngine = nullptr;
  bool m_bPageLoaded = false;
  bool m_bSendingScheduled = false;
  size_t m_nSent = 0;  // number of m_scripts passed to the engine
  int m_nRunning = 0;  // calls that the engine hasn't finished
};

}  // namespace orvandel
