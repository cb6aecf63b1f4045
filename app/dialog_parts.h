#pragma once
#include <QLabel>
#include <QPushButton>

/// The dark band at the head of a dialog with its white text.
/// @param pText receives the label of the text. @param nTextHeight its height.
QLabel* CreateHeadBand(int nMinimumHeight, int nTextHeight, QLabel*& pText);

/// A button in the look of the dialogs.
QPushButton* CreateDialogButton(const QString& qstrText, QWidget* pParent);
