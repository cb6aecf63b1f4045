#pragma once
#include <gtest/gtest.h>

#include <QImage>

#include "tests/app/program.h"
#include "tests/support.h"

namespace orvandel {

// Positions in the window.
constexpr QPoint kInTopBar(720, 10);
constexpr QPoint kFirstRow(300, 200);
constexpr QPoint kInScan(890, 600);
constexpr QPoint kLeftOfHome(60, 611);  // left of the button's text
constexpr QPoint kLeftInRecovery(860, 611);

const QColor kGrayButton(191, 191, 191);
const QColor kActiveButton(48, 81, 109);
const QColor kTopBar(79, 79, 79);

/// Tests of the real program with its fixed folders, on a display and in a private file system. Skipped on
/// machines without these.
class EndToEnd : public testing::Test {
 protected:
  void SetUp() override;
  ~EndToEnd() override;

  static constexpr int kLimit = 60000;  // milliseconds

  QString Folder(const char* pszName) { return QString::fromStdString(m_folder.MakeFolder(pszName)); }
  /// The folder in which the program looks for a backup.
  std::string BackupPath(const std::string& strName) const {
    return m_folder.Path("Library/Application Support/MobileSync/Backup/" + strName);
  }

  void StartProgram();

  /// Runs a tool on the display to its end. @return its output.
  QString Run(const QString& qstrTool, const QStringList& arguments);

  /// A picture of the window.
  QImage Screen();
  /// Waits until a position in the window has a colour.
  bool Shows(const QPoint& place, const QColor& colour);
  void ClickAt(const QPoint& place);

  /// Geometry of a window on the display; empty if there is none. @param qstrTitle regular expression.
  QRect WindowOf(const QString& qstrTitle);
  /// A position on the display.
  QColor PixelOf(const QPoint& place);
  void ClickOnDisplay(const QPoint& place);

  TemporaryFolder m_folder;
  QProcess m_screen;
  Program m_program;
  QString m_display;

 private:
  QImage Display();
};

}  // namespace orvandel
