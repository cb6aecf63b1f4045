#pragma once
#include <QFont>
#include <QString>

// The style sheets that screens and dialogs share. Built before main, read-only afterwards.
extern const QString main_button_style_no_file;   ///< a main button that can't be pressed
extern const QString Layout2_main_button_style;   ///< an active main button
extern const QString Layout2_main_button_style2;  ///< the same without rounded corners and border
extern const QString backGroud_style;
extern const QString Layout1TopBackGroud_style;  ///< top bar and foot
extern const QString LayoutLine_style;
extern const QString Version_label;  ///< the text at the foot

/// The pair of a dialog: its buttons and its heading band.
namespace dialog_style {
extern const QString main_button_style;
extern const QString backGroud_style;
}  // namespace dialog_style

/// The family of all texts, Calibri, in a size in points and a weight: 50 normal, 75 bold, 87 black.
/// Where the family isn't installed, the system's substitute with the same metrics stands in.
QFont TextFont(int nSize, int nWeight);

/// Registers the icons. They are in a library, which the program's own start doesn't see. Any number of
/// calls.
void InitResources();
