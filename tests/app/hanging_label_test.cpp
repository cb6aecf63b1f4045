#include "app/hanging_label.h"

using namespace orvandel;

namespace {

constexpr int kLine = 40;  // pixels from one line of text to well within the next

/// The left edge of the ink between two heights of a picture; -1 without ink.
int LeftOfInk(const QImage& image, int nTop, int nBottom) {
  for (int nX = 0; nX < image.width(); ++nX) {
    for (int nY = nTop; nY < nBottom; ++nY) {
      if (image.pixelColor(nX, nY).lightness() < 128) return nX;
    }
  }
  return -1;
}

QImage PictureOf(const QString& qstrText) {
  HangingLabel label(qstrText);
  QFont font;
  font.setPixelSize(20);
  label.setFont(font);
  label.setStyleSheet("background: white; color: black");
  label.resize(200, 400);
  return label.grab().toImage();
}

TEST(HangingLabelOf, ATextThatWrapsKeepsItsIndentInEveryLine) {
  const QImage image = PictureOf("        /a/path/that/is/much/too/long/for/a/single/line/of/this/label");

  std::vector<int> lefts;
  for (int nTop = 0; nTop < image.height(); nTop += kLine) {
    const int nLeft = LeftOfInk(image, nTop, nTop + kLine);
    if (nLeft >= 0) lefts.push_back(nLeft);
  }
  ASSERT_GE(lefts.size(), 2u);
  for (const int nLeft : lefts) EXPECT_GE(nLeft, 30) << "an indent of eight spaces";
}

TEST(HangingLabelOf, ATextWithoutSpacesStartsAtTheEdge) {
  const QImage image = PictureOf("Path");

  const int nLeft = LeftOfInk(image, 0, image.height());

  EXPECT_GE(nLeft, 0);
  EXPECT_LE(nLeft, 5);
}

}  // namespace
