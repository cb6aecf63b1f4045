#include "app/dialog_parts.h"

#include "ui/focus_ring.h"
#include "ui/styles.h"

namespace orvandel {

QLabel* CreateHeadBand(int nMinimumHeight, int nTextHeight, QLabel*& pText) {
  auto* pBand = new QLabel;
  pBand->setObjectName("headBand");
  pBand->setStyleSheet(dialog_style::backGroud_style);
  pBand->setMinimumHeight(nMinimumHeight);
  pText = new QLabel(pBand);
  pText->setObjectName("headText");
  pText->setGeometry(0, 10, 400, nTextHeight);
  pText->setAlignment(Qt::AlignLeft);
  pText->setFont(TextFont(11, 87));
  QPalette palette = pText->palette();
  palette.setColor(QPalette::WindowText, Qt::white);
  pText->setPalette(palette);
  return pBand;
}

QPushButton* CreateDialogButton(const QString& qstrText, QWidget* pParent) {
  auto* pButton = new QPushButton(qstrText, pParent);
  pButton->setFlat(true);
  pButton->setCursor(Qt::PointingHandCursor);
  pButton->setFont(TextFont(11, 50));
  pButton->setStyleSheet(dialog_style::main_button_style);
  pButton->resize(80, 25);
  FocusRing::Install(pButton);
  return pButton;
}

}  // namespace orvandel
