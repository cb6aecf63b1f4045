#pragma once
#include <QWidget>

namespace orvandel {

/// A ring around the widget that has the keyboard focus, since the style sheets of the buttons leave no room
/// for the toolkit's own mark. It appears with the first Tab and hides at the next click, so that users of
/// the mouse don't see it.
///
/// One for each window, which owns it. Lets all input through.
class FocusRing : public QWidget {
  Q_OBJECT

 public:
  /// Marks a widget whenever it has the focus, in whatever window it is then.
  static void Install(QWidget* pWidget);

 protected:
  void paintEvent(QPaintEvent* pEvent) override;

 private:
  class FocusWatcher;

  explicit FocusRing(QWidget* pWindow);
  /// The ring of a widget's window. @param bMake makes it if there is none yet; otherwise null.
  static FocusRing* Of(const QWidget* pWidget, bool bMake);
  void Surround(const QWidget* pWidget);
};

}  // namespace orvandel
