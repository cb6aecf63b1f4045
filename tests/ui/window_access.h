#pragma once
#include <stdexcept>

#include "ui/window.h"

namespace orvandel {

/// Access of tests to a window's private state.
class WindowAccess {
 public:
  static BackupRecords& Records(DRUI& window) { return window.m_records; }
  static const __BACK_FILE_INFO__& ChosenBackup(const DRUI& window) { return window.m_curBackupInfo; }
  static IPhoneRecoveryParse* Parser(DRUI& window) { return window.m_pRecoveryParse.get(); }
  static qint64 TotalFileCount(const DRUI& window) { return window.m_nTotalFileCount; }
  static QString BackupPassword(const DRUI& window) { return window.m_strBackupPassword; }
  static int DecryptStatus(const DRUI& window) { return window.m_nDecryptStatus; }
  static QProcess* DecryptProcess(const DRUI& window) { return window.m_pDecryptProcess.get(); }
  static int CurrentCategory(const DRUI& window) { return window.m_nCurrentCategory; }
  static QTreeWidgetItem* CurrentTreeItem(const DRUI& window) { return window.m_pCurrentTreeItem; }
  static QStackedLayout* ScreenStack(const DRUI& window) { return window.m_pScreenStack; }
  static QStackedLayout* PageStack(const DRUI& window) { return window.m_pPageStack; }
  static QWidget* HomeScreen(const DRUI& window) { return window.m_pHomeScreen; }
  static QWidget* DataScreen(const DRUI& window) { return window.m_pDataScreen; }
  static QPushButton* MenuButton(const DRUI& window) { return window.m_pMenuButton; }
  static QTreeWidget* Tree(const DRUI& window) { return window.m_pCategoryTree; }
  static std::map<U32, U32>& CameraSelection(DRUI& window) { return window.m_mapSelCamera; }
  static QLabel* SelectInfoLabel(const DRUI& window) { return window.m_pSelectInfoLabel; }
  static QPushButton* RecoveryButton(const DRUI& window) { return window.m_pRecoveryButton; }
  static int PressedCategory(const DRUI& window) { return window.m_nPressedCategory; }
  static QString PressedApp(const DRUI& window) { return window.m_strPressedApp; }
  static QTableWidgetItem* CurrentAppItem(const DRUI& window) { return window.m_pCurrentAppItem; }

  /// Ticked rows of a category other than the two app categories. Listed here independently of the program's
  /// table of categories, so that a wrong row of that table is detected.
  static std::map<U32, U32>& Selection(DRUI& window, int nCategory) {
    switch (nCategory) {
      case 0:
        return window.m_mapSelCamera;
      case 1:
        return window.m_mapSelPhotoStream;
      case 4:
        return window.m_mapSelMessage;
      case 5:
        return window.m_mapSelMessAttach;
      case 6:
        return window.m_mapSelContacts;
      case 7:
        return window.m_mapSelCallHistory;
      case 8:
        return window.m_mapSelNotes;
      case 9:
        return window.m_mapSelWhatsapp;
      case 10:
        return window.m_mapSelWhatsappAttach;
      default:
        throw std::out_of_range("no category of rows");
    }
  }
  /// Ticked files of the apps of category 2 or 3.
  static std::map<QString, std::map<U32, U32>>& AppSelection(DRUI& window, int nCategory) {
    return nCategory == 2 ? window.m_mapSelAppPhotos : window.m_mapSelAppVideos;
  }
  static std::array<QCheckBox*, 6>& CheckBoxes(DRUI& window) { return window.m_checkBoxes; }
  static QCheckBox*& CheckBoxAll(DRUI& window) { return window.m_pCheckBoxAll; }
  static QPushButton*& CheckBoxButton(DRUI& window) { return window.m_pCheckBoxButton; }
  /// Makes the system refuse to start the workers of a window, or start them again.
  static void RefuseWorkers(DRUI& window, bool bRefuse) { window.m_nWorkerStackSize = bRefuse ? 1 : 0; }
  /// The parser factory that the scans of a window use.
  static auto& ParserMaker(DRUI& window) { return window.m_makeParser; }
  static std::unique_ptr<IPhoneRecoveryParse> MakeParser(CIphoneBackupFile& backupFile) {
    return DRUI::MakeParser(backupFile);
  }
  /// Destination of the last recovery; null if no folder was chosen.
  static QString RecoveryFolder(const DRUI& window) { return window.m_strSelectDir; }
};

}  // namespace orvandel
