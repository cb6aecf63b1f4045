#pragma once
#include <QLabel>

namespace orvandel {

/// A label whose wrapped lines keep the indent of the spaces that their paragraph begins with. Breaks a path
/// that has no better place. Text is plain, left aligned and centred vertically.
class HangingLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* pEvent) override;
};

}  // namespace orvandel
