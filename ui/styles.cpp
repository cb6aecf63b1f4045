#include "ui/styles.h"

#include <QApplication>
#include <QDir>
#include <QPalette>

using namespace orvandel;

namespace {

/// Style sheet of a main button in its three states.
QString ButtonStyle(const char* pszColour, const char* pszText, const char* pszShape) {
  return QString(
             "QPushButton{background-color:%1;%2%3}"
             "QPushButton:hover{background-color:rgb(156, 156, 156);}"
             "QPushButton:pressed{background-color:rgb(156, 156, 156);border:2px groove white;"
             "border-style:inset;}")
      .arg(pszColour, pszText, pszShape);
}

constexpr char kRoundShape[] = "border-radius:15px;border:2px groove white;border-style:outset;";
constexpr char kDialogShape[] = "border-radius:10px;border:2px groove white;border-style:outset;";

/// Converts a weight from 0 to 99 to Qt's scale from 1 to 1000.
QFont::Weight FontWeight(int nWeight) {
  if (nWeight >= 87) return QFont::Black;
  return nWeight >= 75 ? QFont::Bold : QFont::Normal;
}

}  // namespace

const QString main_button_style_no_file = ButtonStyle("rgb(191, 191, 191)", "color:gray;", kRoundShape);
const QString Layout2_main_button_style = ButtonStyle("rgb(48, 81, 109)", "color:white;", kRoundShape);
const QString Layout2_main_button_style2 = ButtonStyle("rgb(48, 81, 109)", "color:white;", "");
const QString backGroud_style = "background-color: rgb(112, 128, 144);";
const QString Layout1TopBackGroud_style = "background-color: rgb(79, 79 ,79);";
const QString LayoutLine_style = "background-color: rgb(37, 101, 137);";
const QString Version_label = "Version " ORVANDEL_VERSION;

/// Q_INIT_RESOURCE doesn't work inside a namespace.
static void RegisterIcons() {
  Q_INIT_RESOURCE(resources);
}

namespace orvandel {

const QString dialog_style::main_button_style = ButtonStyle("rgb(191, 191, 191)", "", kDialogShape);
const QString dialog_style::backGroud_style = "background-color: rgb(79, 79 ,79);";

const QString kScrollBarStyle =
    "QScrollBar{background:rgb(240, 240, 240);border:none;}"
    "QScrollBar:vertical{width:12px;}"
    "QScrollBar:horizontal{height:12px;}"
    "QScrollBar::handle{background:rgb(176, 182, 188);border-radius:4px;margin:2px;}"
    "QScrollBar::handle:vertical{min-height:28px;}"
    "QScrollBar::handle:horizontal{min-width:28px;}"
    "QScrollBar::handle:hover,QScrollBar::handle:pressed{background:rgb(130, 138, 146);}"
    "QScrollBar::add-line,QScrollBar::sub-line{width:0px;height:0px;}"
    "QScrollBar::add-page,QScrollBar::sub-page{background:none;}";

QFont TextFont(int nSize, int nWeight) {
  QFont font("Calibri", -1, FontWeight(nWeight));
  font.setPixelSize(nSize);
  return font;
}

void UseLightColours() {
  constexpr QColor kFace(239, 239, 239);
  constexpr QColor kFaded(190, 190, 190);
  QPalette palette(kFace);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, Qt::black);
    palette.setColor(QPalette::Disabled, role, kFaded);
  }
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Disabled, QPalette::Base, kFace);
  palette.setColor(QPalette::AlternateBase, QColor(247, 247, 247));
  palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 220));
  palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(145, 145, 145));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(0, 0, 255));
  QApplication::setPalette(palette);
}

void InitResources() {
  RegisterIcons();
}

}  // namespace orvandel
