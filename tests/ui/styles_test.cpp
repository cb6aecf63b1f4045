#include "ui/styles.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QRegularExpression>
#include <utility>

using namespace orvandel;

namespace {

struct ButtonCase {
  const char* pszName;
  const QString& qstrStyle;
  QStringList plain;   ///< required declarations
  QStringList absent;  ///< forbidden declarations
};

/// The declarations of one rule of a style sheet, without blanks.
QString Rule(const QString& qstrStyle, const QString& qstrSelector) {
  const QRegularExpression rule("(?:^|\\})\\s*" + QRegularExpression::escape(qstrSelector) +
                                "\\s*\\{([^}]*)\\}");
  return rule.match(qstrStyle).captured(1).remove(' ');
}

TEST(Styles, ButtonsHaveTheirColoursShapesAndStates) {
  const QStringList roundShape = {"border-radius:15px", "border:2pxgroovewhite", "border-style:outset"};
  const QStringList dialogShape = {"border-radius:10px", "border:2pxgroovewhite", "border-style:outset"};
  const ButtonCase cases[] = {
      {"main_button_style_no_file",
       main_button_style_no_file,
       QStringList{"background-color:rgb(191,191,191)", "color:gray"} + roundShape,
       {}},
      {"Layout2_main_button_style",
       Layout2_main_button_style,
       QStringList{"background-color:rgb(48,81,109)", "color:white"} + roundShape,
       {}},
      {"Layout2_main_button_style2",
       Layout2_main_button_style2,
       {"background-color:rgb(48,81,109)", "color:white"},
       {"radius", "border"}},
      {"main_button_style",
       dialog_style::main_button_style,
       QStringList{"background-color:rgb(191,191,191)"} + dialogShape,
       {}},
  };

  for (const ButtonCase& one : cases) {
    for (const QString& qstrPart : one.plain)
      EXPECT_TRUE(Rule(one.qstrStyle, "QPushButton").contains(qstrPart))
          << one.pszName << " lacks " << qstrPart.toStdString();
    for (const QString& qstrPart : one.absent)
      EXPECT_FALSE(Rule(one.qstrStyle, "QPushButton").contains(qstrPart)) << one.pszName;
    EXPECT_TRUE(Rule(one.qstrStyle, "QPushButton:hover").contains("background-color:rgb(156,156,156)"))
        << one.pszName;
    EXPECT_TRUE(Rule(one.qstrStyle, "QPushButton:pressed").contains("background-color:rgb(156,156,156)"))
        << one.pszName;
    EXPECT_TRUE(Rule(one.qstrStyle, "QPushButton:pressed").contains("inset")) << one.pszName;
  }
  EXPECT_TRUE(Rule(dialog_style::main_button_style, "QPushButton:pressed").contains("border:2pxgroovewhite"));
}

TEST(Styles, PlainOnesReadLetterByLetter) {
  EXPECT_EQ("background-color: rgb(112, 128, 144);", backGroud_style);
  EXPECT_EQ("background-color: rgb(79, 79 ,79);", Layout1TopBackGroud_style);
  EXPECT_EQ("background-color: rgb(37, 101, 137);", LayoutLine_style);
  EXPECT_EQ("Version " ORVANDEL_VERSION, Version_label);
  EXPECT_EQ("background-color: rgb(79, 79 ,79);", dialog_style::backGroud_style);
}

TEST(LightColours, TakeThePlaceOfThoseOfADarkDesktop) {
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(QColor(30, 30, 30)));
  const bool bWasDark = QApplication::palette().color(QPalette::Text).lightness() > 128;

  UseLightColours();

  const QPalette palette = QApplication::palette();
  QApplication::setPalette(before);
  EXPECT_TRUE(bWasDark) << "otherwise nothing is shown";
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    for (const auto& [text, ground] :
         {std::pair(QPalette::WindowText, QPalette::Window), std::pair(QPalette::Text, QPalette::Base),
          std::pair(QPalette::ButtonText, QPalette::Button),
          std::pair(QPalette::ToolTipText, QPalette::ToolTipBase)}) {
      EXPECT_LT(palette.color(group, text).lightness(), 50) << text;
      EXPECT_GT(palette.color(group, ground).lightness(), 200) << ground;
    }
    EXPECT_GT(palette.color(group, QPalette::HighlightedText).lightness(), 200);
    EXPECT_LT(palette.color(group, QPalette::Highlight).lightness(), 160);
  }
}

}  // namespace
