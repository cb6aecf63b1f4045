#include "app/hanging_label.h"

#include <QPainter>
#include <QTextLayout>
#include <list>

using namespace orvandel;

namespace {

/// A paragraph laid out at the top of an area that begins behind its indent.
struct Paragraph {
  Paragraph(const QString& qstrText, const QFont& font, double dWidth) {
    qsizetype nSpaces = 0;
    while (nSpaces < qstrText.size() && qstrText[nSpaces] == ' ') ++nSpaces;
    const QFontMetricsF metrics(font);
    dIndent = metrics.horizontalAdvance(qstrText.left(nSpaces));
    layout.setText(qstrText.mid(nSpaces));
    layout.setFont(font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(dWidth - dIndent);
      line.setPosition(QPointF(0, dHeight));
      dHeight += metrics.height();
    }
    layout.endLayout();
    if (layout.lineCount() == 0) dHeight = metrics.height();
  }

  QTextLayout layout;
  double dIndent = 0;  // pixels
  double dHeight = 0;
};

}  // namespace

void HangingLabel::paintEvent(QPaintEvent*) {
  const QRect area = contentsRect();
  std::list<Paragraph> paragraphs;
  double dHeight = 0;
  for (const QString& qstrText : text().split('\n')) {
    paragraphs.emplace_back(qstrText, font(), area.width());
    dHeight += paragraphs.back().dHeight;
  }
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  double dY = area.y() + qMax(0.0, (area.height() - dHeight) / 2);
  for (const Paragraph& paragraph : paragraphs) {
    paragraph.layout.draw(&painter, QPointF(area.x() + paragraph.dIndent, dY));
    dY += paragraph.dHeight;
  }
}
