#pragma once
#include "ui/window.h"

/// What tests see of a window's state.
class WindowAccess {
 public:
  static BackupRecords& Records(DRUI& window) { return window.m_records; }
  static const __BACK_FILE_INFO__& ChosenBackup(const DRUI& window) { return window.m_curBackupInfo; }
  static IPhoneRecoveryParse* Parser(DRUI& window) { return window.m_pRecoveryParse.get(); }
  static int CurrentCategory(const DRUI& window) { return window.m_nCurrentCategory; }
  static QTreeWidgetItem* CurrentTreeItem(const DRUI& window) { return window.m_pCurrentTreeItem; }
  static QStackedLayout* ScreenStack(const DRUI& window) { return window.m_pScreenStack; }
  static QStackedLayout* PageStack(const DRUI& window) { return window.m_pPageStack; }
  static QWidget* HomeScreen(const DRUI& window) { return window.m_pHomeScreen; }
  static QWidget* DataScreen(const DRUI& window) { return window.m_pDataScreen; }
  static QPushButton* MenuButton(const DRUI& window) { return window.m_pMenuButton; }
  static QTreeWidget* Tree(const DRUI& window) { return window.m_pCategoryTree; }
  static std::map<U32, U32>& CameraSelection(DRUI& window) { return window.m_mapSelCamera; }
};
