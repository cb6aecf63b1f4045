#pragma once
#include <QFont>
#include <QString>

// Style sheets shared by screens and dialogs, initialised before main.
extern const QString main_button_style_no_file;   ///< a disabled main button
extern const QString Layout2_main_button_style;   ///< an active main button
extern const QString Layout2_main_button_style2;  ///< the same without rounded corners and border
extern const QString backGroud_style;
extern const QString Layout1TopBackGroud_style;  ///< top bar and footer
extern const QString LayoutLine_style;
extern const QString Version_label;  ///< the text in the footer

namespace orvandel {

/// Style sheets of dialogs: buttons and heading band.
namespace dialog_style {
extern const QString main_button_style;
extern const QString backGroud_style;
}  // namespace dialog_style

/// Style sheet of scroll bars. A screen needs it because the background of its window also covers their
/// parts.
extern const QString kScrollBarStyle;

/// Returns Calibri in a size in pixels, as the widgets' sizes are, and a weight: 50 normal, 75 bold, 87
/// black. If it isn't installed, the system's metric-compatible substitute is used.
QFont TextFont(int nSize, int nWeight);

/// Gives the application the light colours that the style sheets go with, whatever the desktop's are: on a
/// dark one the text of tables would be light on a light ground.
void UseLightColours();

/// Registers the icon resources; resources in a static library aren't registered automatically. May be called
/// repeatedly.
void InitResources();

}  // namespace orvandel
