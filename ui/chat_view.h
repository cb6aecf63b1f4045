#pragma once
#include <QtWebKitWidgets/QWebView>

class SealedPage;

/// A chat of speech bubbles, on a sealed page. Each operation runs one script, which fails without a word
/// where the page has no element "content".
class ChatView : public QWebView {
  Q_OBJECT

 public:
  /// @param pszStyleFile the page to begin with, UTF-8. One that can't be read gives an empty page.
  explicit ChatView(const char* pszStyleFile, QWidget* pParent = nullptr);

  /// Takes all bubbles away.
  void Clear();
  /// Takes the attribute "disabled" from the page.
  void Enable();
  /// Adds a bubble below the others. Its text goes in as it stands, markup and all; one that would end the
  /// script's string, with a double quote or a line break, gives no bubble.
  /// @return false when the view is full: it takes no more until it is cleared.
  bool AddBubble(bool bReceived, const QString& qstrText);

  /// What a view holds at the most, in characters and kBubbleCost for each bubble. A chat's bubbles repeat
  /// all texts before their own, so that a long one would take memory and time without an end.
  static constexpr qint64 kMostContent = 32LL * 1024 * 1024;
  static constexpr qint64 kBubbleCost = 1000;
  static constexpr qint64 kNamesCost = 50000;  ///< of a bubble whose elements may have names, on top

 protected:
  void showEvent(QShowEvent* pEvent) override;
  void hideEvent(QHideEvent* pEvent) override;

 private:
  SealedPage* m_pPage;
  qint64 m_nContent = 0;
};
