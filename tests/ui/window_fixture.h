#pragma once
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <memory>

#include "sample/backup_builder.h"
#include "tests/support.h"
#include "tests/ui/modal.h"
#include "tests/ui/window_access.h"
#include "ui/window.h"

namespace orvandel {

/// Tests of the window, with a temporary backup root and work folder.
class WindowTest : public testing::Test {
 protected:
  WindowTest();

  /// Full path of a backup, which need not exist.
  std::string BackupPath(const std::string& strName) const { return m_folder.Path("backups/" + strName); }
  /// Writes a backup with only the data that the list of backups shows.
  void WriteEmptyBackup(const std::string& strName, const BackupBuilder::Info& info = {}) const;

  /// Builds the window and shows it.
  DRUI& Open();
  /// Builds the window with a new data screen visible and without records.
  DRUI& OpenDataScreen();
  DRUI& Window() { return *m_pWindow; }
  void CloseWindow() { m_pWindow.reset(); }

  /// A part of the window, by its object name.
  template <typename Widget = QWidget>
  Widget* Find(const char* pszName) {
    auto* pWidget = m_pWindow->findChild<Widget*>(pszName);
    if (!pWidget) throw std::runtime_error(std::string("the window has no ") + pszName);
    return pWidget;
  }
  QTableWidget* Table(const char* pszName) { return Find<QTableWidget>(pszName); }
  QTreeWidgetItem* Node(int nCategory) { return WindowAccess::Tree(*m_pWindow)->topLevelItem(nCategory); }

  /// Clicks as a user does.
  void ClickRow(QTableWidget* pTable, int nRow, int nColumn = 0);
  void ClickNode(int nCategory);
  /// The same on tick boxes. A cell without one is clicked where its box would be.
  void ClickRowBox(QTableWidget* pTable, int nRow, int nColumn = 0);
  void ClickNodeBox(int nCategory);
  /// Selects a row of the list of backups, presses "Scan" and waits for the end.
  void ScanBackup(int nRow = 0);

  /// Labels of the tree from the top.
  std::vector<std::string> Labels();
  /// Text of a table's cells from the left.
  static std::vector<std::string> Cells(const QTableWidget* pTable, int nRow);
  std::string SelectionLine() { return Find<QLabel>("m_pSelectInfoLabel")->text().toStdString(); }

  TemporaryFolder m_folder;
  std::unique_ptr<DRUI> m_pWindow;
};

/// A rectangle from its top left to its bottom right corner, both inclusive.
inline QRect Corners(int nLeft, int nTop, int nRight, int nBottom) {
  return QRect(QPoint(nLeft, nTop), QPoint(nRight, nBottom));
}

/// The font that was asked for: "Calibri 12/75".
std::string FontOf(const QFont& font);
inline std::string FontOf(const QWidget* pWidget) {
  return FontOf(pWidget->font());
}

std::string TextOf(const QLabel* pLabel);
QColor TextColour(const QWidget* pWidget);
/// Left, top, right and bottom.
std::vector<int> MarginsOf(const QLayout* pLayout);

/// Labels of the tree before a scan.
extern const std::vector<std::string> kZeroLabels;
/// Labels after a scan of the backup of WriteSmallBackup.
extern const std::vector<std::string> kSmallBackupLabels;

}  // namespace orvandel
