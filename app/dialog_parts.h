#pragma once
#include <QLabel>
#include <QPushButton>

namespace orvandel {

/// Creates the dark heading band of a dialog, with white text.
/// @param pText receives the text label. @param nTextHeight its height in pixels.
QLabel* CreateHeadBand(int nMinimumHeight, int nTextHeight, QLabel*& pText);

/// Creates a button in dialog style.
QPushButton* CreateDialogButton(const QString& qstrText, QWidget* pParent);

}  // namespace orvandel
